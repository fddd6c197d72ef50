// Finding what somebody meant among the names that there are.
#ifndef PRINTER_MEDIA_SUGGESTION_H_
#define PRINTER_MEDIA_SUGGESTION_H_

#include <string>
#include <string_view>
#include <vector>

namespace PrinterMedia {

// The names that equal the word: the one that does so letter for letter, else all that do so but
// for case, each once.
std::vector<std::string> Matches(std::string_view word, const std::vector<std::string>& names);

// `; did you mean X or Y?` with names that are little different from the word, the nearest first;
// empty for none.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names);

// "A, B and C".
std::string Listed(const std::vector<std::string>& names, std::string_view last = "and");

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_SUGGESTION_H_

// What the shell may complete a command line with.
#ifndef PRINTER_MEDIA_COMPLETION_H_
#define PRINTER_MEDIA_COMPLETION_H_

#include <string>
#include <vector>

namespace PrinterMedia {

// A line up to the cursor in the words that a shell makes of it: blanks part them, quotation marks
// and backslashes do what they do there. The last word, at the cursor, may be empty.
std::vector<std::string> ShellWords(const std::string& line);

// Prints the word at the cursor, and one line for each word that it may become; a setting ends in
// "=". Nothing follows where a file is meant, or nothing is known. Takes five seconds at most, and
// says nothing of failures: the process ends then.
void PrintCompletions(const std::string& line);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_COMPLETION_H_

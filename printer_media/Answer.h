// The worker's answers: where they end, and what they say.
#ifndef PRINTER_MEDIA_ANSWER_H_
#define PRINTER_MEDIA_ANSWER_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace PrinterMedia {

struct Answer {
  bool is_syntax_error = false;  // the worker could not read the request
  int code = 0;
  // Null where there is none. Texts in it are characters that stand for bytes: see Narrowed.
  nlohmann::json reply;
};

// Reads the answer to a command as soon as it is whole; nothing while it is a part of one. Throws
// Failure for what is no answer to the command.
std::optional<Answer> ReadAnswer(std::string_view text, const std::string& command);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_ANSWER_H_

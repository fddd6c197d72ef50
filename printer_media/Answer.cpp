#include "printer_media/Answer.h"

#include <cstddef>
#include <utility>

#include "printer_media/Failure.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

constexpr std::string_view kSyntaxError = "syntax error";

// Printers' texts may hold control bytes, which the worker passes on as they are.
std::string WithoutControls(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20) {
      escaped += "\\u00" + ToHex({&character, 1});
    } else {
      escaped += character;
    }
  }
  return escaped;
}

[[noreturn]] void ThrowUnreadable(std::string_view text) {
  throw Failure(
      Exit::kWorker,
      "the worker gave an answer that cannot be read: " + std::string(text.substr(0, 200)),
      "Are the worker and printer-media of the same version? printer-media doctor tells "
      "which worker is used.");
}

}  // namespace

std::optional<Answer> ReadAnswer(std::string_view text, const std::string& command) {
  if (text == kSyntaxError) return Answer{true, -1, nullptr};
  if (kSyntaxError.substr(0, text.size()) == text) return std::nullopt;
  const std::string json = Widened(WithoutControls(text));
  try {
    const auto object = nlohmann::json::parse(json);
    Answer answer{false, object.at(command).get<int>(), nullptr};
    if (object.contains("Reply")) answer.reply = object.at("Reply");
    return answer;
  } catch (const nlohmann::json::parse_error& error) {
    // The parser counts from 1, and stands behind the text at its end.
    if (error.byte > json.size()) return std::nullopt;
    ThrowUnreadable(text);
  } catch (const nlohmann::json::exception&) {
    ThrowUnreadable(text);
  }
}

}  // namespace PrinterMedia

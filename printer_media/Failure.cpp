#include "printer_media/Failure.h"

#include <nlohmann/json.hpp>

#include "printer_media/Text.h"

namespace PrinterMedia {

Failure Failure::OfCode(int code, const std::string& message, const std::string& advice) {
  Failure failure(Exit::kRefused, message, advice);
  failure.code_ = code;
  return failure;
}

Failure Failure::Behind(const std::string& done) const {
  Failure failure = *this;
  failure.message_ = done + ": " + message_;
  return failure;
}

std::string Failure::Json() const {
  nlohmann::ordered_json error;
  error["status"] = static_cast<int>(status_);
  if (code_) error["code"] = *code_;
  error["message"] = Printable(message_);
  if (!advice_.empty()) error["advice"] = Printable(advice_);
  return nlohmann::ordered_json{{"error", error}}.dump(2);
}

}  // namespace PrinterMedia

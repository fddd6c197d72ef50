#include "printer_media/Value.h"

#include <cstdint>
#include <limits>

#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

std::optional<Value> NumberFrom(const nlohmann::json& json) {
  const auto number = json.get<double>();
  const bool is_int = number >= std::numeric_limits<int>::min() &&
                      number <= std::numeric_limits<int>::max() &&
                      number == static_cast<double>(static_cast<int>(number));
  if (!is_int) return std::nullopt;
  return static_cast<int>(number);
}

}  // namespace

std::string ValueText(const Value& value) {
  const int* const number = std::get_if<int>(&value);
  return number != nullptr ? std::to_string(*number) : std::get<std::string>(value);
}

std::string ShortText(const Value& value) {
  constexpr std::size_t kMost = 40;
  const std::string text = ValueText(value);
  return text.size() <= kMost ? text : text.substr(0, kMost) + "...";
}

nlohmann::json TextToJson(const std::string& bytes) {
  if (IsUtf8(bytes)) return bytes;
  return {{"hex", ToHex(bytes)}};
}

nlohmann::json ValueToJson(const Value& value) {
  const int* const number = std::get_if<int>(&value);
  return number != nullptr ? nlohmann::json(*number) : TextToJson(std::get<std::string>(value));
}

std::optional<Value> ValueFromJson(const nlohmann::json& json) {
  if (json.is_number()) return NumberFrom(json);
  if (json.is_string()) return json.get<std::string>();
  std::string bytes;
  const bool is_hex = json.is_object() && json.size() == 1 && json.contains("hex") &&
                      json["hex"].is_string() && FromHex(json["hex"].get<std::string>(), bytes);
  if (!is_hex) return std::nullopt;
  return bytes;
}

nlohmann::json ValueToWire(const Value& value) {
  const int* const number = std::get_if<int>(&value);
  return number != nullptr ? nlohmann::json(*number)
                           : nlohmann::json(Widened(std::get<std::string>(value)));
}

std::optional<Value> ValueFromWire(const nlohmann::json& json) {
  if (json.is_number()) return NumberFrom(json);
  if (json.is_string()) return Narrowed(json.get<std::string>());
  return std::nullopt;
}

}  // namespace PrinterMedia

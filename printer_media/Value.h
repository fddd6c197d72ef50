// Values of settings, as the worker tells and takes them.
#ifndef PRINTER_MEDIA_VALUE_H_
#define PRINTER_MEDIA_VALUE_H_

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <variant>

namespace PrinterMedia {

// A number; or a named value, a record's name in the printer's bytes, or the digits of a block.
using Value = std::variant<int, std::string>;

// By parameter name.
using Settings = std::map<std::string, Value>;

// For people.
std::string ValueText(const Value& value);

// Likewise, with the begin alone of a text that is longer than names are.
std::string ShortText(const Value& value);

// In what this program prints and saves: a number; a text that is UTF-8; or {"hex": DIGITS} for
// bytes that are none.
nlohmann::json TextToJson(const std::string& bytes);
nlohmann::json ValueToJson(const Value& value);
std::optional<Value> ValueFromJson(const nlohmann::json& json);

// In requests and answers, whose texts are widened bytes.
nlohmann::json ValueToWire(const Value& value);
std::optional<Value> ValueFromWire(const nlohmann::json& json);

}  // namespace PrinterMedia

#endif  // PRINTER_MEDIA_VALUE_H_

#include "printer_media/Catalogue.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "printer_media/Failure.h"
#include "printer_media/Suggestion.h"
#include "printer_media/Text.h"

namespace PrinterMedia {

namespace {

// A written byte that leaves the setting as it is.
constexpr int kStays = 0xFF;

template <typename Row, typename Predicate>
const Row* FindRow(const Rows<Row>& rows, Predicate predicate) {
  const Row* const row = std::find_if(rows.begin(), rows.end(), predicate);
  return row == rows.end() ? nullptr : row;
}

const NamedValue* FindByte(const Parameter& parameter, int byte) {
  return FindRow(parameter.values, [byte](const NamedValue& row) { return row.byte == byte; });
}

const NamedValue* FindName(const Parameter& parameter, std::string_view name) {
  return FindRow(parameter.values, [name](const NamedValue& row) { return row.name == name; });
}

std::optional<int> ReadNumber(const std::string& text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

[[noreturn]] void Refuse(const Parameter& parameter, const std::string& text,
                         const std::string& why) {
  throw Failure(Exit::kUsage, std::string(parameter.name) + "=" + text + ": " + why,
                std::string(parameter.name) + " is " + Allowed(parameter) + ".");
}

Value ParseNumber(const Parameter& parameter, const std::string& text) {
  const std::vector<std::string> names = ValueNames(parameter);
  const std::vector<std::string> matches = Matches(text, names);
  if (matches.size() == 1) return matches[0];
  const std::optional<int> number = ReadNumber(text);
  if (!number) {
    const bool is_figure = text.find_first_of("0123456789") == 0;  // another one is no misspelling
    Refuse(parameter, text, "there is no such value" + (is_figure ? "" : DidYouMean(text, names)));
  }
  const long byte = static_cast<long>(*number) - parameter.offset;
  if (byte < 0 || byte >= kStays) Refuse(parameter, text, "the number is out of range");
  const NamedValue* const named = FindByte(parameter, static_cast<int>(byte));
  if (named != nullptr) {
    Refuse(parameter, text,
           "that is the printer's own number for " + std::string(named->name) +
               "; give values that have a name by it");
  }
  return *number;
}

Value ParseText(const Parameter& parameter, const std::string& text) {
  if (text.empty()) Refuse(parameter, text, "an empty name cannot be written");
  if (text.size() > static_cast<std::size_t>(parameter.length)) {
    Refuse(parameter, text, "the name has " + std::to_string(text.size()) + " bytes");
  }
  if (text.back() == ' ' || text.back() == '\t') {
    Refuse(parameter, text, "printers do not keep blanks at the end");
  }
  return text;
}

Value ParseBlock(const Parameter& parameter, const std::string& text) {
  std::string bytes;
  if (!FromHex(text, bytes)) Refuse(parameter, text, "these are no hexadecimal digits in pairs");
  if (bytes.size() != static_cast<std::size_t>(parameter.length)) {
    Refuse(parameter, text, "there are " + std::to_string(text.size()) + " digits");
  }
  return ToHex(bytes);
}

std::string AllowedNumber(const Parameter& parameter) {
  std::string text;
  for (const NamedValue& value : parameter.values) text += std::string(value.name) + ", ";
  if (!text.empty()) text.replace(text.size() - 2, 2, " or ");
  return text + "a number from " + std::to_string(parameter.offset) + " to " +
         std::to_string(parameter.offset + kStays - 1);
}

// Numbers of the head are not for the user to give.
std::string HeadAdvice(std::string_view name) {
  if (SameButCase(name, "CustomMediaNo")) return "the record's number is given as RECORD";
  if (SameButCase(name, "CommandVersion")) return "the layout is given with --layout";
  return "it is the printer's own";
}

}  // namespace

const Family* FindFamily(std::string_view device) {
  return FindRow(kFamilies, [device](const Family& family) {
    return std::find(family.devices.begin(), family.devices.end(), device) != family.devices.end();
  });
}

std::vector<std::string> DeviceNames() {
  std::vector<std::string> names;
  for (const Family& family : kFamilies) {
    names.insert(names.end(), family.devices.begin(), family.devices.end());
  }
  return names;
}

const Layout* FindLayout(const Family& family, int version) {
  return FindRow(family.layouts, [version](const Layout& row) { return row.version == version; });
}

const Parameter* FindParameter(const Layout& layout, std::string_view name) {
  return FindRow(layout.parameters, [name](const Parameter& row) { return row.name == name; });
}

std::string FirmwareModels() {
  std::vector<std::string> models;
  for (const Family& family : kFamilies) {
    if (family.tells_firmware) models.emplace_back(family.models);
  }
  return Listed(models);
}

const Layout& LayoutOf(const Family& family, int version) {
  const Layout* const layout = FindLayout(family, version);
  if (layout != nullptr) return *layout;
  std::vector<std::string> versions;
  for (const Layout& row : family.layouts) versions.push_back(std::to_string(row.version));
  throw Failure(
      Exit::kUsage, "there is no layout " + std::to_string(version),
      "Records of " + std::string(family.models) + " have layout " + Listed(versions) + ".");
}

const Parameter& ParameterOf(const Family& family, const Layout& layout, const std::string& name) {
  const std::vector<std::string> names = SettingNames(layout);
  const std::vector<std::string> matches = Matches(name, names);
  if (matches.size() == 1) return *FindParameter(layout, matches[0]);
  for (const Parameter& parameter : layout.parameters) {
    if (parameter.kind == Kind::kHead && SameButCase(parameter.name, name)) {
      throw Failure(Exit::kUsage, name + " is not a setting: " + HeadAdvice(name));
    }
  }
  const std::string meant = DidYouMean(name, names);
  throw Failure(Exit::kUsage,
                std::string(family.models) + ": there is no setting \"" + name + "\" in layout " +
                    std::to_string(layout.version) + meant,
                meant.empty() ? "The settings are\n" + AllowedLines(layout) : "");
}

Value ParseValue(const Parameter& parameter, const std::string& text) {
  if (parameter.kind == Kind::kText) return ParseText(parameter, text);
  if (parameter.kind == Kind::kBlock) return ParseBlock(parameter, text);
  return ParseNumber(parameter, text);
}

bool IsPossible(const Parameter& parameter, const Value& value) {
  if (const int* const number = std::get_if<int>(&value)) {
    const long byte = static_cast<long>(*number) - parameter.offset;
    return parameter.kind == Kind::kNumber && byte >= 0 && byte <= kStays &&
           FindByte(parameter, static_cast<int>(byte)) == nullptr;
  }
  const auto& text = std::get<std::string>(value);
  const auto length = static_cast<std::size_t>(parameter.length);
  if (parameter.kind == Kind::kText) {
    return text.size() <= length && (text.empty() || (text.back() != ' ' && text.back() != '\t'));
  }
  if (parameter.kind == Kind::kNumber) return FindName(parameter, text) != nullptr;
  std::string bytes;
  return FromHex(text, bytes) && bytes.size() == length && ToHex(bytes) == text;
}

bool IsSendable(const Parameter& parameter, const Value& value) {
  if (const int* const number = std::get_if<int>(&value)) {
    return *number - parameter.offset != kStays;
  }
  return !std::get<std::string>(value).empty();
}

std::vector<const Parameter*> SettingsOf(const Layout& layout) {
  std::vector<const Parameter*> settings;
  for (const Parameter& parameter : layout.parameters) {
    if (parameter.kind != Kind::kHead) settings.push_back(&parameter);
  }
  return settings;
}

std::vector<std::string> SettingNames(const Layout& layout) {
  std::vector<std::string> names;
  for (const Parameter* parameter : SettingsOf(layout)) names.emplace_back(parameter->name);
  return names;
}

std::vector<std::string> ValueNames(const Parameter& parameter) {
  std::vector<std::string> names;
  for (const NamedValue& value : parameter.values) names.emplace_back(value.name);
  return names;
}

std::string Allowed(const Parameter& parameter) {
  switch (parameter.kind) {
    case Kind::kText:
      return "a text of 1 to " + std::to_string(parameter.length) + " bytes";
    case Kind::kBlock:
      return std::to_string(parameter.length * 2) + " hexadecimal digits";
    default:
      return AllowedNumber(parameter);
  }
}

std::string AllowedLines(const Layout& layout) {
  std::size_t width = 0;
  const auto settings = SettingsOf(layout);
  for (const Parameter* parameter : settings) width = std::max(width, parameter->name.size());
  std::string lines;
  for (const Parameter* parameter : settings) {
    std::string name(parameter->name);
    name.resize(width, ' ');
    lines += "  " + name + "  " + Allowed(*parameter) + '\n';
  }
  lines.pop_back();
  return lines;
}

}  // namespace PrinterMedia

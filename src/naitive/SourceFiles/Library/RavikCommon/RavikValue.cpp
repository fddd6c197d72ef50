#include "Library/RavikCommon/RavikValue.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <limits>
#include <utility>

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

value::value(bool boolean) : payload_(boolean) {}
value::value(int integer) : payload_(integer) {}
value::value(double number) : payload_(number) {}
value::value(std::string text) : payload_(std::move(text)) {}
value::value(std::string_view text) : payload_(std::in_place_type<std::string>, text) {}
value::value(const char* text) : value(std::string_view(text)) {}
value::value(array elements) : payload_(std::move(elements)) {}
value::value(object members) : payload_(std::make_shared<const object>(std::move(members))) {}

namespace {

// The text that a standard stream gives with its default settings.
std::string NumberText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

void AppendInteger(int integer, std::string& json) {
  char text[std::numeric_limits<int>::digits10 + 3];
  const char* const end = std::to_chars(std::begin(text), std::end(text), integer).ptr;
  json.append(text, static_cast<std::size_t>(end - text));
}

void AppendArray(const value::array& elements, std::string& json) {
  json += '[';
  for (const value& element : elements) {
    if (&element != &elements.front()) json += ',';
    element.serialize_to(json);
  }
  json += ']';
}

void AppendObject(const value::object& members, std::string& json) {
  json += '{';
  const char* start = "\"";
  for (const auto& [key, member] : members) {
    json.append(start).append(key).append("\":");
    member.serialize_to(json);
    start = ",\"";
  }
  json += '}';
}

// The second character of a byte's escape; NUL for a byte that stays as it is.
constexpr char EscapeOf(char c) {
  switch (c) {
    case '\\':
    case '/':
    case '"':
      return c;
    case '\b':
      return 'b';
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\f':
      return 'f';
    case '\r':
      return 'r';
    default:
      return '\0';
  }
}

constexpr std::array<char, 256> MakeEscapes() {
  std::array<char, 256> escapes{};
  for (std::size_t i = 0; i < escapes.size(); ++i) escapes[i] = EscapeOf(static_cast<char>(i));
  return escapes;
}

constexpr std::array<char, 256> kEscapes = MakeEscapes();

void AppendEscaped(const std::string& text, std::string& json) {
  const char* const begin = text.data();
  std::size_t appended = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char escape = kEscapes[static_cast<unsigned char>(begin[i])];
    if (escape == '\0') continue;
    json.append(begin + appended, i - appended);
    json += '\\';
    json += escape;
    appended = i + 1;
  }
  json.append(begin + appended, text.size() - appended);
}

}  // namespace

std::string value::to_str() const {
  switch (tag()) {
    case kNull:
      return "null";
    case kBoolean:
      return std::get<bool>(payload_) ? "true" : "false";
    case kInt:
      return std::to_string(std::get<int>(payload_));
    case kNumber:
      return NumberText(std::get<double>(payload_));
    case kString:
      return std::get<std::string>(payload_);
    case kArray:
      return "array";
    case kObject:
      return "object";
  }
  RAVIK_ASSERT(false);
  return {};
}

std::string value::serialize() const {
  std::string json;
  serialize_to(json);
  return json;
}

void value::serialize_to(std::string& json) const {
  switch (tag()) {
    case kInt:
      return AppendInteger(std::get<int>(payload_), json);
    case kNull:
    case kBoolean:
    case kNumber:
      json += to_str();
      return;
    case kString:
      json += '"';
      AppendEscaped(std::get<std::string>(payload_), json);
      json += '"';
      return;
    case kArray:
      return AppendArray(std::get<array>(payload_), json);
    case kObject:
      return AppendObject(*std::get<std::shared_ptr<const object>>(payload_), json);
  }
  ReportAssertion("false", "serialize", __FILE__, __LINE__);
}

std::string value::serialize_str(const std::string& text) {
  std::string json;
  AppendEscaped(text, json);
  return json;
}

bool value::operator==(const value& other) const {
  if (tag() == kNull) RAVIK_ASSERT(false);
  if (tag() == kObject && other.tag() == kObject) {
    return *std::get<std::shared_ptr<const object>>(payload_) ==
           *std::get<std::shared_ptr<const object>>(other.payload_);
  }
  return payload_ == other.payload_;
}

}  // namespace Ravik

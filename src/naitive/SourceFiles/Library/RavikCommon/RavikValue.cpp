#include "Library/RavikCommon/RavikValue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdio>
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

value& value::operator=(std::string_view text) {
  if (std::string* const former = std::get_if<std::string>(&payload_)) {
    former->assign(text);
  } else {
    payload_.emplace<std::string>(text);
  }
  return *this;
}

namespace {

constexpr std::size_t kNumberBound = 32;  // the longest is "-1.23457e-308"

// The text that a standard stream gives with its default settings.
std::string NumberText(double number) {
  char text[kNumberBound];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

// These write JSON to where there is room for it, and return its end there.

char* Write(std::string_view text, char* json) {
  return std::copy(text.begin(), text.end(), json);
}

char* WriteArray(const value::array& elements, char* json) {
  *json++ = '[';
  for (const value& element : elements) {
    if (&element != &elements.front()) *json++ = ',';
    json = element.serialize_to(json);
  }
  *json++ = ']';
  return json;
}

char* WriteObject(const value::object& members, char* json) {
  *json++ = '{';
  const char* start = "\"";
  for (const auto& [key, member] : members) {
    json = Write("\":", Write(key, Write(start, json)));
    json = member.serialize_to(json);
    start = ",\"";
  }
  *json++ = '}';
  return json;
}

std::size_t ArrayBound(const value::array& elements) {
  std::size_t bound = std::string_view("[]").size();
  for (const value& element : elements) {
    bound += element.serialized_bound() + std::string_view(",").size();
  }
  return bound;
}

std::size_t ObjectBound(const value::object& members) {
  std::size_t bound = std::string_view("{}").size();
  for (const auto& [key, member] : members) {
    bound += key.size() + member.serialized_bound() + std::string_view(",\"\":").size();
  }
  return bound;
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

char* WriteEscaped(std::string_view text, char* json) {
  for (const char c : text) {
    const char escape = kEscapes[static_cast<unsigned char>(c)];
    if (escape == '\0') {
      *json++ = c;
    } else {
      *json++ = '\\';
      *json++ = escape;
    }
  }
  return json;
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
  std::string json(serialized_bound(), '\0');
  json.resize(static_cast<std::size_t>(serialize_to(json.data()) - json.data()));
  return json;
}

char* value::serialize_to(char* json) const {
  if (const int* const integer = std::get_if<int>(&payload_)) {
    return std::to_chars(json, json + kIntegerBound, *integer).ptr;
  }
  const std::string* const text = std::get_if<std::string>(&payload_);
  if (text == nullptr) return SerializeRare(json);
  *json++ = '"';
  json = WriteEscaped(*text, json);
  *json++ = '"';
  return json;
}

char* value::SerializeRare(char* json) const {
  switch (tag()) {
    case kArray:
      return WriteArray(std::get<array>(payload_), json);
    case kObject:
      return WriteObject(*std::get<std::shared_ptr<const object>>(payload_), json);
    default:
      return Write(to_str(), json);
  }
}

std::size_t value::RareBound() const {
  switch (tag()) {
    case kArray:
      return ArrayBound(std::get<array>(payload_));
    case kObject:
      return ObjectBound(*std::get<std::shared_ptr<const object>>(payload_));
    default:
      return kNumberBound;
  }
}

std::string value::serialize_str(const std::string& text) {
  std::string json(TextBound(text.size()), '\0');
  json.resize(static_cast<std::size_t>(WriteEscaped(text, json.data()) - json.data()));
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

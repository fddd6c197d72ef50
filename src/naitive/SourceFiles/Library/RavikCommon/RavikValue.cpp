#include "Library/RavikCommon/RavikValue.h"

#include <cstdio>

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

value::value(bool boolean) : payload_(boolean) {}
value::value(int integer) : payload_(integer) {}
value::value(double number) : payload_(number) {}
value::value(const std::string& text) : payload_(text) {}
value::value(const char* text) : payload_(std::string(text)) {}
value::value(const array& elements) : payload_(elements) {}
value::value(const object& members) : payload_(std::make_shared<const object>(members)) {}

namespace {

// The text that a standard stream gives with its default settings.
std::string NumberText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

std::string SerializeArray(const value::array& elements) {
  std::string json = "[";
  for (const value& element : elements) {
    if (json.size() > 1) json += ',';
    json += element.serialize();
  }
  return json + ']';
}

std::string SerializeObject(const value::object& members) {
  std::string json = "{";
  for (const auto& [key, member] : members) {
    if (json.size() > 1) json += ',';
    json += '"' + key + "\":" + member.serialize();
  }
  return json + '}';
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
  switch (tag()) {
    case kNull:
    case kBoolean:
    case kInt:
    case kNumber:
      return to_str();
    case kString:
      return '"' + serialize_str(std::get<std::string>(payload_)) + '"';
    case kArray:
      return SerializeArray(std::get<array>(payload_));
    case kObject:
      return SerializeObject(*std::get<std::shared_ptr<const object>>(payload_));
  }
  RAVIK_ASSERT(false);
  return {};
}

std::string value::serialize_str(const std::string& text) {
  std::string json;
  json.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '\\':
      case '/':
      case '"':
        json += {'\\', c};
        break;
      case '\b':
        json += "\\b";
        break;
      case '\t':
        json += "\\t";
        break;
      case '\n':
        json += "\\n";
        break;
      case '\f':
        json += "\\f";
        break;
      case '\r':
        json += "\\r";
        break;
      default:
        json += c;
    }
  }
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

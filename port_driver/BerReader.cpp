// Cursor over elements in the basic encoding rules.
#include "port_driver/BerReader.h"

namespace ZIOP {
namespace {

constexpr uint8_t kIntegerTag = 0x02;
constexpr uint8_t kLongTag = 0x1F;     // the tag goes on in the next byte
constexpr uint8_t kLongLength = 0x80;  // the low bits count the bytes of the length
constexpr std::size_t kMaximumLengthBytes = 4;

// Takes one byte off the front; text is not empty.
uint8_t TakeByte(std::string_view& text) {
  const auto byte = static_cast<uint8_t>(text.front());
  text.remove_prefix(1);
  return byte;
}

std::optional<std::size_t> TakeLength(std::string_view& text) {
  if (text.empty()) {
    return std::nullopt;
  }
  const uint8_t first = TakeByte(text);
  if (first < kLongLength) {
    return first;
  }
  const std::size_t count = first & ~kLongLength & 0xFFU;
  if (count == 0 || count > kMaximumLengthBytes || count > text.size()) {
    return std::nullopt;
  }
  std::size_t length = 0;
  for (std::size_t i = 0; i < count; ++i) {
    length = length << 8 | TakeByte(text);
  }
  return length;
}

}  // namespace

std::optional<BerElement> BerReader::Next() {
  std::string_view text = rest_;
  if (text.empty()) {
    return std::nullopt;
  }
  const uint8_t tag = TakeByte(text);
  const auto length = (tag & kLongTag) == kLongTag ? std::nullopt : TakeLength(text);
  if (!length || *length > text.size()) {
    return std::nullopt;
  }
  rest_ = text.substr(*length);
  return BerElement{tag, text.substr(0, *length)};
}

std::optional<std::string_view> BerReader::Next(uint8_t tag) {
  const std::string_view before = rest_;
  const auto element = Next();
  if (!element || element->tag != tag) {
    rest_ = before;
    return std::nullopt;
  }
  return element->content;
}

std::optional<int32_t> BerReader::NextInteger() {
  const std::string_view before = rest_;
  const auto content = Next(kIntegerTag);
  if (!content || content->empty() || content->size() > sizeof(int32_t)) {
    rest_ = before;
    return std::nullopt;
  }
  uint32_t number = (static_cast<uint8_t>(content->front()) & 0x80U) != 0 ? ~0U : 0U;
  for (const char byte : *content) {
    number = number << 8 | static_cast<uint8_t>(byte);
  }
  return static_cast<int32_t>(number);
}

}  // namespace ZIOP

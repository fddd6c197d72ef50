// Cursor over elements in the basic encoding rules (ITU-T X.690), definite lengths only.
#ifndef PORT_DRIVER_BERREADER_H_
#define PORT_DRIVER_BERREADER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ZIOP {

struct BerElement {
  uint8_t tag;
  std::string_view content;
};

// Never reads behind the bytes that it was made for. Once an element could not be read, the cursor
// stands where it was.
class BerReader {
 public:
  explicit BerReader(std::string_view bytes) : rest_(bytes) {}

  bool atEnd() const { return rest_.empty(); }

  // Takes the next element. Null when none is whole, for tags of more than one byte, and for
  // lengths that are indefinite or take more than four bytes.
  std::optional<BerElement> Next();

  // Takes the next element if it has the tag, and gives its content.
  std::optional<std::string_view> Next(uint8_t tag);

  // Takes an INTEGER of one to four bytes, two's complement, big-endian.
  std::optional<int32_t> NextInteger();

 private:
  static constexpr uint8_t kIntegerTag = 0x02;
  static constexpr uint8_t kLongTag = 0x1F;     // the tag goes on in the next byte
  static constexpr uint8_t kLongLength = 0x80;  // the low bits count the bytes of the length

  uint8_t ByteAt(std::size_t place) const { return static_cast<uint8_t>(rest_[place]); }
  std::optional<std::size_t> LongLength() const;
  std::optional<BerElement> Take(std::size_t head, std::size_t length);

  std::string_view rest_;
};

// Takes the element of which the tag and the length take head bytes, and the content length.
inline std::optional<BerElement> BerReader::Take(std::size_t head, std::size_t length) {
  if (length > rest_.size() - head) {
    return std::nullopt;
  }
  const BerElement element{ByteAt(0), rest_.substr(head, length)};
  rest_.remove_prefix(head + length);
  return element;
}

inline std::optional<BerElement> BerReader::Next() {
  if (rest_.size() < 2 || (ByteAt(0) & kLongTag) == kLongTag) {
    return std::nullopt;
  }
  const uint8_t first = ByteAt(1);
  if (first < kLongLength) {
    return Take(2, first);
  }
  const auto length = LongLength();
  return length ? Take(2 + (first - kLongLength), *length) : std::nullopt;
}

inline std::optional<std::string_view> BerReader::Next(uint8_t tag) {
  if (rest_.empty() || ByteAt(0) != tag) {
    return std::nullopt;
  }
  const auto element = Next();
  return element ? std::optional(element->content) : std::nullopt;
}

inline std::optional<int32_t> BerReader::NextInteger() {
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

#endif  // PORT_DRIVER_BERREADER_H_

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
  std::string_view rest_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_BERREADER_H_

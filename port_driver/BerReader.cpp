// Lengths of more than one byte.
#include "port_driver/BerReader.h"

namespace ZIOP {
namespace {

constexpr std::size_t kMaximumLengthBytes = 4;

}  // namespace

// The length that the next element's tag and first byte of its length announce.
std::optional<std::size_t> BerReader::LongLength() const {
  const auto count = static_cast<std::size_t>(ByteAt(1) - kLongLength);
  if (count == 0 || count > kMaximumLengthBytes || count > rest_.size() - 2) {
    return std::nullopt;
  }
  std::size_t length = 0;
  for (std::size_t i = 0; i < count; ++i) {
    length = length << 8 | ByteAt(2 + i);
  }
  return length;
}

}  // namespace ZIOP

#include "GantryCore/CommandVO.h"

namespace Ravik {

CommandVO::CommandVO(const unsigned char* bytes, int length) {
  if (bytes != nullptr && length > 0) bytes_.assign(bytes, bytes + length);
}

CommandVO::CommandVO(const char* bytes, int length)
    : CommandVO(reinterpret_cast<const unsigned char*>(bytes), length) {}

void CommandVO::Append(const char* bytes, int length) {
  if (bytes == nullptr || length <= 0) return;
  const auto* const begin = reinterpret_cast<const unsigned char*>(bytes);
  bytes_.insert(bytes_.end(), begin, begin + length);
}

CommandVO& CommandVO::operator+=(const CommandVO& other) {
  if (&other == this) return *this += CommandVO(other);
  bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
  return *this;
}

}  // namespace Ravik

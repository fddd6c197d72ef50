// Byte blocks.
#include <CoreFoundation/CFData.h>

#include <functional>

#include "corefoundation/Data.h"

namespace CoreFoundation {

bool Data::Equals(const Object& other) const {
  return bytes_ == static_cast<const Data&>(other).bytes_;
}

std::size_t Data::Hash() const {
  return std::hash<std::string>()(bytes_);
}

}  // namespace CoreFoundation

using CoreFoundation::Data;
using CoreFoundation::ObjectOf;
using CoreFoundation::RefTo;

CFTypeID CFDataGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kData);
}

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
  if (length < 0) return nullptr;
  return RefTo(new Data(std::string(bytes, bytes + length)));
}

CFDataRef CFDataCreateCopy(CFAllocatorRef /*allocator*/, CFDataRef data) {
  CFRetain(data);
  return data;
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return reinterpret_cast<const UInt8*>(ObjectOf<Data>(data).bytes().data());
}

CFIndex CFDataGetLength(CFDataRef data) {
  return static_cast<CFIndex>(ObjectOf<Data>(data).bytes().size());
}

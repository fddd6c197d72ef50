// Arrays.
#include <CoreFoundation/CFArray.h>

#include <algorithm>

#include "corefoundation/Array.h"

namespace CoreFoundation {

bool Array::Equals(const Object& other) const {
  const auto& values = static_cast<const Array&>(other).values_;
  return std::equal(
      values_.begin(), values_.end(), values.begin(), values.end(),
      [](const auto& left, const auto& right) { return CFEqual(left.get(), right.get()) != 0; });
}

}  // namespace CoreFoundation

using CoreFoundation::Array;
using CoreFoundation::ObjectOf;

struct CFArrayCallBacks {};
const CFArrayCallBacks kCFTypeArrayCallBacks = {};

CFTypeID CFArrayGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kArray);
}

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callbacks) {
  if (count < 0) return nullptr;
  CFMutableArrayRef array = CFArrayCreateMutable(allocator, count, callbacks);
  for (CFIndex i = 0; array != nullptr && i < count; ++i) CFArrayAppendValue(array, values[i]);
  return array;
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                       const CFArrayCallBacks* callbacks) {
  if (callbacks != &kCFTypeArrayCallBacks) return nullptr;
  return CoreFoundation::MutableRefTo<CFMutableArrayRef>(new Array);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(ObjectOf<Array>(array).values().size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const auto& values = ObjectOf<Array>(array).values();
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return nullptr;
  return values[static_cast<std::size_t>(index)].get();
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
  CoreFoundation::MutableObjectOf<Array>(array).Append(value);
}

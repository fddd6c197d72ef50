// Arrays.
#include <CoreFoundation/CFArray.h>

#include <algorithm>

#include "corefoundation/Array.h"

namespace CoreFoundation {

namespace {

const void* RetainObject(CFAllocatorRef /*allocator*/, const void* value) {
  return CFRetain(value);
}
void ReleaseObject(CFAllocatorRef /*allocator*/, const void* value) {
  CFRelease(value);
}

constexpr CFArrayCallBacks kNoCallBacks = {0, nullptr, nullptr, nullptr, nullptr};

Array* NewArray(const CFArrayCallBacks* callbacks) {
  return new Array(callbacks != nullptr ? *callbacks : kNoCallBacks);
}

}  // namespace

Array::~Array() {
  if (callbacks_.release == nullptr) return;
  for (const void* value : values_) callbacks_.release(kCFAllocatorDefault, value);
}

bool Array::Equals(const Object& other) const {
  const auto& values = static_cast<const Array&>(other).values_;
  return std::equal(values_.begin(), values_.end(), values.begin(), values.end(),
                    [this](const void* left, const void* right) {
                      return left == right ||
                             (callbacks_.equal != nullptr && callbacks_.equal(left, right) != 0);
                    });
}

void Array::Append(const void* value) {
  if (callbacks_.retain != nullptr) value = callbacks_.retain(kCFAllocatorDefault, value);
  values_.push_back(value);
}

}  // namespace CoreFoundation

using CoreFoundation::Array;
using CoreFoundation::ObjectOf;

const CFArrayCallBacks kCFTypeArrayCallBacks = {0, CoreFoundation::RetainObject,
                                                CoreFoundation::ReleaseObject, nullptr, CFEqual};

CFTypeID CFArrayGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kArray);
}

CFArrayRef CFArrayCreate(CFAllocatorRef /*allocator*/, const void** values, CFIndex count,
                         const CFArrayCallBacks* callbacks) {
  if (count < 0) return nullptr;
  Array* array = CoreFoundation::NewArray(callbacks);
  std::for_each(values, values + count, [array](const void* value) { array->Append(value); });
  return CoreFoundation::RefTo(array);
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                       const CFArrayCallBacks* callbacks) {
  return CoreFoundation::MutableRefTo<CFMutableArrayRef>(CoreFoundation::NewArray(callbacks));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(ObjectOf<Array>(array).values().size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const auto& values = ObjectOf<Array>(array).values();
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return nullptr;
  return values[static_cast<std::size_t>(index)];
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
  CoreFoundation::MutableObjectOf<Array>(array).Append(value);
}

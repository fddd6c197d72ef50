// Dictionaries.
#include <CoreFoundation/CFDictionary.h>

#include <algorithm>

#include "corefoundation/Dictionary.h"

namespace CoreFoundation {

std::size_t Dictionary::KeyHash::operator()(const CFRef<CFTypeRef>& key) const {
  return ObjectOf(key.get()).Hash();
}

bool Dictionary::KeyEqual::operator()(const CFRef<CFTypeRef>& left,
                                      const CFRef<CFTypeRef>& right) const {
  return CFEqual(left.get(), right.get()) != 0;
}

bool Dictionary::Equals(const Object& other) const {
  const auto& dictionary = static_cast<const Dictionary&>(other);
  if (entries_.size() != dictionary.entries_.size()) return false;
  return std::all_of(entries_.begin(), entries_.end(), [&](const auto& entry) {
    const auto match = dictionary.entries_.find(entry.first);
    return match != dictionary.entries_.end() &&
           CFEqual(entry.second.get(), match->second.get()) != 0;
  });
}

CFTypeRef Dictionary::Find(CFTypeRef key) const {
  constexpr std::size_t kFew = 8;  // cheaper to compare than to hash
  const auto entry = entries_.size() > kFew
                         ? entries_.find(CFRef<CFTypeRef>::Retain(key))
                         : std::find_if(entries_.begin(), entries_.end(), [key](const auto& each) {
                             return CFEqual(each.first.get(), key) != 0;
                           });
  return entry != entries_.end() ? entry->second.get() : nullptr;
}

void Dictionary::Set(CFTypeRef key, CFTypeRef value) {
  entries_[CFRef<CFTypeRef>::Retain(key)] = CFRef<CFTypeRef>::Retain(value);
}

}  // namespace CoreFoundation

using CoreFoundation::Dictionary;
using CoreFoundation::ObjectOf;

struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeID CFDictionaryGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kDictionary);
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* key_callbacks,
                                   const CFDictionaryValueCallBacks* value_callbacks) {
  if (count < 0) return nullptr;
  CFMutableDictionaryRef dictionary =
      CFDictionaryCreateMutable(allocator, count, key_callbacks, value_callbacks);
  // From the last, so that of equal keys the first stays.
  while (dictionary != nullptr && count-- > 0) {
    CFDictionarySetValue(dictionary, keys[count], values[count]);
  }
  return dictionary;
}

CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
    const CFDictionaryKeyCallBacks* key_callbacks,
    const CFDictionaryValueCallBacks* value_callbacks) {
  if (key_callbacks != &kCFTypeDictionaryKeyCallBacks) return nullptr;
  if (value_callbacks != &kCFTypeDictionaryValueCallBacks) return nullptr;
  return CoreFoundation::MutableRefTo<CFMutableDictionaryRef>(new Dictionary);
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  return ObjectOf<Dictionary>(dictionary).Find(key);
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  CoreFoundation::MutableObjectOf<Dictionary>(dictionary).Set(key, value);
}

// Dictionaries.
#include <CoreFoundation/CFDictionary.h>

#include <algorithm>
#include <functional>

#include "corefoundation/Dictionary.h"

namespace CoreFoundation {

namespace {

const void* RetainObject(CFAllocatorRef /*allocator*/, const void* value) {
  return CFRetain(value);
}
void ReleaseObject(CFAllocatorRef /*allocator*/, const void* value) {
  CFRelease(value);
}

constexpr CFDictionaryKeyCallBacks kNoKeyCallBacks = {0,       nullptr, nullptr,
                                                      nullptr, nullptr, nullptr};
constexpr CFDictionaryValueCallBacks kNoValueCallBacks = {0, nullptr, nullptr, nullptr, nullptr};

template <typename CallBacks>
const void* Retained(const CallBacks& callbacks, const void* value) {
  if (callbacks.retain == nullptr) return value;
  return callbacks.retain(kCFAllocatorDefault, value);
}

template <typename CallBacks>
void Released(const CallBacks& callbacks, const void* value) {
  if (callbacks.release != nullptr) callbacks.release(kCFAllocatorDefault, value);
}

Dictionary* NewDictionary(const CFDictionaryKeyCallBacks* key_callbacks,
                          const CFDictionaryValueCallBacks* value_callbacks) {
  return new Dictionary(key_callbacks != nullptr ? *key_callbacks : kNoKeyCallBacks,
                        value_callbacks != nullptr ? *value_callbacks : kNoValueCallBacks);
}

}  // namespace

CFHashCode Dictionary::KeyHash::operator()(const void* key) const {
  return hash != nullptr ? hash(key) : std::hash<const void*>()(key);
}

bool Dictionary::KeyEqual::operator()(const void* left, const void* right) const {
  return left == right || (equal != nullptr && equal(left, right) != 0);
}

Dictionary::Dictionary(const CFDictionaryKeyCallBacks& key_callbacks,
                       const CFDictionaryValueCallBacks& value_callbacks)
    : Object(Type::kDictionary),
      key_callbacks_(key_callbacks),
      value_callbacks_(value_callbacks),
      entries_(0, KeyHash{key_callbacks.hash}, KeyEqual{key_callbacks.equal}) {}

Dictionary::~Dictionary() {
  for (const auto& [key, value] : entries_) {
    Released(value_callbacks_, value);
    Released(key_callbacks_, key);
  }
}

bool Dictionary::Equals(const Object& other) const {
  const auto& dictionary = static_cast<const Dictionary&>(other);
  if (entries_.size() != dictionary.entries_.size()) return false;
  const KeyEqual same{value_callbacks_.equal};
  return std::all_of(entries_.begin(), entries_.end(), [&](const auto& entry) {
    const auto match = dictionary.entries_.find(entry.first);
    return match != dictionary.entries_.end() && same(entry.second, match->second);
  });
}

const void* Dictionary::Find(const void* key) const {
  const auto entry = entries_.find(key);
  return entry != entries_.end() ? entry->second : nullptr;
}

void Dictionary::Set(const void* key, const void* value) {
  value = Retained(value_callbacks_, value);
  const auto entry = entries_.find(key);
  if (entry == entries_.end()) {
    entries_.emplace(Retained(key_callbacks_, key), value);
    return;
  }
  Released(value_callbacks_, entry->second);
  entry->second = value;
}

}  // namespace CoreFoundation

using CoreFoundation::Dictionary;
using CoreFoundation::ObjectOf;

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {
    0, CoreFoundation::RetainObject, CoreFoundation::ReleaseObject, nullptr, CFEqual, CFHash};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {
    0, CoreFoundation::RetainObject, CoreFoundation::ReleaseObject, nullptr, CFEqual};

CFTypeID CFDictionaryGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kDictionary);
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef /*allocator*/, const void** keys,
                                   const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* key_callbacks,
                                   const CFDictionaryValueCallBacks* value_callbacks) {
  if (count < 0) return nullptr;
  Dictionary* dictionary = CoreFoundation::NewDictionary(key_callbacks, value_callbacks);
  for (CFIndex i = 0; i < count; ++i) {
    if (dictionary->Find(keys[i]) == nullptr) dictionary->Set(keys[i], values[i]);
  }
  return CoreFoundation::RefTo(dictionary);
}

CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
    const CFDictionaryKeyCallBacks* key_callbacks,
    const CFDictionaryValueCallBacks* value_callbacks) {
  return CoreFoundation::MutableRefTo<CFMutableDictionaryRef>(
      CoreFoundation::NewDictionary(key_callbacks, value_callbacks));
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(ObjectOf<Dictionary>(dictionary).entries().size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  return ObjectOf<Dictionary>(dictionary).Find(key);
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  CoreFoundation::MutableObjectOf<Dictionary>(dictionary).Set(key, value);
}

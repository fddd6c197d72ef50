// The object behind a CFDictionaryRef.
#ifndef COREFOUNDATION_DICTIONARY_H_
#define COREFOUNDATION_DICTIONARY_H_

#include <CoreFoundation/CFDictionary.h>

#include <unordered_map>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class Dictionary final : public Object {
 public:
  using Ref = CFDictionaryRef;

  Dictionary(const CFDictionaryKeyCallBacks& key_callbacks,
             const CFDictionaryValueCallBacks& value_callbacks);
  ~Dictionary() override;

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override { return entries_.size(); }

  // Null when the key is missing.
  const void* Find(const void* key) const;
  void Set(const void* key, const void* value);

 private:
  struct KeyHash {
    CFHashCode (*hash)(const void* value);
    CFHashCode operator()(const void* key) const;
  };
  struct KeyEqual {
    ::Boolean (*equal)(const void* left, const void* right);
    bool operator()(const void* left, const void* right) const;
  };
  using Entries = std::unordered_map<const void*, const void*, KeyHash, KeyEqual>;

  const CFDictionaryKeyCallBacks key_callbacks_;
  const CFDictionaryValueCallBacks value_callbacks_;
  Entries entries_;

 public:
  const Entries& entries() const { return entries_; }
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_DICTIONARY_H_

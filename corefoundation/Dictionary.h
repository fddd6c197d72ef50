// The object behind a CFDictionaryRef.
#ifndef COREFOUNDATION_DICTIONARY_H_
#define COREFOUNDATION_DICTIONARY_H_

#include <unordered_map>

#include "corefoundation/Foundation.h"
#include "corefoundation/Object.h"

namespace CoreFoundation {

class Dictionary final : public Object {
 public:
  using Ref = CFDictionaryRef;

  Dictionary() : Object(Type::kDictionary) {}

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override { return entries_.size(); }

  // Null when the key is missing.
  CFTypeRef Find(CFTypeRef key) const;
  void Set(CFTypeRef key, CFTypeRef value);

 private:
  struct KeyHash {
    std::size_t operator()(const CFRef<CFTypeRef>& key) const;
  };
  struct KeyEqual {
    bool operator()(const CFRef<CFTypeRef>& left, const CFRef<CFTypeRef>& right) const;
  };
  using Entries = std::unordered_map<CFRef<CFTypeRef>, CFRef<CFTypeRef>, KeyHash, KeyEqual>;

  Entries entries_;

 public:
  const Entries& entries() const { return entries_; }
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_DICTIONARY_H_

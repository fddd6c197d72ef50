// The object behind a CFArrayRef.
#ifndef COREFOUNDATION_ARRAY_H_
#define COREFOUNDATION_ARRAY_H_

#include <vector>

#include "corefoundation/Foundation.h"
#include "corefoundation/Object.h"

namespace CoreFoundation {

class Array final : public Object {
 public:
  using Ref = CFArrayRef;

  Array() : Object(Type::kArray) {}

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override { return values_.size(); }

  const std::vector<CFRef<CFTypeRef>>& values() const { return values_; }
  void Append(CFTypeRef value) { values_.push_back(CFRef<CFTypeRef>::Retain(value)); }

 private:
  std::vector<CFRef<CFTypeRef>> values_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_ARRAY_H_

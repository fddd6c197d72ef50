// The object behind a CFArrayRef.
#ifndef COREFOUNDATION_ARRAY_H_
#define COREFOUNDATION_ARRAY_H_

#include <CoreFoundation/CFArray.h>

#include <vector>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class Array final : public Object {
 public:
  using Ref = CFArrayRef;

  explicit Array(const CFArrayCallBacks& callbacks) : Object(Type::kArray), callbacks_(callbacks) {}
  ~Array() override;

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override { return values_.size(); }

  const std::vector<const void*>& values() const { return values_; }
  void Append(const void* value);

 private:
  const CFArrayCallBacks callbacks_;
  std::vector<const void*> values_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_ARRAY_H_

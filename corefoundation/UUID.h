// The object behind a CFUUIDRef.
#ifndef COREFOUNDATION_UUID_H_
#define COREFOUNDATION_UUID_H_

#include <CoreFoundation/CFUUID.h>

#include <array>
#include <string>

#include "corefoundation/Object.h"

namespace CoreFoundation {

// In the order of the text form.
using UUIDBytes = std::array<UInt8, 16>;

class UUID final : public Object {
 public:
  using Ref = CFUUIDRef;

  explicit UUID(const UUIDBytes& bytes, Lifetime lifetime = Lifetime::kCounted)
      : Object(Type::kUUID, lifetime), bytes_(bytes) {}

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override;

  const UUIDBytes& bytes() const { return bytes_; }

 private:
  const UUIDBytes bytes_;
};

// The hexadecimal digits of text, whatever stands between them, filled up with zeros.
UUIDBytes ParseUUID(const std::u16string& text);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_UUID_H_

// The object behind a CFDataRef.
#ifndef COREFOUNDATION_DATA_H_
#define COREFOUNDATION_DATA_H_

#include <CoreFoundation/CFData.h>

#include <string>
#include <utility>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class Data final : public Object {
 public:
  using Ref = CFDataRef;

  explicit Data(std::string bytes) : Object(Type::kData), bytes_(std::move(bytes)) {}

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override;

  const std::string& bytes() const { return bytes_; }

 private:
  const std::string bytes_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_DATA_H_

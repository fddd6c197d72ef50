// The object behind a CFURLRef.
#ifndef COREFOUNDATION_URL_H_
#define COREFOUNDATION_URL_H_

#include <CoreFoundation/CFURL.h>

#include <string>

#include "corefoundation/Object.h"
#include "corefoundation/String.h"

namespace CoreFoundation {

class URL final : public Object {
 public:
  using Ref = CFURLRef;

  // Becomes an owner of path.
  explicit URL(const String& path) : Object(Type::kURL), path_(path) { path_.Retain(); }
  ~URL() override { path_.Release(); }

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override { return path_.Hash(); }

  const String& path() const { return path_; }

 private:
  const String& path_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_URL_H_

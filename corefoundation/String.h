// The object behind a CFStringRef.
#ifndef COREFOUNDATION_STRING_H_
#define COREFOUNDATION_STRING_H_

#include <CoreFoundation/CFString.h>

#include <string>
#include <string_view>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class String final : public Object {
 public:
  using Ref = CFStringRef;

  explicit String(std::u16string units, Lifetime lifetime = Lifetime::kCounted);

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override;

  const std::u16string& units() const { return units_; }

  // The text when it is all ASCII without zero bytes, else null.
  const std::string* ascii() const { return is_ascii_ ? &ascii_ : nullptr; }

 private:
  const std::u16string units_;
  const bool is_ascii_;
  const std::string ascii_;
};

// The string of UTF-8 text, owned by the caller; null when the text is not valid.
CFStringRef CreateString(std::string_view utf8);

// The string as UTF-8; false, with text as far as it goes, when it holds a lone surrogate.
bool GetUTF8(const String& string, std::string& text);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_STRING_H_

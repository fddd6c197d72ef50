// The object behind a CFStringRef.
#ifndef COREFOUNDATION_STRING_H_
#define COREFOUNDATION_STRING_H_

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class String final : public Object {
 public:
  using Ref = CFStringRef;

  explicit String(std::u16string units, Lifetime lifetime = Lifetime::kCounted);

  // Of text that is all ASCII without zero bytes, as most strings are. That is all that they hold.
  explicit String(std::string ascii, Lifetime lifetime = Lifetime::kCounted);

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override;

  // The UTF-16 units, made anew for a text of ASCII.
  std::u16string units() const;

  // How many units there are, and one of them.
  std::size_t size() const { return is_ascii_ ? ascii_.size() : units_.size(); }
  char16_t unit(std::size_t index) const {
    return is_ascii_ ? static_cast<char16_t>(ascii_[index]) : units_[index];
  }

  // The text when it is all ASCII without zero bytes, else null.
  const std::string* ascii() const { return is_ascii_ ? &ascii_ : nullptr; }

 private:
  const bool is_ascii_;
  const std::string ascii_;     // of a text of ASCII
  const std::u16string units_;  // of any other
};

// The string of UTF-8 text, owned by the caller; null when the text is not valid.
CFStringRef CreateString(std::string_view utf8);

// The string as UTF-8; false, with text as far as it goes, when it holds a lone surrogate.
bool GetUTF8(const String& string, std::string& text);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_STRING_H_

// From strings of property lists to UTF-8.
#include "port_driver/PropertyText.h"

namespace ZIOP {

std::string TextOf(CFStringRef string) {
  const CFRange whole = CFRangeMake(0, CFStringGetLength(string));
  CFIndex size = 0;
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
  std::string text(static_cast<std::size_t>(size), '\0');
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false,
                   reinterpret_cast<UInt8*>(text.data()), size, nullptr);
  return text;
}

}  // namespace ZIOP

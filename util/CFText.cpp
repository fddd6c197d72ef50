#include "util/CFText.h"

#include <vector>

namespace Ravik {

const char* TextOf(CFStringRef string, CFStringEncoding encoding, std::string& copy) {
  const char* const own = string != nullptr ? CFStringGetCStringPtr(string, encoding) : nullptr;
  if (own != nullptr) return own;
  return CopyText(string, encoding, copy) ? copy.c_str() : nullptr;
}

bool CopyText(CFStringRef string, CFStringEncoding encoding, std::string& text) {
  if (string == nullptr) return false;
  if (const char* const direct = CFStringGetCStringPtr(string, encoding)) {
    text = direct;
    return true;
  }
  const CFIndex longest =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
  if (longest < 0) return false;
  std::vector<char> buffer(static_cast<std::size_t>(longest) + 1);
  if (!CFStringGetCString(string, buffer.data(), longest + 1, encoding)) return false;
  text = buffer.data();
  return true;
}

}  // namespace Ravik

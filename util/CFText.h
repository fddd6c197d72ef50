// The bytes of a CoreFoundation string.
#ifndef UTIL_CFTEXT_H_
#define UTIL_CFTEXT_H_

#include <CoreFoundation/CoreFoundation.h>

#include <string>

namespace Ravik {

// The string's text in encoding, up to its first NUL: the string's own, valid as long as it is, or
// copied into copy as CopyText does; null where that fails.
const char* TextOf(CFStringRef string, CFStringEncoding encoding, std::string& copy);

// Copies the string's text in encoding, up to its first NUL, into text. The room for it is what the
// string takes at most in UTF-8, whatever the encoding. False, with text left alone, when the
// string is null or cannot be written in full.
bool CopyText(CFStringRef string, CFStringEncoding encoding, std::string& text);

}  // namespace Ravik

#endif  // UTIL_CFTEXT_H_

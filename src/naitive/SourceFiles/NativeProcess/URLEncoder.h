// The counterpart of the URL decoder, for the host's side.
#ifndef NATIVEPROCESS_URLENCODER_H_
#define NATIVEPROCESS_URLENCODER_H_

#include <string>

class URLEncoder {
 public:
  // Every byte, letters and digits included, becomes "%" and two upper-case hexadecimal digits. The
  // text ends at its first NUL; a null pointer gives the empty text.
  static std::string encode(const std::string& text);
  static std::string encode(const char* text);
};

#endif  // NATIVEPROCESS_URLENCODER_H_

#include "NativeProcess/URLDecoder.h"

#include <cstdio>
#include <cstring>
#include <new>

std::string URLDecoder::decode(const std::string& text) {
  return decode(text.c_str());
}

std::string URLDecoder::decode(const char* text) {
  std::string decoded;
  if (text == nullptr) return decoded;
  const std::size_t length = std::strlen(text);
  try {
    decoded.reserve(length);
  } catch (const std::bad_alloc&) {
    return decoded;
  }
  unsigned int number = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '+') {
      decoded += ' ';
    } else if (text[i] != '%') {
      decoded += text[i];
    } else {
      const char first = text[i + 1];  // the terminating NUL at the latest
      const char pair[3] = {first, first == '\0' ? '\0' : text[i + 2], '\0'};
      i += 2;
      // A failed conversion leaves number as the last escape set it; two digits cannot overflow.
      // NOLINTNEXTLINE(cert-err34-c)
      if (std::sscanf(pair, "%x", &number) == EOF) continue;
      const char byte = static_cast<char>(number & 0xFF);
      if (byte == '\0') break;
      decoded += byte;
    }
  }
  return decoded;
}

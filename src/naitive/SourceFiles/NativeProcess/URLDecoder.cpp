#include "NativeProcess/URLDecoder.h"

#include <cstdio>
#include <cstring>

namespace {

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// Reads the number in the two characters behind a "%". False where there is no character to read;
// number keeps its value where the characters hold none.
bool ScanEscape(const char (&pair)[3], unsigned int& number) {
  const int high = DigitValue(pair[0]);
  const int low = DigitValue(pair[1]);
  if (high >= 0 && low >= 0) {
    number = static_cast<unsigned int>(high * 16 + low);
    return true;
  }
  unsigned int scanned = 0;
  const int matches = std::sscanf(pair, "%x", &scanned);  // NOLINT(cert-err34-c): never overflows
  if (matches == 1) number = scanned;
  return matches != EOF;
}

}  // namespace

std::string URLDecoder::decode(const std::string& text) {
  return decode(text.c_str());
}

std::string URLDecoder::decode(const char* text) {
  std::string decoded;
  if (text == nullptr) return decoded;
  const std::size_t length = std::strlen(text);
  decoded.reserve(length);
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
      if (!ScanEscape(pair, number)) continue;
      const char byte = static_cast<char>(number & 0xFF);
      if (byte == '\0') break;
      decoded += byte;
    }
  }
  return decoded;
}

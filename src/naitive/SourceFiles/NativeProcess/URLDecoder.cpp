#include "NativeProcess/URLDecoder.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "GantryCore/HexDigits.h"

namespace {

// The number of an escape's two characters; false where there is not even one to read. An escape
// without a number leaves number as it is.
bool ReadEscape(const char* escape, unsigned int& number) {
  const char first = escape[1];  // the terminating NUL at the latest
  const char second = first == '\0' ? '\0' : escape[2];
  const int byte = Ravik::HexPairValue(first, second);
  if (byte >= 0) {
    number = static_cast<unsigned int>(byte);
    return true;
  }
  const char pair[3] = {first, second, '\0'};
  // Two digits cannot overflow.
  // NOLINTNEXTLINE(cert-err34-c)
  return std::sscanf(pair, "%x", &number) != EOF;
}

}  // namespace

std::string URLDecoder::decode(const std::string& text) {
  return decode(text.c_str());
}

std::string URLDecoder::decode(const char* text) {
  std::string decoded;
  if (text == nullptr) return decoded;
  const std::size_t length = std::strlen(text);
  try {
    decoded.resize(length);
  } catch (const std::bad_alloc&) {
    return decoded;
  }
  char* next = decoded.data();  // never behind the character that is read
  unsigned int number = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (text[i] == '+') {
      *next++ = ' ';
    } else if (text[i] != '%') {
      *next++ = text[i];
    } else {
      const bool is_read = ReadEscape(text + i, number);
      i += 2;
      if (!is_read) continue;
      const char byte = static_cast<char>(number & 0xFF);
      if (byte == '\0') break;
      *next++ = byte;
    }
  }
  decoded.resize(static_cast<std::size_t>(next - decoded.data()));
  return decoded;
}

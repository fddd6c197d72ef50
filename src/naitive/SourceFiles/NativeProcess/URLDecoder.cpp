#include "NativeProcess/URLDecoder.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "GantryCore/HexDigits.h"

namespace {

// Takes an escape and reads the number of its two characters; false where there is not even one to
// read. An escape without a number leaves number as it is. text may end inside the escape.
bool TakeEscape(const char*& text, unsigned int& number) {
  const char first = text[1];
  const char second = first == '\0' ? '\0' : text[2];
  const int byte = Ravik::HexPairValue(first, second);
  if (byte >= 0) {
    number = static_cast<unsigned int>(byte);
    text += 3;
    return true;
  }
  const char pair[3] = {first, second, '\0'};
  text += 1 + std::strlen(pair);
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
  for (;;) {
    char c = *text;
    if (c == '%') {
      if (!TakeEscape(text, number)) continue;
      c = static_cast<char>(number & 0xFF);
    } else {
      ++text;
      if (c == '+') c = ' ';
    }
    if (c == '\0') break;
    *next++ = c;
  }
  decoded.resize(static_cast<std::size_t>(next - decoded.data()));
  return decoded;
}

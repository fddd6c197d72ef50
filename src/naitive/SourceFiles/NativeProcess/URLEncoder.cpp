#include "NativeProcess/URLEncoder.h"

std::string URLEncoder::encode(const std::string& text) {
  return encode(text.c_str());
}

std::string URLEncoder::encode(const char* text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  if (text == nullptr) return encoded;
  for (; *text != '\0'; ++text) {
    const auto byte = static_cast<unsigned char>(*text);
    encoded += {'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
  }
  return encoded;
}

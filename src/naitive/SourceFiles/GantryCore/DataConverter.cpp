#include "GantryCore/DataConverter.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <locale>
#include <sstream>

#include "GantryCore/HexDigits.h"
#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

namespace {

constexpr std::size_t kDigitsPerByte = 2;
constexpr std::size_t kDigitsPerInteger = 8;

unsigned int ExtractInteger(std::string_view ascii) {
  std::istringstream stream{std::string(ascii)};
  stream.imbue(std::locale::classic());
  unsigned int number = 0;
  stream >> std::hex >> number;
  return number;
}

// A stream costs some hundred times as much as the digits themselves. It is asked where the text
// starts with what it skips or takes as a sign or prefix, and where the number may be too large.
// Apart from the reading of two digits, which would have to save the registers for this, too.
[[gnu::noinline]] unsigned int IntegerOf(std::string_view ascii) {
  unsigned int number = 0;
  std::size_t digits = 0;
  for (; digits < ascii.size(); ++digits) {
    const int value = HexDigitValue(ascii[digits]);
    if (value == kNoHexDigit) break;
    number = number << 4 | static_cast<unsigned int>(value);
  }
  constexpr std::string_view kStart = " \t\n\v\f\r+-";
  constexpr std::string_view kPrefixEnd = "xX";
  const bool ended = digits == ascii.size();
  const bool plain = digits == 0 ? ended || kStart.find(ascii[0]) == kStart.npos
                                 : ended || kPrefixEnd.find(ascii[digits]) == kPrefixEnd.npos;
  return plain && digits <= kDigitsPerInteger ? number : ExtractInteger(ascii);
}

unsigned char PairValue(char high, char low) {
  const int byte = HexPairValue(high, low);
  if (byte >= 0) return static_cast<unsigned char>(byte);
  const char pair[] = {high, low};
  return static_cast<unsigned char>(
      CDataConverter::Ascii2Integer(std::string_view(pair, sizeof pair)));
}

}  // namespace

std::vector<bool> CDataConverter::Byte2Binary(unsigned char byte) {
  return std::vector<bool>(8, (byte & 1) != 0);
}

std::vector<bool> CDataConverter::Byte2Binary(const std::vector<unsigned char>& bytes) {
  std::vector<bool> bits;
  for (const unsigned char byte : bytes) bits.insert(bits.end(), 8, (byte & 1) != 0);
  return bits;
}

unsigned char CDataConverter::Ascii2Byte(char digit) {
  return static_cast<unsigned char>(std::max(HexDigitValue(digit), 0));
}

std::vector<unsigned char> CDataConverter::Ascii2Byte(std::string_view ascii) {
  RAVIK_ASSERT((ascii.size() % 2) == 0);
  std::vector<unsigned char> ret;
  ret.reserve(ascii.size() / kDigitsPerByte);
  for (std::size_t i = 0; i < ascii.size(); i += kDigitsPerByte) {
    ret.push_back(PairValue(ascii[i], ascii[i + 1]));
  }
  // clang-format off
  RAVIK_ASSERT((ascii.size()/2) == ret.size());
  // clang-format on
  return ret;
}

std::string CDataConverter::Ascii2String(std::string_view ascii) {
  RAVIK_ASSERT((ascii.size() % 2) == 0);
  std::string text(ascii.size() / kDigitsPerByte, '\0');
  const char* pair = ascii.data();
  for (char& character : text) {
    character = static_cast<char>(PairValue(pair[0], pair[1]));
    pair += kDigitsPerByte;
  }
  return text;
}

std::string CDataConverter::Byte2Ascii(unsigned char byte) {
  return {kHexDigits[byte >> 4], kHexDigits[byte & 0x0F]};
}

std::string CDataConverter::Byte2Ascii(const std::vector<unsigned char>& bytes) {
  return Byte2Ascii(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

std::string CDataConverter::Byte2Ascii(std::string_view bytes) {
  std::string ascii(bytes.size() * kDigitsPerByte, '\0');
  char* digit = ascii.data();
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    *digit++ = kHexDigits[byte >> 4];
    *digit++ = kHexDigits[byte & 0x0F];
  }
  return ascii;
}

unsigned int CDataConverter::Ascii2Integer(std::string_view ascii) {
  if (ascii.size() == kDigitsPerByte) {
    const int byte = HexPairValue(ascii[0], ascii[1]);
    if (byte >= 0) return static_cast<unsigned int>(byte);
  }
  return IntegerOf(ascii);
}

unsigned int CDataConverter::Byte2Integer(const std::vector<unsigned char>& bytes,
                                          bool big_endian) {
  unsigned int number = 0;
  const auto append = [&number](unsigned char byte) { number = number << 8 | byte; };
  if (big_endian) {
    std::for_each(bytes.begin(), bytes.end(), append);
  } else {
    std::for_each(bytes.rbegin(), bytes.rend(), append);
  }
  return number;
}

std::vector<unsigned char> CDataConverter::Integer2Byte(unsigned int value, unsigned int size,
                                                        bool big_endian) {
  std::vector<unsigned char> bytes(size);
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(value & 0xFF);
    value >>= 8;
  }
  if (big_endian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

std::string CDataConverter::Byte2String(const std::vector<unsigned char>& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::vector<unsigned char> CDataConverter::String2Byte(const std::string& text) {
  return {text.begin(), text.end()};
}

}  // namespace Ravik

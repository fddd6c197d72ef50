#include "GantryCore/DataConverter.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <locale>
#include <sstream>

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

namespace {

constexpr std::size_t kDigitsPerByte = 2;
constexpr int kNoDigit = -1;

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return kNoDigit;
}

unsigned char PairValue(const std::string& ascii, std::size_t position) {
  const int high = DigitValue(ascii[position]);
  const int low = DigitValue(ascii[position + 1]);
  // Two digits, which nearly every pair is, need no stream; it costs some hundred times as much.
  if (high != kNoDigit && low != kNoDigit) return static_cast<unsigned char>(high << 4 | low);
  const std::string pair = ascii.substr(position, kDigitsPerByte);
  return static_cast<unsigned char>(CDataConverter::Ascii2Integer(pair));
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
  const int digit_value = DigitValue(digit);
  return digit_value == kNoDigit ? static_cast<unsigned char>(0)
                                 : static_cast<unsigned char>(digit_value);
}

std::vector<unsigned char> CDataConverter::Ascii2Byte(const std::string& ascii) {
  RAVIK_ASSERT((ascii.size() % 2) == 0);
  std::vector<unsigned char> ret;
  ret.reserve(ascii.size() / kDigitsPerByte);
  for (std::size_t i = 0; i < ascii.size(); i += kDigitsPerByte) {
    ret.push_back(PairValue(ascii, i));
  }
  // clang-format off
  RAVIK_ASSERT((ascii.size()/2) == ret.size());
  // clang-format on
  return ret;
}

std::string CDataConverter::Ascii2String(const std::string& ascii) {
  RAVIK_ASSERT((ascii.size() % 2) == 0);
  return Byte2String(Ascii2Byte(ascii));
}

std::string CDataConverter::Byte2Ascii(unsigned char byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 0x0F]};
}

std::string CDataConverter::Byte2Ascii(const std::vector<unsigned char>& bytes) {
  std::string ascii;
  ascii.reserve(bytes.size() * kDigitsPerByte);
  for (const unsigned char byte : bytes) ascii += Byte2Ascii(byte);
  return ascii;
}

unsigned int CDataConverter::Ascii2Integer(const std::string& ascii) {
  std::istringstream stream(ascii);
  stream.imbue(std::locale::classic());
  unsigned int number = 0;
  stream >> std::hex >> number;
  return number;
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

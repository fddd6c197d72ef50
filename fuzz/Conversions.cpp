#include "fuzz/Conversions.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <limits>

#include "GantryCore/DataConverter.h"
#include "fuzz/Fuzz.h"
#include "fuzz/PrescribedEnds.h"

namespace {

using Ravik::CDataConverter;
using Bytes = std::vector<unsigned char>;

void CheckHexText(const Bytes& bytes) {
  const std::string ascii = CDataConverter::Byte2Ascii(bytes);
  FUZZ_CHECK(ascii.find_first_not_of("0123456789ABCDEF") == std::string::npos);
  FUZZ_CHECK(CDataConverter::Ascii2Byte(ascii) == bytes);
  FUZZ_CHECK(CDataConverter::Ascii2String(ascii) == CDataConverter::Byte2String(bytes));
}

// Text that need not be hexadecimal; of odd length it is a programming error.
void CheckAnyText(const std::string& text) {
  FUZZ_CHECK(CDataConverter::Ascii2Integer(text) == fuzz::HexNumber(text));
  FUZZ_CHECK(CDataConverter::Byte2String(CDataConverter::String2Byte(text)) == text);
  const bool completed = Completes(
      [&] { FUZZ_CHECK(CDataConverter::Ascii2String(text) == fuzz::HexCharacters(text)); });
  FUZZ_CHECK(completed == (text.size() % 2 == 0));
}

// The last four bytes count, most significant first, or the first four, least significant first.
void CheckIntegers(const Bytes& bytes) {
  constexpr std::size_t kIntegerSize = 4;
  const auto size = static_cast<unsigned int>(bytes.size());
  for (const bool big_endian : {false, true}) {
    const unsigned int number = CDataConverter::Byte2Integer(bytes, big_endian);
    Bytes expected(bytes);
    if (big_endian) std::reverse(expected.begin(), expected.end());
    for (std::size_t i = kIntegerSize; i < expected.size(); ++i) expected[i] = 0;
    if (big_endian) std::reverse(expected.begin(), expected.end());
    FUZZ_CHECK(CDataConverter::Integer2Byte(number, size, big_endian) == expected);
  }
}

void CheckBits(const Bytes& bytes) {
  const std::vector<bool> bits = CDataConverter::Byte2Binary(bytes);
  FUZZ_CHECK(bits.size() == bytes.size() * 8);
  for (std::size_t i = 0; i < bits.size(); ++i) FUZZ_CHECK(bits[i] == (bytes[i / 8] % 2 == 1));
}

void CheckByte(unsigned char byte) {
  const auto character = static_cast<char>(byte);
  const std::string digit(1, character);
  FUZZ_CHECK(CDataConverter::Ascii2Byte(character) == fuzz::HexNumber(digit));
  FUZZ_CHECK(CDataConverter::Byte2Binary(byte) == CDataConverter::Byte2Binary(Bytes{byte}));
}

}  // namespace

namespace fuzz {

unsigned int HexNumber(const std::string& ascii) {
  constexpr unsigned long long kLargest = std::numeric_limits<unsigned int>::max();
  const char* start = ascii.c_str();
  while (std::isspace(static_cast<unsigned char>(*start)) != 0) ++start;
  const bool negative = *start == '-';
  if (*start == '-' || *start == '+') ++start;
  // A second sign or a blank here would be taken too.
  if (std::isxdigit(static_cast<unsigned char>(*start)) == 0) return 0;
  const unsigned long long magnitude = std::strtoull(start, nullptr, 16);
  if (magnitude > kLargest) return static_cast<unsigned int>(kLargest);
  const auto number = static_cast<unsigned int>(magnitude);
  return negative ? 0 - number : number;
}

std::string HexCharacters(const std::string& ascii) {
  std::string characters;
  for (std::size_t i = 0; i < ascii.size(); i += 2) {
    characters += static_cast<char>(HexNumber(ascii.substr(i, 2)) & 0xFF);
  }
  return characters;
}

void CheckConversions(const std::vector<unsigned char>& bytes) {
  CheckHexText(bytes);
  CheckAnyText({bytes.begin(), bytes.end()});
  CheckIntegers(bytes);
  CheckBits(bytes);
  for (const unsigned char byte : bytes) CheckByte(byte);
}

}  // namespace fuzz

// The values of hexadecimal digits.
#ifndef GANTRYCORE_HEXDIGITS_H_
#define GANTRYCORE_HEXDIGITS_H_

#include <array>

namespace Ravik {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";
inline constexpr int kNoHexDigit = -1;

namespace hex_digits {

constexpr std::array<signed char, 256> MakeValues() {
  std::array<signed char, 256> values{};
  for (auto& value : values) value = kNoHexDigit;
  for (unsigned int i = 0; i < 16; ++i) {
    values[static_cast<unsigned char>("0123456789ABCDEF"[i])] = static_cast<signed char>(i);
    values[static_cast<unsigned char>("0123456789abcdef"[i])] = static_cast<signed char>(i);
  }
  return values;
}

inline constexpr std::array<signed char, 256> kValues = MakeValues();

}  // namespace hex_digits

// The value of a digit of either case; kNoHexDigit for any other character.
constexpr int HexDigitValue(char digit) {
  return hex_digits::kValues[static_cast<unsigned char>(digit)];
}

// The byte of two digits, the more significant one first; negative if one of them is none.
constexpr int HexPairValue(char high, char low) {
  return HexDigitValue(high) * 16 | HexDigitValue(low);
}

}  // namespace Ravik

#endif  // GANTRYCORE_HEXDIGITS_H_

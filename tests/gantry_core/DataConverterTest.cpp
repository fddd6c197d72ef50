// Conversions between bytes, hexadecimal text and integers, against the standard library's own.
#include "GantryCore/DataConverter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
using Convert = CDataConverter;

unsigned int Extracted(const std::string& text) {
  std::istringstream stream(text);
  unsigned int number = 0;
  stream >> std::hex >> number;
  return number;
}

TEST(DataConverter, EveryPairOfCharactersReadsAsAStreamReadsIt) {
  for (int i = 0; i < 0x10000; ++i) {
    const std::string pair{static_cast<char>(i >> 8), static_cast<char>(i)};
    const auto expected = static_cast<unsigned char>(Extracted(pair));
    ASSERT_EQ(Convert::Ascii2Byte(pair), Bytes{expected}) << i;
    ASSERT_EQ(Convert::Ascii2String(pair), std::string(1, static_cast<char>(expected))) << i;
    ASSERT_EQ(Convert::Ascii2Byte(pair[1]), Extracted(pair.substr(1))) << i;
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned int>(i));
    ASSERT_EQ(Convert::Byte2Ascii(Convert::String2Byte(pair)), digits);
    ASSERT_EQ(Convert::Byte2String(Convert::Ascii2Byte(std::string(digits))), pair);
  }
}

TEST(DataConverter, ReadsHexadecimalNumbers) {
  const std::map<std::string, unsigned int> kNumbers = {
      {"", 0},           {"0x1f", 0x1F}, {"0X1F", 0x1F},
      {"0x", 0},         {" \t\n7", 7},  {"12 34", 0x12},
      {"1,000", 1},      {"4G", 4},      {"0000000000012", 0x12},
      {"FFFFFFFF", ~0U}, {"-1", ~0U},    {"100000000", ~0U},
  };
  for (const auto& [text, number] : kNumbers) {
    EXPECT_EQ(Convert::Ascii2Integer(text), number) << text;
  }
}

TEST(DataConverter, LaysIntegersOutAndReadsFourBytes) {
  const struct {
    unsigned int value;
    unsigned int size;
    Bytes little;
    Bytes big;
    unsigned int read;
  } kCases[] = {
      {0x1234, 0, {}, {}, 0},
      {0x1234, 1, {0x34}, {0x34}, 0x34},
      {0x1234, 3, {0x34, 0x12, 0}, {0, 0x12, 0x34}, 0x1234},
      {0x89ABCDEF, 4, {0xEF, 0xCD, 0xAB, 0x89}, {0x89, 0xAB, 0xCD, 0xEF}, 0x89ABCDEF},
      {~0U, 5, {0xFF, 0xFF, 0xFF, 0xFF, 0}, {0, 0xFF, 0xFF, 0xFF, 0xFF}, ~0U},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, false), c.little) << c.size;
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, true), c.big) << c.size;
    EXPECT_EQ(Convert::Byte2Integer(c.little, false), c.read) << c.size;
    EXPECT_EQ(Convert::Byte2Integer(c.big, true), c.read) << c.size;
  }
}

TEST(DataConverter, BinaryRepeatsTheLowestBit) {
  std::vector<bool> bits(8, true);
  EXPECT_EQ(Convert::Byte2Binary(static_cast<unsigned char>(0x01)), bits);
  bits.resize(16, false);
  EXPECT_EQ(Convert::Byte2Binary(Bytes{0x03, 0xFE}), bits);
}

TEST(DataConverterDeathTest, OddHexadecimalTextEndsTheProcess) {
  EXPECT_DEATH(Convert::Ascii2Byte(std::string("ABC")),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2Byte: .*`\(ascii.size\(\) % 2\) == 0')");
  EXPECT_DEATH(Convert::Ascii2String("A"),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2String: .*`\(ascii.size\(\) % 2\) == 0')");
}

}  // namespace
}  // namespace Ravik

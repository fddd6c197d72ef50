// Conversions between bytes, hexadecimal text and integers, against the standard library's own.
#include "GantryCore/DataConverter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
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
  for (int high = 0; high < 256; ++high) {
    for (int low = 0; low < 256; ++low) {
      const std::string pair{static_cast<char>(high), static_cast<char>(low)};
      const auto expected = static_cast<unsigned char>(Extracted(pair));
      ASSERT_EQ(Convert::Ascii2Byte(pair), Bytes{expected}) << high << ' ' << low;
      ASSERT_EQ(Convert::Ascii2String(pair), std::string(1, static_cast<char>(expected)));
    }
    const std::string one(1, static_cast<char>(high));
    ASSERT_EQ(Convert::Ascii2Byte(one[0]), Extracted(one)) << high;
  }
}

TEST(DataConverter, ReadsHexadecimalNumbers) {
  const struct {
    const char* text;
    unsigned int number;
  } kCases[] = {
      {"", 0},
      {"1B", 0x1B},
      {"ab", 0xAB},
      {"0x1f", 0x1F},
      {"0X1F", 0x1F},
      {"0x", 0},
      {" \t\n7", 7},
      {"4G", 4},
      {"GG", 0},
      {"-1", ~0U},
      {"+5", 5},
      {"FFFFFFFF", ~0U},
      {"100000000", ~0U},
      {"0000000000012", 0x12},
      {"12 34", 0x12},
      {"1,000", 1},
  };
  for (const auto& c : kCases) EXPECT_EQ(Convert::Ascii2Integer(c.text), c.number) << c.text;
}

TEST(DataConverter, EveryByteMakesARoundTrip) {
  Bytes all;
  std::string printed;
  for (unsigned int i = 0; i < 256; ++i) {
    all.push_back(static_cast<unsigned char>(i));
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", i);
    printed += digits;
  }
  EXPECT_EQ(Convert::Byte2Ascii(all), printed);
  EXPECT_EQ(Convert::Ascii2Byte(printed), all);
  EXPECT_EQ(Convert::String2Byte(Convert::Ascii2String(printed)), all);
  EXPECT_EQ(Convert::String2Byte(Convert::Byte2String(all)), all);
  EXPECT_EQ(Convert::Byte2Ascii(Bytes{}), "");
  EXPECT_EQ(Convert::Ascii2Byte(""), Bytes{});
}

TEST(DataConverter, LaysIntegersOutInEitherByteOrder) {
  const struct {
    unsigned int value;
    unsigned int size;
    Bytes little;
    Bytes big;
  } kCases[] = {
      {0x1234, 0, {}, {}},
      {0x1234, 1, {0x34}, {0x34}},
      {0x1234, 2, {0x34, 0x12}, {0x12, 0x34}},
      {0x1234, 3, {0x34, 0x12, 0}, {0, 0x12, 0x34}},
      {0x89ABCDEF, 4, {0xEF, 0xCD, 0xAB, 0x89}, {0x89, 0xAB, 0xCD, 0xEF}},
      {0x89ABCDEF, 6, {0xEF, 0xCD, 0xAB, 0x89, 0, 0}, {0, 0, 0x89, 0xAB, 0xCD, 0xEF}},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, false), c.little) << c.size;
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, true), c.big) << c.size;
  }
}

TEST(DataConverter, ReadsTheFourLeastSignificantBytes) {
  EXPECT_EQ(Convert::Byte2Integer({}, true), 0U);
  EXPECT_EQ(Convert::Byte2Integer({0x12, 0x34}, true), 0x1234U);
  EXPECT_EQ(Convert::Byte2Integer({0x12, 0x34}, false), 0x3412U);
  EXPECT_EQ(Convert::Byte2Integer({1, 2, 3, 4, 0xF5}, true), 0x020304F5U);
  EXPECT_EQ(Convert::Byte2Integer({1, 2, 3, 0xF4, 5}, false), 0xF4030201U);
}

TEST(DataConverter, BinaryRepeatsTheLowestBit) {
  EXPECT_EQ(Convert::Byte2Binary(static_cast<unsigned char>(0xFE)), std::vector<bool>(8, false));
  EXPECT_EQ(Convert::Byte2Binary(static_cast<unsigned char>(0x01)), std::vector<bool>(8, true));
  std::vector<bool> bits(8, true);
  bits.resize(16, false);
  EXPECT_EQ(Convert::Byte2Binary(Bytes{0x03, 0x80}), bits);
}

TEST(DataConverterDeathTest, OddHexadecimalTextEndsTheProcess) {
  EXPECT_DEATH(Convert::Ascii2Byte(std::string("ABC")),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2Byte: .*`\(ascii.size\(\) % 2\) == 0')");
  EXPECT_DEATH(Convert::Ascii2String("A"),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2String: .*`\(ascii.size\(\) % 2\) == 0')");
}

}  // namespace
}  // namespace Ravik

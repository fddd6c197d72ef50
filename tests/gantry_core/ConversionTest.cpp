// Conversions between bytes, hexadecimal text and integers, against the standard library's own, and
// of parameters' values. The rows of their table are checked against docs/parameters.md.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
using Convert = CDataConverter;
using Table = CCommandConvertTable;

TEST(DataConverter, EveryPairOfCharactersReadsAsAStreamReadsIt) {
  for (int i = 0; i < 0x10000; ++i) {
    const std::string pair{static_cast<char>(i >> 8), static_cast<char>(i)};
    unsigned int both = 0;
    unsigned int second = 0;
    std::istringstream(pair) >> std::hex >> both;
    std::istringstream(pair.substr(1)) >> std::hex >> second;
    const auto expected = static_cast<unsigned char>(both);
    ASSERT_EQ(Convert::Ascii2Byte(pair), Bytes{expected}) << i;
    ASSERT_EQ(Convert::Ascii2String(pair), std::string(1, static_cast<char>(expected))) << i;
    ASSERT_EQ(Convert::Ascii2Byte(pair[1]), second) << i;
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned int>(i));
    ASSERT_EQ(Convert::Byte2Ascii(Convert::String2Byte(pair)), digits);
    ASSERT_EQ(Convert::Byte2String(Convert::Ascii2Byte(std::string(digits))), pair);
  }
}

TEST(DataConverter, ReadsHexadecimalNumbers) {
  const std::map<std::string, unsigned int> kNumbers = {
      {"", 0},
      {"0x1f", 0x1F},
      {"0X1F", 0x1F},
      {"0x", 0},
      {" \t\n7", 7},
      {"12 34", 0x12},
      {"1,000", 1},
      {"4G", 4},
      {"0000000000012", 0x12},
      {"FFFFFFFF", ~0U},
      {"-1", ~0U},
      {"100000000", ~0U},
      {"00000012x", 0x12},
      {"12345678 9", 0x12345678},
      {"123456789", ~0U},
  };
  for (const auto& [text, number] : kNumbers) {
    EXPECT_EQ(Convert::Ascii2Integer(text), number) << text;
  }
}

TEST(DataConverter, ReadsEveryShortTextAsAStreamDoes) {
  constexpr char kCharacters[] = "09afAFgxX+- \t.,";  // and the terminating zero
  std::vector<std::string> texts{""};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string text = texts[i];
    unsigned int number = 0;
    std::istringstream(text) >> std::hex >> number;
    ASSERT_EQ(Convert::Ascii2Integer(text), number) << text;
    if (text.size() == 4) continue;
    for (const char character : kCharacters) texts.push_back(text + character);
  }
}

TEST(DataConverter, LaysIntegersOutAndReadsFourBytes) {
  const struct {
    unsigned int value;
    unsigned int size;
    const char* big;
    unsigned int read;
  } kCases[] = {
      {0x1234, 0, "", 0},
      {0x1234, 1, "34", 0x34},
      {0x1234, 3, "001234", 0x1234},
      {0x89ABCDEF, 4, "89ABCDEF", 0x89ABCDEF},
      {~0U, 5, "00FFFFFFFF", ~0U},
  };
  for (const auto& c : kCases) {
    const Bytes big = Convert::Ascii2Byte(std::string(c.big));
    const Bytes little(big.rbegin(), big.rend());
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, false), little) << c.size;
    EXPECT_EQ(Convert::Integer2Byte(c.value, c.size, true), big) << c.size;
    EXPECT_EQ(Convert::Byte2Integer(little, false), c.read) << c.size;
    EXPECT_EQ(Convert::Byte2Integer(big, true), c.read) << c.size;
  }
}

TEST(DataConverter, BinaryRepeatsTheLowestBit) {
  std::vector<bool> bits(8, true);
  bits.resize(16, false);
  EXPECT_EQ(Convert::Byte2Binary(Bytes{0x03, 0xFE}), bits);
}

TEST(CommandConvertTable, UnknownNamesLeaveTheResultAlone) {
  unsigned int byte = 77;
  EXPECT_FALSE(Table::StringToBinary("FeedSpeed", "auto", byte));
  EXPECT_FALSE(Table::StringToBinary("PlatenGap", "Standard", byte));
  EXPECT_EQ(byte, 77U);
  std::string text = "kept";
  EXPECT_FALSE(Table::BinaryToString("feedspeed", 254, text));
  EXPECT_FALSE(Table::BinaryToString("FeedSpeed", 254 + 256, text));
  EXPECT_EQ(text, "kept");
}

TEST(CommandConvertTable, UserScalesWrapAround) {
  const std::tuple<const char*, unsigned int, int> kCases[] = {
      {"PaperFeedAdjustmentValue", 98, -3},
      {"PlatenGap", 0xFFFFFFFF, -1},
      {"MultiStrikePrinting", 0x7FFFFFFF, -0x7FFFFFFF - 1},
      {"MediaTension", 0x80000000, 0x7FFFFF80},
  };
  for (const auto& [name, printer, user] : kCases) {
    EXPECT_EQ(Table::CorrectValue(name, printer), user) << name;
    EXPECT_EQ(Table::InverseCorrectValue(name, static_cast<unsigned int>(user)),
              static_cast<int>(printer));
  }
}

TEST(DataConverterDeathTest, OddHexadecimalTextEndsTheProcess) {
  EXPECT_DEATH(Convert::Ascii2Byte(std::string("ABC")),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2Byte: .*`\(ascii.size\(\) % 2\) == 0')");
  EXPECT_DEATH(Convert::Ascii2String("A"),
               R"(GantryCore/DataConverter:[0-9]+: Ascii2String: .*`\(ascii.size\(\) % 2\) == 0')");
}

}  // namespace
}  // namespace Ravik

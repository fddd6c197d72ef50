// Text conversion between Shift-JIS, UTF-8 and UTF-16.
#include "util/RavikTextConv_Mac.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace Ravik {
namespace {

// Three kanji in each encoding.
const char* const kKanjiUTF8 = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E";
const char* const kKanjiSJIS = "\x93\xFA\x96\x7B\x8C\xEA";

// UTF-16 units as the bytes of a wide text.
std::wstring WideFromUnits(const std::u16string& units) {
  std::wstring wide((units.size() * 2 + 3) / 4, L'\0');
  std::memcpy(wide.data(), units.data(), units.size() * 2);
  return wide;
}

TEST(TextConv, YieldsOneByteForEveryUnitOfTheSource) {
  struct Case {
    const char* name;
    std::string (*convert)(const std::string&);
    std::string text;
    std::size_t length;
  };
  const Case cases[] = {
      {"empty", TextConv::SJISToUTF8, "", 0},
      {"ASCII", TextConv::SJISToUTF8, "abc", 3},
      {"up to the first zero byte", TextConv::SJISToUTF8, std::string("abc\0def", 7), 3},
      {"kanji", TextConv::SJISToUTF8, kKanjiSJIS, 3},
      {"kanji back", TextConv::UTF8ToSJIS, kKanjiUTF8, 3},
      {"pair", TextConv::UTF8ToSJIS, "a\xF0\x9F\x98\x80", 1},
      {"up to what Shift-JIS lacks", TextConv::UTF8ToSJIS,
       "ab\xC3\xA9"
       "c",
       2},
      {"nothing that Shift-JIS has", TextConv::UTF8ToSJIS, "\xC3\xA9", 0},
      {"ill-formed UTF-8", TextConv::UTF8ToSJIS, "ab\xFF", 0},
      {"cut-off UTF-8", TextConv::UTF8ToSJIS, "ab\xE3\x81", 0},
      {"ill-formed Shift-JIS", TextConv::SJISToUTF8, "ab\xFF", 0},
      {"lone lead byte", TextConv::SJISToUTF8, "ab\x93", 0},
  };
  for (const Case& c : cases) EXPECT_EQ(c.convert(c.text).size(), c.length) << c.name;
}

TEST(TextConv, KeepsWhatFitsInFrontOfTheTerminator) {
  EXPECT_EQ(TextConv::SJISToUTF8("abc"), std::string(3, '\0')) << "one byte short for ASCII";
  EXPECT_EQ(TextConv::UTF8ToSJIS("abc"), std::string(3, '\0'));
  EXPECT_EQ(TextConv::UTF8ToSJIS(kKanjiUTF8)[0], '\0');
  EXPECT_EQ(TextConv::UTF8ToSJIS("a"), std::string(1, '\0')) << "no room but for the terminator";
}

TEST(TextConv, ReadsWideResultsWithinTheConvertedBytes) {
  // Eight units give eight bytes: two wide characters at most, none of them cut off.
  for (int units = 0; units <= 9; ++units) {
    const std::string ascii(static_cast<std::size_t>(units), 'a');
    EXPECT_LE(TextConv::UTF8ToUTF16(ascii).size(), static_cast<std::size_t>(units) / 4) << units;
    EXPECT_LE(TextConv::SJISToUTF16(ascii).size(), static_cast<std::size_t>(units) / 4) << units;
  }
  EXPECT_EQ(TextConv::UTF8ToUTF16("abc\xFF"), L"");
  EXPECT_EQ(TextConv::UTF8ToUTF16(kKanjiUTF8), L"") << "three bytes hold no wide character";
}

TEST(TextConv, ReadsWideTextUpToItsFirstZeroByte) {
  // A wide 'a' is 61 00 00 00: one byte, which is no UTF-16 text.
  EXPECT_EQ(TextConv::UTF16ToUTF8(L"a"), "");
  EXPECT_EQ(TextConv::UTF16ToSJIS(L""), "");
  // Two packed kanji without a zero byte: 65 E5 and 67 2C.
  const std::wstring packed = WideFromUnits({0x65E5, 0x672C});
  EXPECT_EQ(TextConv::UTF16ToUTF8(packed).size(), 2U);
  EXPECT_EQ(TextConv::UTF16ToSJIS(packed).size(), 2U);
}

TEST(TextConv, TakesANullPointerAsNoText) {
  EXPECT_EQ(ConvertEncoding(nullptr, 0x08000100, 0x14000100), "");
}

}  // namespace
}  // namespace Ravik

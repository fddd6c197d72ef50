// Text conversion between Shift-JIS, UTF-8 and UTF-16: one byte for every unit of the source.
#include "util/RavikTextConv_Mac.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Ravik::TextConv;

TEST(TextConv, YieldsOneByteForEveryUnitOfTheSource) {
  const struct {
    std::string (*convert)(const std::string&);
    std::string text;
    std::size_t length;
  } cases[] = {
      {TextConv::SJISToUTF8, std::string("abc\0def", 7), 3},  // up to the first zero byte
      {TextConv::UTF8ToSJIS, "a", 1},                         // no room but for the terminator
      {TextConv::SJISToUTF8, "\x93\xFA\x96\x7B\x8C\xEA", 3},  // 日本語
      {TextConv::UTF8ToSJIS, "日本語", 3},
      {TextConv::UTF8ToSJIS, "ab\xC3\xA9\x63", 2},  // up to what Shift-JIS lacks
      {TextConv::UTF8ToSJIS, "ab\xFF", 0},          // ill-formed
  };
  for (const auto& c : cases) {
    const std::string result = c.convert(c.text);
    EXPECT_EQ(result.size(), c.length) << c.text;
    EXPECT_EQ(result.c_str()[0], '\0') << "the text never fits, a terminator is written with it";
  }
  EXPECT_EQ(Ravik::ConvertEncoding(nullptr, 0x08000100, 0x14000100), "");
}

TEST(TextConv, ReadsWideTextWithinItsBytes) {
  for (const auto convert : {TextConv::UTF8ToUTF16, TextConv::SJISToUTF16}) {
    EXPECT_EQ(convert("abc"), L"") << "three bytes hold no wide character";
    EXPECT_LE(convert("abcdefghi").size(), 2U);
  }
  // A wide 'a' is 61 00 00 00: one byte, which is no UTF-16 text.
  EXPECT_EQ(TextConv::UTF16ToUTF8(L"a"), "");
  std::wstring packed(1, L'\0');
  std::memcpy(packed.data(), u"\u65E5\u672C", sizeof(wchar_t));  // two units without a zero byte
  EXPECT_EQ(TextConv::UTF16ToUTF8(packed).size(), 2U);
  EXPECT_EQ(TextConv::UTF16ToSJIS(packed).size(), 2U);
}

}  // namespace

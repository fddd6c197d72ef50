// Strings and their encodings.
#include <cstdio>

#include "tests/corefoundation/TestSupport.h"

namespace {

constexpr CFStringEncoding kShiftJIS = kCFStringEncodingDOSJapanese;
constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;
constexpr CFStringEncoding kUTF16 = kCFStringEncodingUTF16LE;
constexpr CFStringEncoding kMacRoman = kCFStringEncodingMacRoman;

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02X", static_cast<unsigned char>(byte));
    text += digits;
  }
  return text;
}

std::u16string UnitsOf(CFStringRef string) {
  std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
  CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)), kUTF16, 0, 0,
                   reinterpret_cast<UInt8*>(units.data()), static_cast<CFIndex>(2 * units.size()),
                   nullptr);
  return units;
}

// A string of any units that are not 0, surrogates by themselves included.
CFRef<CFStringRef> FromUnits(const std::u16string& units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return MakeString(bytes, kUTF16);
}

TEST(String, DecodesOrRefuses) {
  struct Case {
    CFStringEncoding encoding;
    std::string bytes;
    const char16_t* units;  // null: refused
  };
  const Case cases[] = {
      {kUTF8, "", u""},
      {kUTF8, "abc", u"abc"},
      {kUTF8, "\xC2\x80\xDF\xBF", u"\u0080\u07FF"},
      {kUTF8, "\xE0\xA0\x80\xEF\xBF\xBF", u"\u0800\uFFFF"},
      {kUTF8, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
      {kUTF8, "\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
      {kUTF8, "\xEF\xBB\xBF\x61", u"a"},
      {kUTF8, "\x61\xEF\xBB\xBF", u"a\uFEFF"},
      {kUTF8, "\xC0\x80", nullptr},
      {kUTF8, "\xE0\x80\xAF", nullptr},
      {kUTF8, "\xFF", nullptr},
      {kUTF8, "\x80", nullptr},
      {kUTF8, "\xE3\x81", nullptr},
      {kUTF8, "\xE3\x81\x61", nullptr},
      {kUTF8, "\xED\xA0\x80", nullptr},
      {kUTF8, "\xF0\x8F\xBF\xBF", nullptr},
      {kUTF8, "\xF4\x90\x80\x80", nullptr},
      {kUTF8, "\xF5\x80\x80\x80", nullptr},
      {kUTF8, "valid \xE6\x97\xA5 then \xC0\x80", nullptr},
      {kShiftJIS, "\x5C\x7E", u"\\~"},
      {kShiftJIS, "\x81\x60\x81\x7C\x81\x5C\x81\x61", u"\uFF5E\uFF0D\u2015\u2225"},
      {kShiftJIS, "\x87\x40\xFA\x40\xED\x40\xF0\x40", u"\u2460\u2170\u7E8A\uE000"},
      {kShiftJIS, "\xB1\xDD", u"\uFF71\uFF9D"},
      {kShiftJIS, "\x80", nullptr},
      {kShiftJIS, "\xA0", nullptr},
      {kShiftJIS, "\xFD", nullptr},
      {kShiftJIS, "\xFE", nullptr},
      {kShiftJIS, "\xFF", nullptr},
      {kShiftJIS, "a\x81", nullptr},
      {kShiftJIS, "\x81\x20", nullptr},
      {kShiftJIS, "\x81\x7F", nullptr},
      {kShiftJIS, "\x81\xAD", nullptr},
      {kShiftJIS, "\x85\x9F", nullptr},
      {kShiftJIS, "\x88\x54", nullptr},
      {kUTF16, "", u""},
      {kUTF16, "\xE5", nullptr},
      {kUTF16, "\xE5\x65\x2C", u"\u65E5"},
      {kUTF16, "\x3D\xD8\x61\x61", u"\xD83D\x6161"},
      {kMacRoman, "a\x80\xA5\xC6\xDB\xF0\xFF", u"a\u00C4\u2022\u2206\u20AC\uF8FF\u02C7"},
      {kCFStringEncodingASCII, "~", u"~"},
      {kCFStringEncodingASCII, "\x80", nullptr},
      {kCFStringEncodingInvalidId, "a", nullptr},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(std::to_string(test.encoding) + " " + Hex(test.bytes));
    const CFRef<CFStringRef> string = MakeString(test.bytes, test.encoding);
    ASSERT_EQ(static_cast<bool>(string), test.units != nullptr);
    if (string) {
      EXPECT_EQ(UnitsOf(string.get()), test.units);
    }
  }
}

TEST(String, CountsConvertibleUnits) {
  struct Case {
    CFRef<CFStringRef> string;
    CFIndex utf8, shift_jis, utf16;
  };
  const Case cases[] = {
      {MakeString("abc"), 3, 3, 3},
      {MakeString("日本語"), 3, 3, 3},
      {MakeString("a日b"), 3, 3, 3},
      {MakeString("é"), 1, 0, 1},
      {MakeString("aéb"), 3, 1, 3},
      {MakeString("日€本"), 3, 1, 3},
      {MakeString("Ł"), 1, 0, 1},  // U+0141, whose low byte is a letter
      {MakeString("\U0001F600"), 2, 0, 2},
      {FromUnits(u"\xD83D\uFF41"), 0, 0, 2},
      {FromUnits(u"\uFF41\xDE01\uFF42"), 1, 1, 3},
      {FromUnits(u"\xDE01\xD83D"), 0, 0, 2},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(&test - cases);
    const CFRange whole = CFRangeMake(0, CFStringGetLength(test.string.get()));
    const auto count = [&](CFStringEncoding encoding) {
      return CFStringGetBytes(test.string.get(), whole, encoding, 0, 0, nullptr, 0, nullptr);
    };
    EXPECT_EQ(count(kUTF8), test.utf8);
    EXPECT_EQ(count(kShiftJIS), test.shift_jis);
    EXPECT_EQ(count(kUTF16), test.utf16);
  }
}

TEST(String, GivesBytesOfARange) {
  const CFRef<CFStringRef> string = MakeString("a日é本");
  struct Case {
    CFRange range;
    CFStringEncoding encoding;
    UInt8 loss_byte;
    CFIndex capacity, units;
    const char* bytes;
  };
  const Case cases[] = {
      {{1, 2}, kUTF8, 0, 9, 2, "\xE6\x97\xA5\xC3\xA9"},
      {{0, 4}, kUTF8, 0, 5, 2, "a\xE6\x97\xA5"},
      {{0, 4}, kShiftJIS, 0, 9, 2, "a\x93\xFA"},
      {{0, 4}, kShiftJIS, '?', 9, 4, "a\x93\xFA?\x96\x7B"},
      {{0, 4}, kShiftJIS, '?', 2, 1, "a"},
      {{0, 4}, kCFStringEncodingASCII, '.', 9, 4, "a..."},
      {{4, 0}, kUTF8, 0, 9, 0, ""},
      {{3, 2}, kUTF8, 0, 9, 0, nullptr},
      {{5, 0}, kUTF8, 0, 9, 0, nullptr},
      {{-1, 2}, kUTF8, 0, 9, 0, nullptr},
      {{1, -1}, kUTF8, 0, 9, 0, nullptr},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(&test - cases);
    std::string buffer(9, '#');
    CFIndex used = -1;
    EXPECT_EQ(CFStringGetBytes(string.get(), test.range, test.encoding, test.loss_byte, 0,
                               reinterpret_cast<UInt8*>(buffer.data()), test.capacity, &used),
              test.units);
    if (test.bytes == nullptr) continue;  // outside the string
    const std::string expected = test.bytes;
    EXPECT_EQ(used, static_cast<CFIndex>(expected.size()));
    EXPECT_EQ(Hex(buffer), Hex(expected + std::string(9 - expected.size(), '#')));
  }
}

// What stays in a buffer of zeros, given as its whole size.
TEST(String, LeavesPartsOfTextThatDoesNotFit) {
  struct Case {
    CFStringEncoding from;
    std::string text;
    CFStringEncoding to;
    std::string left;  // the buffer afterwards; its size is the buffer's
    bool fits;
  };
  const Case cases[] = {
      {kShiftJIS, "abc", kUTF8, Bytes("\0\0\0"), false},
      {kShiftJIS, "abc\x93\xFA\x96\x7B", kUTF8, Bytes("\0bc\0\0"), false},
      {kUTF8, "日本語", kShiftJIS, Bytes("\0\xFA\0"), false},
      {kUTF8, "abc日本", kShiftJIS, Bytes("\0bc\x93\0"), false},
      {kUTF8, "abcdefgh", kUTF16, Bytes("\0\0b\0c\0\0\0"), false},
      {kUTF8, "日本語", kUTF16, Bytes("\0\x65\0"), false},
      {kUTF8, "日本語", kUTF8, Bytes("\0"), false},
      {kUTF8, "日本語", kShiftJIS, Bytes("\0\0"), false},
      {kUTF8, "日本語", kShiftJIS, Bytes("\0\xFA\x96\0"), false},
      {kUTF8, "abc€日", kShiftJIS, Bytes("\0bc\0"), false},
      {kUTF8, "ab", kUTF8, Bytes("ab\0"), true},
      {kUTF8, "日", kUTF8, Bytes("\xE6\x97\xA5\0"), true},
      {kUTF8, "日", kShiftJIS, Bytes("\x93\xFA\0\0"), true},
      {kUTF8, "ab", kUTF16, Bytes("a\0b\0\0\0"), true},
      {kUTF8, "\U0001F600a", kUTF8, Bytes("\0\0\0\0"), false},
      {kUTF8, "\U0001F600a", kUTF8, Bytes("\0\x9F\x98\x80\0"), false},
      {kUTF8, "", kUTF8, Bytes("\0"), true},
      {kUTF8, "", kUTF8, "", false},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(&test - cases);
    const CFRef<CFStringRef> string = MakeString(test.text, test.from);
    ASSERT_TRUE(string);
    std::string buffer = std::string(test.left.size(), '\0') + "guard";
    const bool fits = CFStringGetCString(string.get(), buffer.data(),
                                         static_cast<CFIndex>(test.left.size()), test.to) != 0;
    EXPECT_EQ(fits, test.fits);
    EXPECT_EQ(Hex(buffer), Hex(test.left + "guard"));
  }
}

// Every unit that has a code comes back from it, and units that only look alike have none.
TEST(String, ShiftJISCodesAreReversible) {
  std::size_t convertible = 0;
  for (unsigned value = 0x80; value < 0x10000; value += value == 0xD7FF ? 0x801 : 1) {
    const char16_t unit = static_cast<char16_t>(value);
    char text[4] = {static_cast<char>(0xE0 | unit >> 12),
                    static_cast<char>(0x80 | (unit >> 6 & 63)),
                    static_cast<char>(0x80 | (unit & 63)), 0};
    if (value < 0x800) {
      text[0] = static_cast<char>(0xC0 | unit >> 6);
      text[1] = static_cast<char>(0x80 | (unit & 63));
      text[2] = 0;
    }
    const CFRef<CFStringRef> string = MakeString(text);
    char code[4] = {};
    if (!string || !CFStringGetCString(string.get(), code, sizeof(code), kShiftJIS)) continue;
    ++convertible;
    const CFRef<CFStringRef> back = MakeString(code, kShiftJIS);
    ASSERT_TRUE(back && CFEqual(back.get(), string.get())) << std::hex << value;
  }
  EXPECT_GT(convertible, 9000U);
  for (const char* lookalike :
       {"\u00A2", "\u00A3", "\u00A5", "\u00AC", "\u2014", "\u2016", "\u203E", "\u2212", "\u301C"}) {
    EXPECT_EQ(CFStringGetBytes(MakeString(lookalike).get(), CFRangeMake(0, 1), kShiftJIS, 0, 0,
                               nullptr, 0, nullptr),
              0);
  }
}

TEST(String, PointsToASCIIAlone) {
  EXPECT_STREQ(CFStringGetCStringPtr(MakeString("/bin/x y").get(), kUTF8), "/bin/x y");
  EXPECT_STREQ(CFStringGetCStringPtr(MakeString("").get(), kMacRoman), "");
  EXPECT_EQ(CFStringGetCStringPtr(MakeString("é").get(), kUTF8), nullptr);
  EXPECT_EQ(CFStringGetCStringPtr(MakeString("a").get(), kUTF16), nullptr);
}

TEST(String, EqualsByUnits) {
  const struct {
    const char *left, *right;
    bool equal;
  } cases[] = {
      {"", "", true},     {"a", "ab", false},      {"A", "a", false},
      {"日", "日", true}, {"e\u0301", "é", false},
  };
  for (const auto& test : cases) {
    const CFRef<CFStringRef> left = MakeString(test.left);
    const CFRef<CFStringRef> right = MakeString(test.right);
    EXPECT_EQ(CFEqual(left.get(), right.get()) != 0, test.equal) << test.left << test.right;
    if (test.equal) {
      EXPECT_EQ(CFHash(left.get()), CFHash(right.get()));
    }
  }
}

TEST(String, KnowsEncodings) {
  EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(8), 0x0420U);
  EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(99), kCFStringEncodingInvalidId);
  EXPECT_EQ(CFStringGetSystemEncoding(), static_cast<CFStringEncoding>(kUTF8));
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(5, kUTF8), 15);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(5, kUTF16), 10);
}

TEST(String, ConstantsAreOneObjectForEver) {
  const CFStringRef first = CFSTR("constant");
  EXPECT_EQ(first, CFSTR("constant"));
  EXPECT_NE(first, CFSTR("another"));
  CFRelease(first);
  CFRelease(first);
  EXPECT_EQ(TextOf(CFSTR("constant")), "constant");
}

}  // namespace

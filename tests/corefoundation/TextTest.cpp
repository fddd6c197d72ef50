// Strings and their encodings.
#include <set>

#include "tests/corefoundation/TestSupport.h"

namespace {

constexpr CFStringEncoding kShiftJIS = kCFStringEncodingDOSJapanese;
constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;
constexpr CFStringEncoding kUTF16 = kCFStringEncodingUTF16LE;
constexpr CFStringEncoding kMacRoman = kCFStringEncodingMacRoman;

std::u16string UnitsOf(const CFRef<CFStringRef>& string) {
  const CFIndex length = CFStringGetLength(string.get());
  std::u16string units(static_cast<std::size_t>(length), u'\0');
  CFStringGetBytes(string.get(), CFRangeMake(0, length), kUTF16, 0, 0,
                   reinterpret_cast<UInt8*>(units.data()), 2 * length, nullptr);
  return units;
}

// A string of any units without a zero byte, lone surrogates included.
CFRef<CFStringRef> FromUnits(const std::u16string& units) {
  return MakeString({reinterpret_cast<const char*>(units.data()), 2 * units.size()}, kUTF16);
}

CFIndex CountConvertible(const CFRef<CFStringRef>& string, CFStringEncoding encoding) {
  return CFStringGetBytes(string.get(), CFRangeMake(0, CFStringGetLength(string.get())), encoding,
                          0, 0, nullptr, 0, nullptr);
}

TEST(String, DecodesOrRefuses) {
  const struct {
    CFStringEncoding encoding;
    const char* bytes;
    const char16_t* units;
  } decoded[] = {
      {kUTF8, "", u""},
      {kUTF8, "abc\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"abc\u0080\u07FF\u0800\uFFFF"},
      {kUTF8, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
      {kUTF8, "\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
      {kUTF8, "\xEF\xBB\xBF\x61\xEF\xBB\xBF", u"a\uFEFF"},
      {kShiftJIS, "\x5C\x7E\xB1\xDD", u"\\~\uFF71\uFF9D"},
      {kShiftJIS, "\x81\x60\x81\x7C\x81\x5C\x81\x61", u"\uFF5E\uFF0D\u2015\u2225"},
      {kShiftJIS, "\x87\x40\xFA\x40\xED\x40\xF0\x40", u"\u2460\u2170\u7E8A\uE000"},
      {kUTF16, "\xE5\x65\x2C", u"\u65E5"},
      {kUTF16, "\x3D\xD8\x61\x61", u"\xD83D\x6161"},
      {kMacRoman, "a\x80\xA5\xC6\xDB\xF0\xFF", u"a\u00C4\u2022\u2206\u20AC\uF8FF\u02C7"},
  };
  for (const auto& test : decoded) {
    const CFRef<CFStringRef> string = MakeString(test.bytes, test.encoding);
    ASSERT_TRUE(string) << test.bytes;
    EXPECT_EQ(UnitsOf(string), test.units) << test.bytes;
  }
  for (const char* text : {"\xC0\x80", "\xE0\x80\xAF", "\xFF", "\x80", "\xE3\x81", "\xE3\x81\x61",
                           "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
                           "\xF5\x80\x80\x80", "valid \xE6\x97\xA5 \xC0\x80"}) {
    EXPECT_FALSE(MakeString(text, kUTF8)) << text;
  }
  for (const char* text : {"a\x81", "\xFF", "\x81\x20", "\x81\x7F", "\x85\x9F", "\x88\x54"}) {
    EXPECT_FALSE(MakeString(text, kShiftJIS)) << text;
  }
  EXPECT_FALSE(MakeString("\xE5", kUTF16));
  EXPECT_FALSE(MakeString("a", kCFStringEncodingInvalidId));
}

TEST(String, CountsConvertibleUnits) {
  const std::pair<CFRef<CFStringRef>, std::array<CFIndex, 3>> cases[] = {
      {MakeString("日€本"), {3, 1, 3}},
      {MakeString("Ł"), {1, 0, 1}},  // U+0141, whose low byte is a letter
      {MakeString("\U0001F600"), {2, 0, 2}},
      {FromUnits(u"\xD83D\uFF41"), {0, 0, 2}},
      {FromUnits(u"\uFF41\xDE01\uFF42"), {1, 1, 3}},
  };
  for (const auto& [string, counts] : cases) {
    for (std::size_t i = 0; i < 3; ++i) {
      const CFStringEncoding encoding = std::array{kUTF8, kShiftJIS, kUTF16}[i];
      EXPECT_EQ(CountConvertible(string, encoding), counts[i]) << std::hex << encoding;
    }
  }
}

TEST(String, GivesBytesOfARange) {
  const CFRef<CFStringRef> string = MakeString("a日é本");
  const auto get = [&](CFRange range, CFStringEncoding encoding, UInt8 loss, CFIndex capacity) {
    UInt8 buffer[10] = "#########";
    CFIndex used = 0;
    const CFIndex units =
        CFStringGetBytes(string.get(), range, encoding, loss, 0, buffer, capacity, &used);
    EXPECT_EQ(buffer[used], '#');
    return std::to_string(units) + ' ' + std::string(buffer, buffer + used);
  };
  EXPECT_EQ(get({1, 2}, kUTF8, 0, 9), "2 \xE6\x97\xA5\xC3\xA9");
  EXPECT_EQ(get({0, 4}, kUTF8, 0, 5), "2 a\xE6\x97\xA5");
  EXPECT_EQ(get({0, 4}, kShiftJIS, 0, 9), "2 a\x93\xFA");
  EXPECT_EQ(get({0, 4}, kShiftJIS, '?', 9), "4 a\x93\xFA?\x96\x7B");
  EXPECT_EQ(get({0, 4}, kShiftJIS, '?', 2), "1 a");
  for (const CFRange outside : {CFRange{3, 2}, CFRange{5, 0}, CFRange{-1, 2}, CFRange{1, -1}}) {
    EXPECT_EQ(get(outside, kUTF8, 0, 9), "0 ");
  }
}

TEST(String, LeavesPartsOfTextThatDoesNotFit) {
  const struct {
    std::string text;
    CFStringEncoding to;
    std::string left;  // in a buffer of zeros of this size
    bool fits = false;
  } cases[] = {
      {"abc", kUTF8, Bytes("\0\0\0")},
      {"abc日本", kUTF8, Bytes("\0bc\0\0")},
      {"abc日本", kShiftJIS, Bytes("\0bc\x93\0")},
      {"abcdefgh", kUTF16, Bytes("\0\0b\0c\0\0\0")},
      {"日本語", kUTF8, Bytes("\0")},
      {"abc€日", kShiftJIS, Bytes("\0bc\0")},
      {"\U0001F600a", kUTF8, Bytes("\0\0\0\0")},
      {"\U0001F600a", kUTF8, Bytes("\0\x9F\x98\x80\0")},
      {"", kUTF8, ""},
      {"日", kUTF8, Bytes("\xE6\x97\xA5\0"), true},
      {"ab", kUTF16, Bytes("a\0b\0\0\0"), true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(&test - cases);
    const CFRef<CFStringRef> string = MakeString(test.text);
    const std::size_t size = test.left.size();
    std::string buffer = std::string(size, '\0') + "guard";
    EXPECT_EQ(CFStringGetCString(string.get(), buffer.data(), static_cast<CFIndex>(size), test.to),
              static_cast<Boolean>(test.fits));
    EXPECT_EQ(buffer, test.left + "guard");
  }
}

// The units that have a code are those that some code stands for: what only looks alike has none.
TEST(String, ShiftJISIsReversible) {
  std::set<std::u16string> known;
  for (unsigned code = 0x80; code < 0x10000; ++code) {
    std::string bytes(1, static_cast<char>(code));
    if (code >= 0x100) bytes.insert(0, 1, static_cast<char>(code >> 8));
    const CFRef<CFStringRef> string = MakeString(bytes, kShiftJIS);
    if (string && CFStringGetLength(string.get()) == 1) known.insert(UnitsOf(string));
  }
  known.erase(known.begin(), known.lower_bound(u"\u0080"));
  EXPECT_EQ(known.size(), 9269U);  // as other implementations of the code page count
  for (unsigned unit = 0x101; unit < 0x10000; unit += unit % 0x100 == 0xFF ? 2 : 1) {
    const std::u16string units(1, static_cast<char16_t>(unit));
    ASSERT_EQ(CountConvertible(FromUnits(units), kShiftJIS),
              static_cast<CFIndex>(known.count(units)))
        << std::hex << unit;
  }
  for (const char* lookalike : {"\u00A2", "\u00A3", "\u00A5", "\u00AC"}) {
    EXPECT_EQ(CountConvertible(MakeString(lookalike), kShiftJIS), 0) << lookalike;
  }
}

TEST(String, KnowsItsBytesAndEncodings) {
  EXPECT_STREQ(CFStringGetCStringPtr(MakeString("/bin/x y").get(), kUTF8), "/bin/x y");
  EXPECT_EQ(CFStringGetCStringPtr(MakeString("é").get(), kUTF8), nullptr);
  EXPECT_EQ(CFStringConvertNSStringEncodingToEncoding(8), 0x0420U);
  EXPECT_TRUE(CFEqual(MakeString("日").get(), MakeString("\x93\xFA", kShiftJIS).get()));
  EXPECT_FALSE(CFEqual(MakeString("e\u0301").get(), MakeString("é").get()));
  const CFStringRef constant = CFSTR("constant");
  CFRelease(constant);
  CFRelease(constant);
  EXPECT_EQ(CFSTR("constant"), constant) << "one object for ever";
}

}  // namespace

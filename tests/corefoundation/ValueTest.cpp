// UUIDs, URLs, numbers, data, arrays and dictionaries.
#include <cmath>
#include <limits>

#include "tests/corefoundation/TestSupport.h"

namespace {

std::string HexOf(CFUUIDRef uuid) {
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(uuid);
  std::string text;
  for (std::size_t i = 0; i < sizeof(bytes); ++i) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02X", reinterpret_cast<const UInt8*>(&bytes)[i]);
    text += digits;
  }
  return text;
}

TEST(UUID, ReadsForms) {
  const struct {
    const char *text, *bytes;
  } cases[] = {
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305", "5C0D2E117A424B199F632D8E4A71C305"},
      {"5c0d2e11-7a42-4b19-9f63-2d8e4a71c305", "5C0D2E117A424B199F632D8E4A71C305"},
      {" {5C0D2E11-7A42-4B19-9F63-2D8E4A71C305} ", "5C0D2E117A424B199F632D8E4A71C305"},
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305FFFF", "5C0D2E117A424B199F632D8E4A71C305"},
      {"5C0D2E11-7A42", "5C0D2E117A4200000000000000000000"},
      {"--", "00000000000000000000000000000000"},
  };
  for (const auto& test : cases) {
    const CFRef<CFUUIDRef> uuid(CFUUIDCreateFromString(nullptr, MakeString(test.text).get()));
    ASSERT_TRUE(uuid) << test.text;
    EXPECT_EQ(HexOf(uuid.get()), test.bytes) << test.text;
  }
  EXPECT_EQ(CFUUIDCreateFromString(nullptr, nullptr), nullptr);
  EXPECT_EQ(CFUUIDCreateFromString(nullptr, CFSTR("")), nullptr);
}

TEST(UUID, EqualsByValue) {
  const CFUUIDRef constant = CFUUIDGetConstantUUIDWithBytes(
      kCFAllocatorSystemDefault, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46);
  const CFRef<CFUUIDRef> same(
      CFUUIDCreateFromString(nullptr, CFSTR("00000000-0000-0000-C000-000000000046")));
  const CFRef<CFUUIDRef> other(
      CFUUIDCreateFromString(nullptr, CFSTR("00000000-0000-0000-C000-000000000047")));
  EXPECT_TRUE(CFEqual(constant, same.get()));
  EXPECT_FALSE(CFEqual(constant, other.get()));
  EXPECT_FALSE(CFEqual(constant, CFSTR("00000000-0000-0000-C000-000000000046")));
  EXPECT_EQ(CFHash(constant), CFHash(same.get()));
}

TEST(URL, KeepsThePath) {
  const struct {
    const char *path, *kept;
  } cases[] = {
      {"/", "/"},           {"/a/b c%20", "/a/b c%20"}, {"/a/b/", "/a/b"},
      {"a/../b", "a/../b"}, {"/日本/é", "/日本/é"},     {"x", "x"},
  };
  for (const auto& test : cases) {
    const std::string bytes = test.path;
    const CFRef<CFURLRef> urls[] = {
        CFRef<CFURLRef>(CFURLCreateWithFileSystemPath(nullptr, MakeString(bytes).get(),
                                                      kCFURLPOSIXPathStyle, 1)),
        CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
            nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
            static_cast<CFIndex>(bytes.size()), 0)),
    };
    EXPECT_TRUE(CFEqual(urls[0].get(), urls[1].get()));
    for (const auto& url : urls) {
      const CFRef<CFStringRef> path(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle));
      EXPECT_EQ(TextOf(path.get()), test.kept);
    }
  }
  const UInt8 invalid[] = {'/', 0xC0, 0x80};
  EXPECT_EQ(CFURLCreateFromFileSystemRepresentation(nullptr, invalid, 3, 0), nullptr);
  EXPECT_EQ(CFURLCreateFromFileSystemRepresentation(nullptr, invalid, -1, 0), nullptr);
  EXPECT_EQ(CFURLCreateFromFileSystemRepresentation(nullptr, invalid, 0, 0), nullptr);
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, CFSTR(""), kCFURLPOSIXPathStyle, 0), nullptr);
}

CFRef<CFNumberRef> Number(SInt64 value) {
  return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
}
CFRef<CFNumberRef> Number(double value) {
  return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberDoubleType, &value));
}

TEST(Number, ConvertsOrTruncates) {
  constexpr SInt64 kMax = std::numeric_limits<SInt64>::max();
  constexpr SInt64 kMin = std::numeric_limits<SInt64>::min();
  struct Case {
    CFRef<CFNumberRef> number;
    SInt32 narrow;
    bool narrow_exact;
    SInt64 wide;
    bool wide_exact;
    double real;
    bool real_exact;
  };
  const Case cases[] = {
      {Number(SInt64{-5}), -5, true, -5, true, -5.0, true},
      {Number(SInt64{2147483647}), 2147483647, true, 2147483647, true, 2147483647.0, true},
      {Number(SInt64{2147483648}), -2147483647 - 1, false, 2147483648, true, 2147483648.0, true},
      {Number(SInt64{4294967300}), 4, false, 4294967300, true, 4294967300.0, true},
      {Number(kMax), -1, false, kMax, true, 9223372036854775808.0, false},
      {Number(kMin), 0, false, kMin, true, -9223372036854775808.0, true},
      {Number(4.0), 4, true, 4, true, 4.0, true},
      {Number(4.7), 4, false, 4, false, 4.7, true},
      {Number(-4.7), -4, false, -4, false, -4.7, true},
      {Number(1e300), -1, false, kMax, false, 1e300, true},
      {Number(-1e300), 0, false, kMin, false, -1e300, true},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.real);
    SInt32 narrow = 77;
    SInt64 wide = 77;
    double real = 77;
    EXPECT_EQ(CFNumberGetValue(test.number.get(), kCFNumberSInt32Type, &narrow) != 0,
              test.narrow_exact);
    EXPECT_EQ(CFNumberGetValue(test.number.get(), kCFNumberSInt64Type, &wide) != 0,
              test.wide_exact);
    EXPECT_EQ(CFNumberGetValue(test.number.get(), kCFNumberDoubleType, &real) != 0,
              test.real_exact);
    EXPECT_EQ(narrow, test.narrow);
    EXPECT_EQ(wide, test.wide);
    EXPECT_EQ(real, test.real);
  }
  SInt64 nothing = 77;
  EXPECT_FALSE(CFNumberGetValue(Number(std::nan("")).get(), kCFNumberSInt64Type, &nothing));
  EXPECT_EQ(nothing, 0);
}

TEST(Number, EqualsAcrossKinds) {
  EXPECT_TRUE(CFEqual(Number(SInt64{3}).get(), Number(3.0).get()));
  EXPECT_FALSE(CFEqual(Number(SInt64{3}).get(), Number(3.5).get()));
  EXPECT_FALSE(CFEqual(Number(std::numeric_limits<SInt64>::max()).get(),
                       Number(9223372036854775808.0).get()));
  EXPECT_FALSE(CFEqual(Number(SInt64{1}).get(), kCFBooleanTrue));
  EXPECT_FALSE(CFEqual(kCFBooleanTrue, kCFBooleanFalse));
  EXPECT_TRUE(CFBooleanGetValue(kCFBooleanTrue));
  EXPECT_FALSE(CFBooleanGetValue(kCFBooleanFalse));
}

TEST(Data, HoldsBytes) {
  const CFRef<CFDataRef> data = MakeData(Bytes("a\0b"));
  EXPECT_EQ(CFDataGetLength(data.get()), 3);
  EXPECT_EQ(CFDataGetBytePtr(data.get())[2], 'b');
  const CFRef<CFDataRef> copy(CFDataCreateCopy(nullptr, data.get()));
  EXPECT_EQ(copy.get(), data.get());
  EXPECT_EQ(CFGetRetainCount(data.get()), 2);
  EXPECT_FALSE(CFEqual(data.get(), MakeData(Bytes("a\0c")).get()));
  EXPECT_EQ(CFDataGetLength(CFRef<CFDataRef>(CFDataCreate(nullptr, nullptr, 0)).get()), 0);
  EXPECT_EQ(CFDataCreate(nullptr, nullptr, -1), nullptr);
}

TEST(Array, OwnsItsValues) {
  const CFRef<CFStringRef> first = MakeString("first");
  const CFRef<CFNumberRef> second = MakeNumber(2);
  const void* values[] = {first.get(), second.get()};
  CFRef<CFArrayRef> fixed(CFArrayCreate(nullptr, values, 2, &kCFTypeArrayCallBacks));
  const CFRef<CFMutableArrayRef> grown(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  CFArrayAppendValue(grown.get(), first.get());
  EXPECT_FALSE(CFEqual(fixed.get(), grown.get()));
  CFArrayAppendValue(grown.get(), MakeNumber(2).get());
  EXPECT_TRUE(CFEqual(fixed.get(), grown.get()));

  EXPECT_EQ(CFArrayGetCount(fixed.get()), 2);
  EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), 1), second.get());
  EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), 2), nullptr);
  EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), -1), nullptr);
  EXPECT_EQ(CFGetRetainCount(first.get()), 3);
  fixed = CFRef<CFArrayRef>();
  EXPECT_EQ(CFGetRetainCount(first.get()), 2);

  const CFRef<CFArrayRef> plain(CFArrayCreate(nullptr, values, 2, nullptr));
  EXPECT_EQ(CFGetRetainCount(first.get()), 2);
  EXPECT_EQ(CFArrayCreate(nullptr, nullptr, -1, nullptr), nullptr);
}

TEST(Dictionary, FindsByValueAndOwns) {
  const CFRef<CFStringRef> key = MakeString("key");
  const CFRef<CFStringRef> value = MakeString("value");
  const CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFDictionarySetValue(dictionary.get(), key.get(), value.get());
  EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), MakeString("key").get()), value.get());
  EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), CFSTR("Key")), nullptr);
  EXPECT_EQ(CFGetRetainCount(key.get()), 2);
  EXPECT_EQ(CFGetRetainCount(value.get()), 2);

  CFDictionarySetValue(dictionary.get(), MakeString("key").get(), value.get());
  CFDictionarySetValue(dictionary.get(), CFSTR("key"), kCFBooleanTrue);
  EXPECT_EQ(CFGetRetainCount(value.get()), 1);
  EXPECT_EQ(CFDictionaryGetCount(dictionary.get()), 1);

  const void* keys[] = {CFSTR("key"), CFSTR("key")};
  const void* values[] = {kCFBooleanTrue, kCFBooleanFalse};
  const CFRef<CFDictionaryRef> fixed(CFDictionaryCreate(
      nullptr, keys, values, 2, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  EXPECT_TRUE(CFEqual(fixed.get(), dictionary.get()));
  CFDictionarySetValue(dictionary.get(), CFSTR("key"), kCFBooleanFalse);
  EXPECT_FALSE(CFEqual(fixed.get(), dictionary.get()));
}

TEST(Object, TypesDiffer) {
  const CFTypeID types[] = {CFStringGetTypeID(),  CFDataGetTypeID(),  CFNumberGetTypeID(),
                            CFBooleanGetTypeID(), CFArrayGetTypeID(), CFDictionaryGetTypeID()};
  for (const CFTypeID& left : types) {
    for (const CFTypeID& right : types) EXPECT_EQ(left == right, &left == &right);
  }
  EXPECT_EQ(CFGetTypeID(CFSTR("a")), CFStringGetTypeID());
  EXPECT_EQ(CFGetTypeID(kCFBooleanTrue), CFBooleanGetTypeID());
  EXPECT_EQ(kCFAllocatorDefault, nullptr);
}

}  // namespace

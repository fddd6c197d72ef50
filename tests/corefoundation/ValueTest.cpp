// UUIDs, URLs, numbers, arrays and dictionaries.
#include "tests/corefoundation/TestSupport.h"

namespace {

TEST(UUID, ReadsForms) {
  const std::string whole = "\x5C\x0D\x2E\x11\x7A\x42\x4B\x19\x9F\x63\x2D\x8E\x4A\x71\xC3\x05";
  const struct {
    const char* text;
    std::string bytes;
  } cases[] = {
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305", whole},
      {" {5c0d2e11-7a42-4b19-9f63-2d8e4a71c305} ", whole},
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305FFFF", whole},
      {"5C0D2E11-7A42", whole.substr(0, 6) + std::string(10, '\0')},
      {"00000000-0000-0000-C000-000000000046", std::string(8, '\0') + Bytes("\xC0\0\0\0\0\0\0F")},
  };
  const CFUUIDRef constant =
      CFUUIDGetConstantUUIDWithBytes(nullptr, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46);
  for (const auto& test : cases) {
    const CFRef<CFUUIDRef> uuid = MakeUUID(test.text);
    const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(uuid.get());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes), sizeof(bytes)), test.bytes);
    EXPECT_EQ(CFEqual(uuid.get(), constant) != 0, &test == std::end(cases) - 1) << test.text;
  }
  EXPECT_EQ(CFUUIDCreateFromString(nullptr, nullptr), nullptr);
  EXPECT_EQ(CFUUIDCreateFromString(nullptr, CFSTR("")), nullptr);
}

TEST(URL, KeepsThePath) {
  const auto path_of = [](const std::string& bytes, CFIndex length) {
    const CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(bytes.data()), length, 0));
    return CFRef(url ? CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle) : nullptr);
  };
  for (const std::string path : {"/", "/a/b c%20", "a/../b", "/日本/é", "x"}) {
    for (const std::string& given : {path, path == "/" ? path : path + "/"}) {
      const auto kept = path_of(given, static_cast<CFIndex>(given.size()));
      EXPECT_TRUE(CFEqual(kept.get(), MakeString(path).get())) << given;
    }
  }
  for (const CFIndex length : {3, 0, -1}) EXPECT_FALSE(path_of("/\xC0\x80", length)) << length;
}

TEST(Number, TruncatesToThirtyTwoBits) {
  const struct {
    const char* text;
    SInt32 value;
    bool exact;
  } cases[] = {
      {"<integer>-5</integer>", -5, true},
      {"<integer>2147483648</integer>", -2147483647 - 1, false},
      {"<integer>4294967300</integer>", 4, false},
      {"<integer>18446744073709551615</integer>", -1, false},
      {"<integer>-9223372036854775808</integer>", 0, false},
      {"<real>4</real>", 4, true},
      {"<real>4.7</real>", 4, false},
      {"<real>1e300</real>", -1, false},
      {"<real>-1e300</real>", 0, false},
      {"<real>nan</real>", 0, false},
  };
  for (const auto& test : cases) {
    const CFRef<CFTypeRef> number = Parse(test.text);
    SInt32 value = 77;
    EXPECT_EQ(CFNumberGetValue(CFCast<CFNumberRef>(number.get()), kCFNumberSInt32Type, &value) != 0,
              test.exact)
        << test.text;
    EXPECT_EQ(value, test.value) << test.text;
  }
  const SInt32 five = -5;
  const CFRef<CFNumberRef> made(CFNumberCreate(nullptr, kCFNumberSInt32Type, &five));
  EXPECT_TRUE(CFEqual(made.get(), Parse(cases[0].text).get()));
}

// The makers' own references are gone when the values are read.
TEST(Containers, OwnTheirValues) {
  const CFRef<CFMutableArrayRef> grown(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  const CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFRef<CFArrayRef> fixed;
  CFRef<CFDictionaryRef> pairs;
  {
    const CFRef<CFStringRef> text = MakeString("a text that is long enough to be on the heap");
    const CFRef<CFDataRef> data = MakeData("data");
    const void* values[] = {text.get(), data.get()};
    const void* keys[] = {text.get(), text.get()};
    fixed = CFRef(CFArrayCreate(nullptr, values, 2, &kCFTypeArrayCallBacks));
    pairs = CFRef(CFDictionaryCreate(nullptr, keys, values, 2, &kCFTypeDictionaryKeyCallBacks,
                                     &kCFTypeDictionaryValueCallBacks));
    CFArrayAppendValue(grown.get(), text.get());
    EXPECT_FALSE(CFEqual(fixed.get(), grown.get()));
    CFArrayAppendValue(grown.get(), data.get());
    CFDictionarySetValue(dictionary.get(), MakeString("key").get(), text.get());
    CFDictionarySetValue(dictionary.get(), MakeString("key").get(), data.get());
  }
  EXPECT_EQ(CFArrayGetCount(fixed.get()), 2);
  EXPECT_TRUE(CFEqual(fixed.get(), grown.get()));
  for (const CFIndex outside : {-1, 2}) {
    EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), outside), nullptr);
  }
  const CFTypeRef text = CFArrayGetValueAtIndex(fixed.get(), 0);
  EXPECT_EQ(CFDictionaryGetValue(pairs.get(), text), text) << "of equal keys the first";
  EXPECT_TRUE(CFEqual(CFDictionaryGetValue(dictionary.get(), CFSTR("key")), MakeData("data").get()))
      << "of values for one key the last";
}

}  // namespace

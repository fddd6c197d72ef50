// References, UUIDs, URLs, numbers, arrays and dictionaries. The sanitizers see a reference too few
// or too many.
#include <CoreFoundation/CFPlugInCOM.h>

#include "tests/corefoundation/TestSupport.h"

namespace {

static_assert(std::is_same_v<const NSString*, CFStringRef>);
static_assert(!std::is_convertible_v<CFStringRef, CFRef<CFStringRef>>, "adopting is explicit");
static_assert(!std::is_convertible_v<CFRef<CFTypeRef>, CFRef<CFStringRef>>, "casts are checked");
static_assert(!std::is_base_of_v<std::exception, NSException>, "neither is caught as the other");

TEST(CFRef, CountsOwners) {
  CFRef<CFStringRef> string = MakeString("text");
  CFRef<CFStringRef> copy = string;
  CFRef<CFTypeRef> any = copy;
  CFRef<CFStringRef> retained = CFRef<CFStringRef>::Retain(string.get());
  const CFRef<CFStringRef> moved = std::move(copy);
  EXPECT_FALSE(copy);  // NOLINT(bugprone-use-after-move): a moved-from holder is empty
  any = CFRef<CFTypeRef>();
  retained = MakeString("other");
  CFRelease(string.release());
  EXPECT_FALSE(string);
  EXPECT_TRUE(CFEqual(moved.get(), CFSTR("text"))) << "the last owner";
  EXPECT_FALSE(CFRef<CFTypeRef>(CFRef<CFArrayRef>()) || CFRef<CFDataRef>::Retain(nullptr));
}

TEST(UUID, ReadsForms) {
  const std::string whole = "\x5C\x0D\x2E\x11\x7A\x42\x4B\x19\x9F\x63\x2D\x8E\x4A\x71\xC3\x05";
  const std::pair<const char*, std::string> cases[] = {
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305", whole},
      {" {5c0d2e11-7a42-4b19-9f63-2d8e4a71c305} ", whole},
      {"5C0D2E11-7A42-4B19-9F63-2D8E4A71C305FFFF", whole},
      {"5C0D2E11-7A42", whole.substr(0, 6) + std::string(10, '\0')},
  };
  for (const auto& [text, expected] : cases) {
    const CFRef<CFUUIDRef> uuid = MakeUUID(text);
    const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(uuid.get());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes), sizeof(bytes)), expected) << text;
    EXPECT_FALSE(CFEqual(uuid.get(), IUnknownUUID)) << text;
  }
  EXPECT_TRUE(CFEqual(MakeUUID("00000000-0000-0000-C000-000000000046").get(), IUnknownUUID));
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
  const std::tuple<const char*, SInt32, bool> cases[] = {
      {"<integer>-5</integer>", -5, true},
      {"<integer>2147483648</integer>", -2147483647 - 1, false},
      {"<integer>4294967300</integer>", 4, false},
      {"<integer>18446744073709551615</integer>", -1, false},
      {"<real>4</real>", 4, true},
      {"<real>4.7</real>", 4, false},
      {"<real>1e300</real>", -1, false},
      {"<real>-1e300</real>", 0, false},
      {"<real>nan</real>", 0, false},
  };
  for (const auto& [text, truncated, exact] : cases) {
    const CFRef<CFTypeRef> number = Parse(text);
    SInt32 value = 77;
    const auto object = CFCast<CFNumberRef>(number.get());
    EXPECT_EQ(CFNumberGetValue(object, kCFNumberSInt32Type, &value) != 0, exact) << text;
    EXPECT_EQ(value, truncated) << text;
    const CFRef<CFNumberRef> made(CFNumberCreate(nullptr, kCFNumberSInt32Type, &truncated));
    EXPECT_EQ(CFEqual(made.get(), number.get()) != 0, exact && text[1] == 'i') << text;
  }
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
  EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), -1), nullptr);
  EXPECT_EQ(CFArrayGetValueAtIndex(fixed.get(), 2), nullptr);
  const CFTypeRef text = CFArrayGetValueAtIndex(fixed.get(), 0);
  EXPECT_EQ(CFDictionaryGetValue(pairs.get(), text), text) << "of equal keys the first";
  EXPECT_TRUE(CFEqual(CFDictionaryGetValue(dictionary.get(), CFSTR("key")), MakeData("data").get()))
      << "of values for one key the last";
}

}  // namespace

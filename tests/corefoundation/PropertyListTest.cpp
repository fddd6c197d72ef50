// Property lists: what is taken, what is refused, and what comes back.
#include <cstdint>
#include <random>

#include "tests/corefoundation/TestSupport.h"

namespace {

CFRef<CFTypeRef> Parse(const std::string& bytes) {
  return CFRef<CFTypeRef>(CFPropertyListCreateWithData(
      nullptr, MakeData(bytes).get(), kCFPropertyListMutableContainers, nullptr, nullptr));
}

std::string Written(CFTypeRef list, CFPropertyListFormat format = kCFPropertyListXMLFormat_v1_0) {
  const CFRef<CFDataRef> data(CFPropertyListCreateData(nullptr, list, format, 0, nullptr));
  if (!data) return {};
  return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())),
                     static_cast<std::size_t>(CFDataGetLength(data.get())));
}

std::string Repeat(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

const char kEveryKind[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<!-- comment with <dict> and </dict> -->\n"
    "<plist version=\"1.0\">\n<dict>\n"
    "<key>array</key><array><string>a&amp;b &#x65E5;<![CDATA[<c>]]></string><array/></array>\n"
    "<key>data</key><data>AAEC\n/w==</data>\n"
    "<key>date</key><date>2031-02-03T04:05:06Z</date>\n"
    "<key>far</key><date>9999-12-31T23:59:59Z</date>\n"
    "<key>false</key><false/><key>true</key><true/>\n"
    "<key>least</key><integer>-9223372036854775808</integer>\n"
    "<key>most</key><integer>18446744073709551615</integer>\n"
    "<key>real</key><real>0.10000000000000001</real>\n"
    "<key>huge</key><real>-1e+300</real>\n"
    "<key></key><string></string>\n"
    "</dict>\n</plist>\n";

TEST(PropertyList, TakesWholeListsAlone) {
  const struct {
    const char* text;
    bool taken;
  } cases[] = {
      {"<plist version=\"1.0\"><dict/></plist>", true},
      {"<plist><string>root of any class</string></plist>", true},
      {"\xEF\xBB\xBF<plist><array/></plist>", true},
      {"<dict><key>a</key><true/></dict>", true},
      {"<plist><dict><key>a</key><true></true></dict ></plist >\n<!-- end -->\n", true},
      {"", false},
      {"   \n", false},
      {"plain text", false},
      {"{\"json\": 1}", false},
      {"<html><body>foreign</body></html>", false},
      {"<plist/>", false},
      {"<plist></plist>", false},
      {"<plist><dict>", false},
      {"<plist><dict></dict>", false},
      {"<plist><dict></plist></dict>", false},
      {"<plist><dict></array></plist>", false},
      {"<plist><string>cut", false},
      {"<plist><string>cut</string>", false},
      {"<plist><string>a</key></plist>", false},
      {"<plist><dict><key>without value</key></dict></plist>", false},
      {"<plist><dict><true/></dict></plist>", false},
      {"<plist><dict><key>a</key><key>b</key></dict></plist>", false},
      {"<plist><array><key>a</key></array></plist>", false},
      {"<plist><array/><array/></plist>", false},
      {"<plist><array/></plist><plist><array/></plist>", false},
      {"<plist><array>stray</array></plist>", false},
      {"<plist><array/></plist>stray", false},
      {"<plist><plist><array/></plist></plist>", false},
      {"<plist><string>bad &entity; here</string></plist>", false},
      {"<plist><string>bad \xFF byte</string></plist>", false},
      {"<plist><dict><key>\xC0\x80</key><true/></dict></plist>", false},
      {"<plist><string>&#xD800;</string></plist>", false},
      {"<plist a='>'><array/></plist>", false},
      {"bplist00", false},
      {"bplist00 and some text that is no list of objects at all", false},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(static_cast<bool>(Parse(test.text)), test.taken) << test.text;
  }
  EXPECT_FALSE(Parse(Bytes("<plist><string>a\0b</string></plist>")));
}

TEST(PropertyList, KeepsEveryKind) {
  const CFRef<CFTypeRef> list = Parse(kEveryKind);
  const auto dictionary = CFCast<CFDictionaryRef>(list.get());
  ASSERT_NE(dictionary, nullptr);
  const auto value = [&](const char* key) {
    return CFDictionaryGetValue(dictionary, MakeString(key).get());
  };
  const auto array = CFCast<CFArrayRef>(value("array"));
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(TextOf(CFCast<CFStringRef>(CFArrayGetValueAtIndex(array, 0))), "a&b 日<c>");
  EXPECT_TRUE(CFEqual(value("data"), MakeData(Bytes("\x00\x01\x02\xFF")).get()));
  EXPECT_EQ(value("true"), kCFBooleanTrue);
  EXPECT_EQ(TextOf(CFCast<CFStringRef>(value(""))), "");
  SInt64 least = 0;
  EXPECT_TRUE(CFNumberGetValue(CFCast<CFNumberRef>(value("least")), kCFNumberSInt64Type, &least));
  EXPECT_EQ(least, INT64_MIN);
  double most = 0;
  EXPECT_FALSE(CFNumberGetValue(CFCast<CFNumberRef>(value("most")), kCFNumberDoubleType, &most));
  EXPECT_EQ(most, 18446744073709551616.0);

  const std::string text = Written(dictionary);
  for (const char* element :
       {"<date>2031-02-03T04:05:06Z</date>", "<date>9999-12-31T23:59:59Z</date>",
        "<integer>-9223372036854775808</integer>", "<integer>18446744073709551615</integer>",
        "<real>0.10000000000000001</real>", "<string>a&amp;b 日&lt;c&gt;</string>"}) {
    EXPECT_NE(text.find(element), std::string::npos) << element;
  }
  EXPECT_TRUE(CFEqual(Parse(text).get(), dictionary));
  const std::string binary = Written(dictionary, kCFPropertyListBinaryFormat_v1_0);
  EXPECT_EQ(binary.substr(0, 8), "bplist00");
  EXPECT_TRUE(CFEqual(Parse(binary).get(), dictionary));
}

TEST(PropertyList, MutableContainersGrow) {
  CFPropertyListFormat format = 0;
  const CFRef<CFTypeRef> list(
      CFPropertyListCreateWithData(nullptr, MakeData("<plist><dict/></plist>").get(),
                                   kCFPropertyListMutableContainers, &format, nullptr));
  EXPECT_EQ(format, kCFPropertyListXMLFormat_v1_0);
  auto* dictionary = const_cast<CFMutableDictionaryRef>(CFCast<CFDictionaryRef>(list.get()));
  CFDictionarySetValue(dictionary, CFSTR("key"), kCFBooleanTrue);
  EXPECT_EQ(CFDictionaryGetCount(dictionary), 1);
}

TEST(PropertyList, WritesListsAlone) {
  const CFRef<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  const CFRef<CFUUIDRef> uuid(CFUUIDCreateFromString(nullptr, CFSTR("1")));
  EXPECT_EQ(Written(uuid.get()), "");
  EXPECT_EQ(Written(MakeString("\x3D\xD8", kCFStringEncodingUTF16LE).get()), "");
  CFArrayAppendValue(array.get(), uuid.get());
  EXPECT_EQ(Written(array.get()), "");
  const CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  CFDictionarySetValue(dictionary.get(), MakeNumber(1).get(), CFSTR("a"));
  EXPECT_EQ(Written(dictionary.get()), "");
  EXPECT_EQ(Written(CFSTR("a"), 1), "");
}

TEST(PropertyList, BoundsTheDepth) {
  const struct {
    std::size_t depth;
    bool taken;
  } cases[] = {{512, true}, {513, false}, {100000, false}};
  for (const auto& test : cases) {
    const std::string plain = Repeat("<array>", test.depth) + Repeat("</array>", test.depth);
    EXPECT_EQ(static_cast<bool>(Parse(plain)), test.taken) << test.depth;
    EXPECT_EQ(static_cast<bool>(Parse("<plist>" + plain + "</plist>")), test.taken) << test.depth;
  }
  const std::string deep = Repeat("<array>", 100000);
  // Constructs that hide tags from a reader that takes their ends elsewhere.
  for (const std::string& start :
       {std::string("<array a='>' b='>"), std::string("<? \" ?><array><!--\" ?>"),
        std::string("<?>") + "<!-- ", std::string("<!DOCTYPE plist [ <!ENTITY a \"]>\"> ]>"),
        std::string("<array><!-->"), std::string("<array a=\"\"\">")}) {
    EXPECT_FALSE(Parse(start + deep + "?>-->")) << start;
    EXPECT_FALSE(Parse(start + deep)) << start;
  }

  CFRef<CFMutableArrayRef> nested(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  for (int depth = 2; depth <= 513; ++depth) {
    CFRef<CFMutableArrayRef> outer(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    CFArrayAppendValue(outer.get(), nested.get());
    nested = outer;
    if (depth >= 512) {
      EXPECT_EQ(static_cast<bool>(Parse(Written(nested.get()))), depth == 512);
    }
  }
}

// A binary list of arrays, each but the last of which refers to the next the given number of times.
std::string BinaryChain(std::uint32_t objects, int references) {
  const auto number = [](std::uint64_t value, int size) {
    std::string bytes;
    while (size-- > 0) bytes.push_back(static_cast<char>(value >> (8 * size)));
    return bytes;
  };
  std::string bytes = "bplist00";
  std::string offsets;
  for (std::uint32_t i = 0; i < objects; ++i) {
    offsets += number(bytes.size(), 4);
    const bool last = i + 1 == objects;
    bytes.push_back(static_cast<char>(0xA0 | (last ? 0 : references)));
    for (int j = 0; j < references && !last; ++j) bytes += number(i + 1, 4);
  }
  const std::size_t table = bytes.size();
  return bytes + offsets + std::string(6, '\0') + "\x04\x04" + number(objects, 8) + number(0, 8) +
         number(table, 8);
}

TEST(PropertyList, BoundsBinaryListsThatExpand) {
  EXPECT_TRUE(Parse(BinaryChain(512, 1)));
  EXPECT_FALSE(Parse(BinaryChain(513, 1)));
  EXPECT_FALSE(Parse(BinaryChain(100000, 1)));
  EXPECT_TRUE(Parse(BinaryChain(5, 3)));
  EXPECT_FALSE(Parse(BinaryChain(21, 2)));
  EXPECT_FALSE(Parse(BinaryChain(60, 2)));
  std::string circle = BinaryChain(2, 1);
  circle[12] = 0;  // the reference of object 0 now names itself
  EXPECT_FALSE(Parse(circle));
}

// Cut-off XML is refused at every length; damaged lists are refused or can be written again.
TEST(PropertyList, SurvivesDamage) {
  const std::string text = kEveryKind;
  for (std::size_t length = 0; length < text.find("</plist>") + 8; ++length) {
    EXPECT_FALSE(Parse(text.substr(0, length))) << length;
  }
  std::mt19937 random(20260203);
  const std::string originals[] = {
      text, Written(Parse(text).get(), kCFPropertyListBinaryFormat_v1_0), BinaryChain(9, 2)};
  for (const std::string& original : originals) {
    for (int round = 0; round < 3000; ++round) {
      std::string damaged = original;
      for (auto changes = 1 + random() % 3; changes > 0; --changes) {
        damaged[random() % damaged.size()] = static_cast<char>(random());
      }
      if (round % 8 == 0) damaged.resize(random() % damaged.size());
      const CFRef<CFTypeRef> list = Parse(damaged);
      if (list && !Written(list.get()).empty()) {
        EXPECT_TRUE(Parse(Written(list.get())));
      }
    }
  }
}

}  // namespace

// Property lists: what is taken, what is refused, and what comes back.
#include <cstdint>
#include <initializer_list>
#include <random>
#include <sstream>
#include <vector>

#include "tests/corefoundation/TestSupport.h"

namespace {

const std::string kXML =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//x//DTD PLIST 1.0//EN\" \"http://example.com/x.dtd\">\n"
    "<!-- comment with <dict> and </dict> -->\n<plist version=\"1.0\">\n<dict>\n"
    "<key>a</key><array><string>x&#x65E5;&amp;<![CDATA[<]]></string><array/></array>\n"
    "<key>b</key><data>AAEC\n/w==</data><key>c</key><date>2031-02-03T04:05:06Z</date>\n"
    "<key>d</key><false/><key>e</key><true/><key>f</key><integer>-9223372036854775808</integer>\n"
    "<key>g</key><integer>18446744073709551615</integer><key>h</key><real>0.1</real>\n"
    "<key></key><string></string><key>i</key><dict/>\n</dict>\n</plist>\n";

// The same list, as another implementation writes it.
const std::string kBinary = Bytes(
    "bplist00\xDA\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0E\x0F\x10\x11\x12\x13\x14\x09"
    "\x15QaQbQcQdQeQfQgQhPQi\xA2\x0C\x0D\144\0xe\xE5\0&\0<\xA0\104\0\x01\x02\xFF\063A\xCCL\x7F"
    "\071\0\0\0\x08\x09\x13\x80\0\0\0\0\0\0\0\x14\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF"
    "\xFF#\077\xB9\x99\x99\x99\x99\x99\x9A\xD0\x08\x1D\x1F!#%')+-.03<=BKLMVgp\0\0\0\0\0\0\x01"
    "\x01\0\0\0\0\0\0\0\x16\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0q");

std::string Number(std::uint64_t value, int size) {
  std::string bytes;
  while (size-- > 0) bytes.push_back(static_cast<char>(value >> (8 * size)));
  return bytes;
}

// What follows the objects of a binary list: their offsets, and the trailer.
std::string BinaryEnd(std::size_t table, const std::vector<std::size_t>& offsets) {
  std::string bytes;
  for (const std::size_t offset : offsets) bytes += Number(offset, 4);
  return bytes + std::string(6, '\0') + "\x04\x04" + Number(offsets.size(), 8) + Number(0, 8) +
         Number(table, 8);
}

// A binary list of arrays, each but the last of which refers to the next the given number of times.
std::string BinaryChain(std::uint32_t objects, int references) {
  std::string bytes = "bplist00";
  std::vector<std::size_t> offsets;
  for (std::uint32_t i = 0; i < objects; ++i) {
    offsets.push_back(bytes.size());
    const bool last = i + 1 == objects;
    bytes.push_back(static_cast<char>(0xA0 | (last ? 0 : references)));
    for (int j = 0; j < references && !last; ++j) bytes += Number(i + 1, 4);
  }
  return bytes + BinaryEnd(bytes.size(), offsets);
}

// A binary list of one dictionary that has the same key and value over and over.
std::string BinaryDictionary(std::uint32_t keys) {
  std::string bytes = "bplist00\xDF\x12" + Number(keys, 4);
  for (std::uint32_t i = 0; i < 2 * keys; ++i) bytes += Number(1, 4);
  return bytes + "Qa" + BinaryEnd(bytes.size() + 2, {8, bytes.size()});
}

TEST(PropertyList, TakesWholeListsAlone) {
  for (const char* taken :
       {"<plist version=\"1.0\"><dict/></plist>", "<plist><string>any root</string></plist>",
        "\xEF\xBB\xBF<plist><array/></plist>", "<dict><key>a</key><true/></dict>",
        "<plist><dict><key>a</key><true></true></dict ></plist >\n<!-- end -->\n"}) {
    EXPECT_TRUE(Parse(taken)) << taken;
  }
  // Separated by bars; the first one is empty.
  std::istringstream refused(
      "|   \n|plain text|{\"json\": 1}|<html><body>foreign</body></html>|<plist/>|<plist></plist>|"
      "<plist><dict></dict>|<plist><dict></plist></dict>|<plist><dict></array></plist>|<string>cut|"
      "<plist><string>cut</string>|<string>a</key>|<dict><key>without value</key></dict>|"
      "<dict><true/></dict>|<dict><key>a</key><key>b</key></dict>|<array><key>a</key></array>|"
      "<array/><array/>|<plist><array/></plist><plist><array/></plist>|<array>stray</array>|"
      "<plist><array/></plist>stray|<plist><plist><array/></plist></plist>|"
      "<string>bad &entity; here</string>|<string>bad \xFF byte</string>|<string>&#xD800;</string>|"
      "<string>&#0;</string>|<dict><key>\xC0\x80</key><true/></dict>|<plist a='>'><array/></plist>|"
      "bplist00|bplist00 and some text that is no list of objects at all");
  for (std::string text; std::getline(refused, text, '|');) EXPECT_FALSE(Parse(text)) << text;
  EXPECT_FALSE(Parse(Bytes("<plist><string>a\0b</string></plist>")));
  for (std::size_t length = 0; length < kXML.find("</plist>") + 8; ++length) {
    EXPECT_FALSE(Parse(kXML.substr(0, length))) << length;
  }
  for (std::size_t length = 0; length < kBinary.size(); ++length) {
    EXPECT_FALSE(Parse(kBinary.substr(0, length))) << length;
  }
}

TEST(PropertyList, ReadsEveryKindFromBothForms) {
  const CFRef<CFTypeRef> lists[] = {Parse(kXML), Parse(kBinary)};
  ASSERT_TRUE(lists[0] && lists[1]);
  EXPECT_TRUE(CFEqual(lists[0].get(), lists[1].get()));
  auto* dictionary = const_cast<CFMutableDictionaryRef>(CFCast<CFDictionaryRef>(lists[0].get()));
  const auto array = CFCast<CFArrayRef>(CFDictionaryGetValue(dictionary, CFSTR("a")));
  EXPECT_TRUE(CFEqual(CFArrayGetValueAtIndex(array, 0), CFSTR("x日&<")));
  CFDictionarySetValue(dictionary, CFSTR("e"), kCFBooleanFalse);
  EXPECT_FALSE(CFEqual(lists[0].get(), lists[1].get()));
}

// Lists as programs write them, with odd things here and there.
class ListWriter {
 public:
  std::string Value(int depth) {
    switch (Below(depth > 0 ? 8 : 6)) {
      case 0:
        return Element("string", Texts({"", "a", " b\n", "\tx\r\ny", "日本\xF0\x9F\x96\xA8", "]]>",
                                        "\xC3", "\x01", "\"'", "&amp;", "&#65;", "<![CDATA[x]]>"}));
      case 1:
        return Element("integer", Texts({"", "0", "4", "017", "0x1F", "-5", "+5", " 6\n", "1.5",
                                         "12a", "१", "999999999999999999", "1000000000000000000",
                                         "18446744073709551616"}));
      case 2:
        return Element("data", Texts({"", "QQ==", "QUI=", "QUJD", "\n\t\tQUJ\n\t\tD\t", "QR==", "Q",
                                      "QQ", "QUJDR", "QQ=", "Q===", "=",
                                      "================", "QQ==QUJD", "Q-JD", "QU&amp;"}));
      case 3:
        return Texts({"<true/>", "<false/>", "<true></true>", "<string/>", "<data/>", "<dict/>",
                      "<array/>", "<real>1</real>", "<date>2031-02-03T04:05:06Z</date>"});
      case 4:
        return Texts({"\n\t", " ", "", "<!-- c -->"}) + Value(depth);
      case 5:
        return Element("string", "x");
      case 6:
        return Element("array", Many([&] { return Value(depth - 1); }));
      default:
        return Element("dict", Many([&] {
                         return Element("key", Texts({"a", "\xEF\xBB\xBF\x61", "b", "c", "d", "",
                                                      " f", "日"})) +
                                Value(depth - 1);
                       }));
    }
  }

  std::string List() {
    return Texts({"", "<?xml version=\"1.0\"?>\n", "<?xml > ?>", "<!DOCTYPE plist>"}) +
           Texts({"<plist>", "<plist version=\"1.0\">\n"}) + Value(3) + "</plist>" +
           Texts({"", "\n", "<!-- -->"});
  }

 private:
  std::size_t Below(std::size_t end) { return random_() % end; }

  // One of the texts, the first ones more often.
  std::string Texts(std::initializer_list<const char*> texts) {
    return texts.begin()[Below(1 + Below(texts.size()))];
  }

  std::string Element(const std::string& name, const std::string& content) {
    const bool is_odd = Below(50) == 0;
    return "<" + name + (is_odd ? " a=\"b\"" : "") + ">" + content + "</" + name + ">";
  }

  template <typename Make>
  std::string Many(Make make) {
    std::string all;
    for (std::size_t i = Below(4); i > 0; --i) all += make();
    return all;
  }

  std::mt19937 random_{20311};
};

// Behind a comment, a list is libplist's to read.
TEST(PropertyList, IsTheSameWithLibplistAndWithout) {
  ListWriter writer;
  int taken = 0;
  for (int i = 0; i < 20000; ++i) {
    const std::string text = writer.List();
    const CFRef<CFTypeRef> list = Parse(text);
    const CFRef<CFTypeRef> commented = Parse("<!-- -->" + text);
    ASSERT_EQ(bool{list}, bool{commented}) << text;
    if (!list) continue;
    ASSERT_TRUE(CFEqual(list.get(), commented.get())) << text;
    ++taken;
  }
  EXPECT_GT(taken, 5000);
}

TEST(PropertyList, BoundsDepthAndSize) {
  for (const std::uint32_t depth : {512U, 513U, 100000U}) {
    const std::string plain = Nested(depth);
    for (const std::string& list : {plain, "<plist>" + plain + "</plist>", BinaryChain(depth, 1)}) {
      EXPECT_EQ(bool{Parse(list)}, depth == 512) << list.substr(0, 9) << depth;
    }
  }
  // Constructs that hide tags from a reader that takes their ends elsewhere.
  const std::string deep = Nested(100000).substr(0, 700000);
  for (const std::string start :
       {"<array a='>' b='>", "<? \" ?><array><!--\" ?>", "<?><!-- ", "<array><!-->",
        "<!DOCTYPE plist [ <!ENTITY a \"]>\"> ]>", "<array a=\"\"\">"}) {
    EXPECT_FALSE(Parse(start + deep + "?>-->")) << start;
    EXPECT_FALSE(Parse(start + deep)) << start;
  }
  EXPECT_TRUE(Parse(BinaryChain(5, 3)));
  for (const std::uint32_t doublings : {20U, 60U}) EXPECT_FALSE(Parse(BinaryChain(doublings, 2)));
  std::string circle = BinaryChain(2, 1);
  circle[12] = 0;  // the reference of object 0 now names itself
  EXPECT_FALSE(Parse(circle));
}

// The largest lists of their kind, in round numbers, and lists that are a little larger.
TEST(PropertyList, BoundsWhatReadingCosts) {
  const auto repeated = [](const char* start, std::size_t count, const char* text,
                           const char* end) {
    std::string all = start;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all + end;
  };
  const std::pair<std::string, bool> kCases[] = {
      // Each key may be compared with all the others.
      {repeated("<dict>", 11500, "<key>a</key><true/>", "</dict>"), true},
      {repeated("<dict>", 12000, "<key>a</key><true/>", "</dict>"), false},
      {BinaryDictionary(11500), true},
      {BinaryDictionary(12000), false},
      // Each reference moves the text behind it.
      {repeated("<string>", 29000, "&#65;", "</string>"), true},
      {repeated("<string>", 30000, "&#65;", "</string>"), false},
      {repeated("<string>", 20000, "&lt;<!--->-->", "</string>"), false},
      // Each object takes memory.
      {repeated("<array>", 300000, "<true/>", "</array>"), true},
      {repeated("<array>", 400000, "<true/>", "</array>"), false},
      {repeated("<array>", 450000, "<data></data>", "</array>"), false},
      {repeated("<array>", 300000, "<dict></dict>", "</array>"), true},
      {repeated("<array>", 400000, "<dict/>", "</array>"), false},
  };
  for (const auto& [list, taken] : kCases) {
    EXPECT_EQ(bool{Parse(list)}, taken) << list.substr(0, 30) << " ... of " << list.size();
  }
}

}  // namespace

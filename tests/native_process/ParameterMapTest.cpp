// The values and maps that carry parameters between a host's JSON and the printer.
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterVO.h"
#include "Library/RavikCommon/RavikTemplate.h"
#include "Library/RavikCommon/RavikValue.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::value;

template <typename T>
std::string Printed(const T& printable) {
  std::ostringstream out;
  out << printable;
  return out.str();
}

TEST(Value, TextAndJsonOfEveryKind) {
  const value nested(value::object{{"a\"b", value(1)}, {"B", value(value::array{value("x")})}});
  const struct {
    value tested;
    const char* text;
    const char* json;
  } kCases[] = {
      {value(), "null", "null"},
      {value(true), "true", "true"},
      {value(false), "false", "false"},
      {value(-2147483647 - 1), "-2147483648", "-2147483648"},
      {value(2.5), "2.5", "2.5"},
      {value(0.1), "0.1", "0.1"},
      {value(1e20), "1e+20", "1e+20"},
      {value(1234567.0), "1.23457e+06", "1.23457e+06"},
      {value("Paper"), "Paper", "\"Paper\""},
      {value(value::array{}), "array", "[]"},
      {value(value::array{value(1), value("a"), value(true)}), "array", "[1,\"a\",true]"},
      {nested, "object", "{\"B\":[\"x\"],\"a\"b\":1}"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.tested.to_str(), c.text);
    EXPECT_EQ(c.tested.serialize(), c.json);
  }
}

TEST(Value, EscapesOnlyWhatHasATwoCharacterEscape) {
  EXPECT_EQ(value::serialize_str("\b\t\n\f\r\\/\""), "\\b\\t\\n\\f\\r\\\\\\/\\\"");
  const std::string raw("\0\x01\x0b\x1f !~\x7f\x80\xe7\xb4\x99\xff", 12);
  EXPECT_EQ(value::serialize_str(raw), raw);
}

TEST(Value, EqualityNeedsTheSameKind) {
  EXPECT_TRUE(value(3) == value(3));
  EXPECT_FALSE(value(3) == value(3.0));
  EXPECT_FALSE(value(3) == value("3"));
  EXPECT_FALSE(value(1) == value(true));
  EXPECT_TRUE(value(value::array{value(1), value("a")}) ==
              value(value::array{value(1), value("a")}));
  EXPECT_FALSE(value(value::array{value(1)}) == value(value::array{value(1), value(2)}));
  EXPECT_TRUE(value(value::object{{"k", value(1)}}) == value(value::object{{"k", value(1)}}));
  EXPECT_FALSE(value(value::object{{"k", value(1)}}) == value(value::object{{"l", value(1)}}));
  EXPECT_DEATH((void)(value() == value()), "RavikValue:[0-9]+: operator==: Assertion `false'");
}

TEST(ParameterMap, FindsByKeyAndPosition) {
  ParameterMapVO map;
  map.insert("Key");
  map.insert("Key");
  value found("untouched");
  EXPECT_TRUE(map.isKey("Key"));
  EXPECT_FALSE(map.find("Key", found));
  map.insert("Key", 12);
  map.insert("Key", "Paper");
  EXPECT_FALSE(map.find("Key", 2, found));
  EXPECT_FALSE(map.find("Key", -1, found));
  EXPECT_FALSE(map.find("key", found));
  EXPECT_EQ(found.to_str(), "untouched");

  std::string text;
  ASSERT_TRUE(map.find("Key", text));
  EXPECT_EQ(text, "12");
  int integer = 0;
  ASSERT_TRUE(map.find("Key", integer));
  EXPECT_EQ(integer, 12);
  EXPECT_DEATH(map.find("Key", 1, integer),
               "ParameterMapVO:[0-9]+: find: Assertion `val.is<int>\\(\\)'");
}

TEST(ParameterMap, PrintsByTheSmallestNumberOfValues) {
  ParameterMapVO map;
  EXPECT_EQ(Printed(map), "{}");
  map.insert("No", 3);
  map.insert("Name", "Paper A");
  EXPECT_EQ(Printed(map), R"({"Name":"Paper A","No":3})");
  map.insert("No", 4);
  EXPECT_EQ(Printed(map), R"({"Name":"Paper A","No":3})");
  map.insert("Name", "B");
  map.insert("Name", "C");
  EXPECT_EQ(map.sizeMinVector(), 2U);
  EXPECT_EQ(Printed(map), R"([{"Name":"Paper A","No":3},{"Name":"B","No":4}])");
  map.insert("Empty");
  EXPECT_EQ(Printed(map), R"({"Empty":null,"Name":"Paper A","No":3})");
}

TEST(ParameterMap, OrdersKeysByBytes) {
  ParameterMapVO map;
  for (const char* key : {"b2", "b10", "B", "\xc3\xa9", "a"}) map.insert(key, 1);
  EXPECT_EQ(Printed(map), "{\"B\":1,\"a\":1,\"b10\":1,\"b2\":1,\"\xc3\xa9\":1}");
}

TEST(ParameterMap, ContainsWhatItsSharedKeysAgreeOn) {
  ParameterMapVO request;
  request.insert("No", 3);
  request.insert("Name", "Paper");
  request.insert("Bare");
  ParameterMapVO readBack;
  EXPECT_TRUE(request.isContain(readBack));
  readBack.insert("DeviceID", 55);
  readBack.insert("No", 3);
  readBack.insert("No", 9);
  readBack.insert("Bare", 1);
  EXPECT_TRUE(request.isContain(readBack));

  ParameterMapVO otherKind;
  otherKind.insert("No", "3");
  EXPECT_FALSE(request.isContain(otherKind));

  ParameterMapVO bare;
  bare.insert("Unshared");
  EXPECT_THROW(request.isContain(bare), std::out_of_range);
  ParameterMapVO differsFirst;
  differsFirst.insert("Name", "Other");
  differsFirst.insert("Unshared");
  EXPECT_FALSE(request.isContain(differsFirst));
}

TEST(Printer, PrintsBothNamesUnescaped) {
  Ravik::PrinterVO printer;
  printer.setPrinter("A \"1\"", "QM-V5 Series");
  EXPECT_EQ(Printed(printer), R"("PrinterName":"A "1"","DeviceName":"QM-V5 Series")");
}

TEST(CreateMap, KeepsTheLastOfEqualKeys) {
  const std::map<std::string, int> map =
      Ravik::TCreateMap<std::string, int>("a", 1)("b", 2)("a", 3);
  EXPECT_EQ(map, (std::map<std::string, int>{{"a", 3}, {"b", 2}}));
}

}  // namespace

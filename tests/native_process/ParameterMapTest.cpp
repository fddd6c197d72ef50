// The values and maps that carry parameters between a host's JSON and the printer.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "GantryCore/ParameterMapVO.h"
#include "Library/RavikCommon/RavikValue.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::value;

TEST(Value, TextAndJsonOfEveryKind) {
  const value nested(value::object{{"a\"b", value(1)}, {"B", value(value::array{value("x")})}});
  const std::tuple<value, const char*, const char*> kCases[] = {
      {value(), "null", "null"},
      {value(true), "true", "true"},
      {value(-2147483647 - 1), "-2147483648", "-2147483648"},
      {value(2.5), "2.5", "2.5"},
      {value(1e20), "1e+20", "1e+20"},
      {value(1234567.0), "1.23457e+06", "1.23457e+06"},
      {value("Paper"), "Paper", "\"Paper\""},
      {value(value::array{}), "array", "[]"},
      {value(value::array{value(1), value("a"), value(true)}), "array", "[1,\"a\",true]"},
      {value("\"/\\\t\"/\\\t\"/\\\t\"/\\\t\"/\\\t"), "\"/\\\t\"/\\\t\"/\\\t\"/\\\t\"/\\\t",
       R"("\"\/\\\t\"\/\\\t\"\/\\\t\"\/\\\t\"\/\\\t")"},
      {nested, "object", "{\"B\":[\"x\"],\"a\"b\":1}"},
  };
  for (const auto& [tested, text, json] : kCases) {
    EXPECT_EQ(tested.to_str(), text);
    EXPECT_EQ(tested.serialize(), json);
  }
}

TEST(Value, EscapesOnlyWhatHasATwoCharacterEscape) {
  EXPECT_EQ(value::serialize_str("\b\t\n\f\r\\/\""), "\\b\\t\\n\\f\\r\\\\\\/\\\"");
  const std::string raw("\0\x01\x0b\x1f !~\x7f\x80\xe7\xb4\x99\xff", 12);
  EXPECT_EQ(value::serialize_str(raw), raw);
}

TEST(Value, EqualityNeedsTheSameKindAndContent) {
  const auto object = [](const char* key, int number) {
    return value(value::object{{key, value(number)}});
  };
  const value one(value::array{value(1)});
  const value two(value::array{value(1), value(2)});
  const std::vector<value> distinct{value(3),       value(3.0),     value("3"),    value(1),
                                    value(true),    value(false),   one,           two,
                                    object("k", 1), object("l", 1), object("k", 2)};
  for (const value& left : distinct) {
    for (const value& right : distinct) {
      EXPECT_EQ(left == right, &left == &right) << left.serialize() << ' ' << right.serialize();
      EXPECT_EQ(left == value(right), &left == &right);
    }
  }
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
  int integer = 0;
  EXPECT_TRUE(map.find("Key", text) && map.find("Key", integer));
  EXPECT_EQ(text, "12");
  EXPECT_EQ(integer, 12);
  EXPECT_DEATH(map.find("Key", 1, integer),
               "ParameterMapVO:[0-9]+: find: Assertion `val.is<int>\\(\\)'");
}

TEST(ParameterMap, PrintsByTheSmallestNumberOfValues) {
  const auto print = [](const ParameterMapVO& map) {
    std::ostringstream out;
    out << map;
    return out.str();
  };
  ParameterMapVO map;
  EXPECT_EQ(print(map), "{}");
  map.insert("No", 3);
  map.insert("Name", "Paper A");
  map.insert("No", 4);
  EXPECT_EQ(print(map), R"({"Name":"Paper A","No":3})");
  map.insert("Name", "B");
  map.insert("Name", "C");
  EXPECT_EQ(map.sizeMinVector(), 2U);
  EXPECT_EQ(print(map), R"([{"Name":"Paper A","No":3},{"Name":"B","No":4}])");
  map.insert("No10");
  map.insert("No2", 1);
  map.insert("a\xc3\xa9", 1);
  EXPECT_EQ(print(map), R"({"Name":"Paper A","No":3,"No10":null,"No2":1,"aé":1})");
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
  readBack.insert("Unshared");
  EXPECT_THROW(request.isContain(readBack), std::out_of_range);
  readBack.insert("Name", "Other");
  EXPECT_FALSE(request.isContain(readBack)) << "the walk ends at the first difference";
  ParameterMapVO otherKind;
  otherKind.insert("No", "3");
  EXPECT_FALSE(request.isContain(otherKind));
}

// A worker fills its maps again and again. What they held before must not show, whatever the order
// of the keys and however many values they had.
TEST(ParameterMap, HoldsWhatItIsFilledWithAgain) {
  std::minstd_rand random(1);
  const auto below = [&random](unsigned int bound) { return random() % bound; };
  ParameterMapVO map;
  std::map<std::string, std::vector<value>> model;
  for (int step = 0; step < 20000; ++step) {
    if (below(8) == 0) {
      map.clear();
      model.clear();
    }
    // Often the keys that come next, as where the same reply is read again.
    const std::string next = model.empty() ? "k" : model.rbegin()->first + 'k';
    const std::string key = below(2) == 0 ? next.substr(0, 6) : std::string(1, "akz"[below(3)]);
    const auto number = static_cast<int>(below(100));
    const std::string text(static_cast<std::size_t>(number), 'x');
    switch (below(4)) {
      case 0:
        map.insert(key);
        model[key];
        break;
      case 1:
        map.insert(key, number);
        model[key].emplace_back(number);
        break;
      case 2:
        map.insert(key, text);
        model[key].emplace_back(text);
        break;
      default:
        map.insert(key, value(value::array{value(text)}));
        model[key].emplace_back(value::array{value(text)});
    }
    ASSERT_EQ(map.size(), model.size()) << step;
    ASSERT_TRUE(std::equal(map.begin(), map.end(), model.begin(), model.end(),
                           [](const auto& entry, const auto& expected) {
                             const auto& [name, values] = entry;
                             if (name != expected.first) return false;
                             if (values.size() != expected.second.size()) return false;
                             for (std::size_t i = 0; i < values.size(); ++i) {
                               if (!(values[i] == expected.second[i])) return false;
                             }
                             return true;
                           }))
        << step;
  }
}

}  // namespace

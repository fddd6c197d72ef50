// Taking requests apart and writing answers.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "NativeProcess/PrinterProcess.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::PrinterProcess;

// In front of the parameters in what Read() gives.
const std::string kHead = R"(SetCustomMediaInfo "PrinterName":"p "1"","DeviceName":"d" )";

// How a request to write a record with this parameter is read; empty if it is not well formed.
std::string Read(const std::string& parameter) {
  std::string command;
  Ravik::PrinterVO printer;
  ParameterMapVO parameters;
  const std::string request =
      R"({"Command":"SetCustomMediaInfo","PrinterName":"p \"1\"","DeviceName":"d","Parameter":)" +
      parameter + '}';
  if (!PrinterProcess::ParsePicojson(request, command, printer, parameters)) return "";
  std::ostringstream out;
  out << command << ' ' << printer << ' ' << parameters;
  return out.str();
}

std::string Times(std::size_t count, const std::string& text) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

std::string NestedObjects(std::size_t depth) {
  return Times(depth, "{\"a\":") + '1' + Times(depth, "}");
}

std::string NestedArrays(std::size_t depth) {
  return "{\"a\":" + Times(depth, "[") + Times(depth, "]") + '}';
}

TEST(ParsePicojson, ReadsParametersOfEveryKind) {
  const std::pair<std::string, std::string> kCases[] = {
      {"{}", "{}"},
      {R"({"b":"text","a":1})", R"({"a":1,"b":"text"})"},
      {R"({"a":3.9,"b":-3.9,"c":-0.5,"d":1e-999,"e":-0})", R"({"a":3,"b":-3,"c":0,"d":0,"e":0})"},
      {R"({"a":2147483647,"b":2147483647.9,"c":-2147483648.9})",
       R"({"a":2147483647,"b":2147483647,"c":-2147483648})"},
      {R"({"a":2147483648,"b":-2147483649,"c":1e300,"d":-1e300})",
       R"({"a":-2147483648,"b":-2147483648,"c":-2147483648,"d":-2147483648})"},
      {R"({"a":true,"b":null,"c":[1],"d":{"e":1},"f":1})", R"({"f":1})"},
      {R"({"a":"é\u7d19\n","":1})", "{\"\":1,\"a\":\"é紙\\n\"}"},
      {R"({"a":1,"b":[{"a":2}],"a":"last","b":3})", R"({"a":"last","b":3})"},
      {R"({"b":1,"a":2,"b":null,"c":"x","a":[3],"c":4})", R"({"c":4})"},
      {R"([1],"Parameter":{"a":1},"Parameter":{"b":2})", R"({"b":2})"},
      {"{\"\xff\xc3\":\"\xed\xa0\x80\\u0001\"}", "{\"\xff\xc3\":\"\xed\xa0\x80\x01\"}"},
      {NestedArrays(100), "{}"},
      {NestedObjects(2047), "{}"},
  };
  for (const auto& [parameter, read] : kCases) EXPECT_EQ(Read(parameter), kHead + read);
}

void AppendMember(const std::string& key, const std::string& number, std::string& object) {
  object.append(object.empty() ? "{\"" : ",\"").append(key).append("\":").append(number);
}

// Hosts may send any number of parameters in any order, and some of them twice.
TEST(ParsePicojson, TakesTheLastOfEachKeyInTheOrderOfTheKeys) {
  std::mt19937 random(1);
  for (int count = 2; count < 60; ++count) {
    std::string given;
    std::map<std::string, std::string> last;
    for (int i = 0; i < count; ++i) {
      const std::string key(1, static_cast<char>('a' + random() % 26));
      last[key] = random() % 4 == 0 ? "null" : std::to_string(i);
      AppendMember(key, last[key], given);
    }
    last["~"] = "1";
    AppendMember("~", "1", given);
    std::string expected;
    for (const auto& [key, number] : last) {
      if (number != "null") AppendMember(key, number, expected);
    }
    EXPECT_EQ(Read(given + '}'), kHead + expected + '}');
  }
}

TEST(ParsePicojson, RefusesWhatIsNotARequest) {
  for (const std::string& parameter :
       {std::string(), std::string(R"({"a":1e999})"), std::string(R"({},"x":[1e999])"),
        std::string(R"({},"Parameter":null)"), std::string(R"({},"Command":null)"),
        std::string(R"({},"x":tru)"), std::string(R"({"a":"\ud800"})"),
        std::string(R"({"a":"\udc00\ud800"})"), std::string(R"({"a":"\ud800\u0041"})"),
        std::string("{\"a\":\"\x01\"}"), NestedArrays(101), NestedArrays(100000),
        NestedObjects(2048), NestedObjects(100000), Times(100000, "["), Times(100000, "{\"a\":"),
        Times(100000, "[{\"a\":")}) {
    EXPECT_EQ(Read(parameter), "") << parameter.substr(0, 80);
  }
}

TEST(PrintJson, WritesAReplyOnlyWithSuccess) {
  ParameterMapVO reply;
  reply.insert("No", 1);
  std::ostringstream out;
  PrinterProcess::PrintJson("A\"b", reply, 0, out);
  PrinterProcess::PrintJson("A", reply, -6, out);
  EXPECT_EQ(out.str(), R"({"A"b":0,"Reply":{"No":1}}{"A":-6})");
}

}  // namespace

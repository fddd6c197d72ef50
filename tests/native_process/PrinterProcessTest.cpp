// Taking requests apart and writing answers.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

#include "NativeProcess/PrinterProcess.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::PrinterProcess;

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

TEST(ParsePicojson, ReadsParametersOfEveryKind) {
  const std::string head = R"(SetCustomMediaInfo "PrinterName":"p "1"","DeviceName":"d" )";
  const std::pair<std::string, std::string> kCases[] = {
      {"{}", "{}"},
      {R"({"b":"text","a":1})", R"({"a":1,"b":"text"})"},
      {R"({"a":3.9,"b":-3.9,"c":-0.5,"d":1e-300})", R"({"a":3,"b":-3,"c":0,"d":0})"},
      {R"({"a":2147483647,"b":2147483647.9,"c":-2147483648.9})",
       R"({"a":2147483647,"b":2147483647,"c":-2147483648})"},
      {R"({"a":2147483648,"b":-2147483649,"c":1e300,"d":-1e300})",
       R"({"a":-2147483648,"b":-2147483648,"c":-2147483648,"d":-2147483648})"},
      {R"({"a":true,"b":null,"c":[1],"d":{"e":1},"f":1})", R"({"f":1})"},
      {R"({"a":"é\u7d19\n","":1})", "{\"\":1,\"a\":\"é紙\\n\"}"},
  };
  for (const auto& [parameter, read] : kCases) EXPECT_EQ(Read(parameter), head + read);
}

TEST(ParsePicojson, RefusesWhatIsNotARequest) {
  const std::string deep(100000, '[');
  for (const std::string& parameter :
       {std::string(), std::string("{\"a\":1e999}"), deep, "{\"a\":" + deep}) {
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

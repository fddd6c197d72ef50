// Taking requests apart and writing answers.
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

#include "NativeProcess/PrinterProcess.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::PrinterProcess;
using Ravik::PrinterVO;

struct Parsed {
  bool wellFormed;
  std::string command;
  std::string printer;
  std::string parameters;
};

template <typename T>
std::string Printed(const T& printable) {
  std::ostringstream out;
  out << printable;
  return out.str();
}

Parsed Parse(const std::string& request) {
  Parsed parsed;
  PrinterVO printer;
  ParameterMapVO parameters;
  parsed.wellFormed = PrinterProcess::ParsePicojson(request, parsed.command, printer, parameters);
  parsed.printer = printer.printerName() + '|' + printer.deviceName();
  parsed.parameters = Printed(parameters);
  return parsed;
}

std::string WithParameter(const std::string& command, const std::string& parameter) {
  return R"({"Command":")" + command + R"(","PrinterName":"p","DeviceName":"d","Parameter":)" +
         parameter + '}';
}

TEST(ParsePicojson, ReadsParametersOfEveryKind) {
  const struct {
    const char* parameter;
    const char* read;
  } kCases[] = {
      {"{}", "{}"},
      {R"({"b":"text","a":1})", R"({"a":1,"b":"text"})"},
      {R"({"a":3.9,"b":-3.9,"c":-0.5,"d":1e-300})", R"({"a":3,"b":-3,"c":0,"d":0})"},
      {R"({"a":2147483647,"b":2147483647.9,"c":-2147483648.9})",
       R"({"a":2147483647,"b":2147483647,"c":-2147483648})"},
      {R"({"a":2147483648,"b":-2147483649,"c":1e300,"d":-1e300})",
       R"({"a":-2147483648,"b":-2147483648,"c":-2147483648,"d":-2147483648})"},
      {R"({"a":true,"b":null,"c":[1],"d":{"e":1},"f":1})", R"({"f":1})"},
      {R"({"a":"é\u7d19\n"})", "{\"a\":\"é紙\\n\"}"},
      {R"({"":1})", R"({"":1})"},
  };
  for (const auto& c : kCases) {
    const Parsed parsed = Parse(WithParameter("SetCustomMediaInfo", c.parameter));
    EXPECT_TRUE(parsed.wellFormed) << c.parameter;
    EXPECT_EQ(parsed.parameters, c.read);
    EXPECT_EQ(parsed.printer, "p|d");
  }
}

TEST(ParsePicojson, StatusKeysHaveNoValues) {
  PrinterVO printer;
  ParameterMapVO parameters;
  std::string command;
  ASSERT_TRUE(PrinterProcess::ParsePicojson(
      WithParameter("GetStatusReply", R"(["StatusCode",3,null,"StatusCode","Other"])"), command,
      printer, parameters));
  EXPECT_EQ(parameters.size(), 2U);
  EXPECT_TRUE(parameters.isKey("StatusCode"));
  EXPECT_EQ(parameters.sizeMinVector(), 0U);
}

TEST(ParsePicojson, RefusesWhatIsNotARequest) {
  const std::string deep(100000, '[');
  for (const std::string& request :
       {std::string("{"), std::string("{\"Command\":\"GetPrinterList\""),
        WithParameter("SetCustomMediaInfo", "{\"a\":1e999}"),
        WithParameter("SetCustomMediaInfo", deep), WithParameter("GetFWVersion", deep),
        std::string("[") + deep, std::string("{\"a\":") + deep}) {
    EXPECT_FALSE(Parse(request).wellFormed) << request.substr(0, 80);
  }
  EXPECT_THROW(Parse("[1]"), std::runtime_error);
  EXPECT_THROW(Parse("3"), std::runtime_error);
}

TEST(PrintJson, WritesAReplyOnlyWithSuccess) {
  ParameterMapVO reply;
  const auto printed = [&](long code) {
    std::ostringstream out;
    PrinterProcess::PrintJson("A\"b", reply, code, out);
    return out.str();
  };
  EXPECT_EQ(printed(0), R"({"A"b":0})");
  reply.insert("No", 1);
  EXPECT_EQ(printed(0), R"({"A"b":0,"Reply":{"No":1}})");
  EXPECT_EQ(printed(-6), R"({"A"b":-6})");
}

TEST(Dispatch, AnOutOfRangeErrorOfAHandlerIsAnswered) {
  std::ostringstream out;
  EXPECT_EQ(PrinterProcess::doFunction(WithParameter("NoSuch", "{}"), out), -1);
  EXPECT_EQ(PrinterProcess::doFunction("{}", out), -1);
  EXPECT_EQ(out.str(), R"({"NoSuch":-1}syntax error)");
  EXPECT_EQ(PrinterProcess::NativeProcessFunction.size(), 7U);
  EXPECT_EQ(PrinterProcess::NativeProcessFunction.count("OpenHelpFile"), 0U);
}

}  // namespace

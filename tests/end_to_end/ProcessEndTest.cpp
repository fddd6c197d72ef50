// Answers without a printer, exit statuses and the ends of the process that a host can bring about.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <map>
#include <string>
#include <utility>

#include "tests/end_to_end/Rig.h"

namespace {

TEST(Answer, RequestsThatNeedNoPrinter) {
  const WorkerFolder folder({});
  const std::string malformed = "syntax error";
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0})";
  const std::pair<std::string, std::string> kCases[] = {
      {"\r", malformed},
      {"nonsense", malformed},
      {"null", malformed},
      {"{}", malformed},
      {R"({"Command":3})", malformed},
      {R"({"Command":"OpenHelpFile"})", malformed},
      {R"({"Command":"GetFWVersion","PrinterName":"p"})", malformed},
      {R"({"Command":"GetFWVersion","DeviceName":"d"})", malformed},
      {Request("GetStatusReply", "p", "d", "{}"), malformed},
      {Request("GetCustomMediaName", "p", "d", "[]"), malformed},
      {Request("GetCustomMediaName", "p", "d"), malformed},
      {Request("No\\\"Such", "p", "d", "{}"), R"({"No"Such":-1})"},
      {R"({"Command":"OpenHelpFile","FilePath":"f"})", R"({"OpenHelpFile":-1})"},
      {Request("GetFWVersion", "p", "d"), R"({"GetFWVersion":-1})"},
      {Request("GetCustomMediaInfo", "p", "QM-R410 Series", "{}"), R"({"GetCustomMediaInfo":-1})"},
      {Request("SetCustomMediaInfo", "p", "QM-R410 Series", "{}"), R"({"SetCustomMediaInfo":-1})"},
      {Request("GetStatusReply", "p", "d", "[]"), R"({"GetStatusReply":-4})"},
      // A read is built before the printer is opened, a write after.
      {Request("GetCustomMediaInfo", "p", "d", record), R"({"GetCustomMediaInfo":-1})"},
      {Request("SetCustomMediaInfo", "p", "d", record), R"({"SetCustomMediaInfo":-4})"},
      {std::string(kList) + "trailing text", R"({"GetPrinterList":0})"},
  };
  std::string input;
  std::string expected;
  for (const auto& [request, answer] : kCases) {
    input += Line(request) + "\n";  // empty lines do not count
    expected += answer;
  }
  EXPECT_EQ(folder.Run(input).output, expected);
}

// Names come from lists and printers. A host escapes every control byte, the answer only some.
TEST(Answer, ANameOfAnyCharactersOpensItsPrinter) {
  const std::string device = "QM-R410 Series";
  const VirtualPrinter printer(device);
  const std::string end = "[2J\x7F\xF0\x9F\x96\xA8 '&>]]>";
  const WorkerFolder folder({{"\"\\/\n\r\t\x01\x1B" + end, device, printer.Uri()}});
  const std::string name = R"(\"\\\/\n\r\t\u0001\u001B)" + end;
  EXPECT_EQ(folder.Run(Line(kList) + Line(Request("GetStatusReply", name, device, "[]"))).output,
            R"({"GetPrinterList":0,"Reply":{"DeviceName":")" + device + R"(","PrinterName":")" +
                R"(\"\\\/\n\r\t)"
                "\x01\x1B" +
                end + R"("}}{"GetStatusReply":0})");
}

TEST(Answer, TheLastCodeIsTheExitStatus) {
  const WorkerFolder folder({});
  const std::string unlisted = Line(Request("GetStatusReply", "p", "d", "[]"));
  for (const auto& [input, status] : std::map<std::string, int>{{"", 1},
                                                                {"\n\n", 1},
                                                                {Line(kList) + "{}", 255},
                                                                {"{}\n" + unlisted + '\n', 252},
                                                                {unlisted + Line(kList), 0}}) {
    const Outcome outcome = folder.Run(input);
    EXPECT_TRUE(WIFEXITED(outcome.status)) << input;
    EXPECT_EQ(WEXITSTATUS(outcome.status), status) << input;
  }
}

TEST(ProcessEnd, ProgrammingErrorsOfTheHostEndTheProcessWithTheirReport) {
  VirtualPrinter printer("QM-R410 Series");
  const WorkerFolder folder({{"p", "QM-R410 Series", printer.Uri()}});
  const auto info = [](const char* command, const char* parameter,
                       const char* device = "QM-R410 Series") {
    return Request(command, "p", device, parameter);
  };
  const std::string sources = "src/naitive/SourceFiles/";
  const struct {
    std::string request;
    std::string report;  // a regular expression
  } kCases[] = {
      {info("GetCustomMediaInfo", R"({"CommandVersion":2})"),
       sources + "NativeProcess/PrinterProcess:[0-9]+: GetCustomMediaInfo: Assertion `false'"},
      {info("SetCustomMediaInfo", R"({"CommandVersion":1e10})"),
       sources + "NativeProcess/PrinterProcess:[0-9]+: SetCustomMediaInfo: Assertion `false'"},
      {info("GetCustomMediaInfo", R"({"CommandVersion":"0"})"),
       sources + "GantryCore/ParameterMapVO:[0-9]+: find: Assertion `val.is<int>\\(\\)'"},
      {info("GetCustomMediaInfo", R"({"CommandVersion":1})", "QM-T44 Series"),
       sources + "ModelInfomation/PrinterClass/Lunde:42:.* ReadCommandInfo: Assertion `false'"},
      {info("GetFWVersion", ""),
       sources + "ModelInfomation/PrinterClass/Ostrel:52:.* ReadCommandInfo: Assertion `false'"},
      {info("SetCustomMediaInfo", R"({"CommandVersion":128,"SettingAll":"ABC"})"),
       sources + "GantryCore/DataConverter:[0-9]+: Ascii2Byte: Assertion"},
      {"[]", "std::runtime_error.*is<object>\\(\\)"},
      {"\"GetPrinterList\"", "std::runtime_error.*is<object>\\(\\)"},
  };
  for (const auto& c : kCases) {
    const Outcome outcome = folder.Run(Line(kList) + Line(c.request) + Line(kList));
    EXPECT_EQ(outcome.output,
              R"({"GetPrinterList":0,"Reply":{"DeviceName":"QM-R410 Series","PrinterName":"p"}})");
    EXPECT_TRUE(WIFSIGNALED(outcome.status) && WTERMSIG(outcome.status) == SIGABRT) << c.request;
    EXPECT_THAT(outcome.errors, testing::ContainsRegex(c.report)) << c.request;
  }
}

}  // namespace

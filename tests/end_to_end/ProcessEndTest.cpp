// Result codes, exit statuses and the ends of the process that a host can bring about.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

constexpr char kList[] = R"({"Command":"GetPrinterList"})";

TEST(Answer, RequestsThatNeedNoPrinter) {
  const WorkerFolder folder({});
  const std::string names = R"("PrinterName":"p","DeviceName":"d")";
  const struct {
    std::string request;
    std::string answer;
    int exitStatus;
  } kCases[] = {
      {kList, R"({"GetPrinterList":0})", 0},
      {R"({"Command":"GetPrinterList"}trailing text)", R"({"GetPrinterList":0})", 0},
      {"", "", 1},
      {"\r", "syntax error", 255},
      {"nonsense", "syntax error", 255},
      {"null", "syntax error", 255},
      {"{}", "syntax error", 255},
      {R"({"Command":3})", "syntax error", 255},
      {R"({"Command":"GetFWVersion","PrinterName":"p"})", "syntax error", 255},
      {R"({"Command":"GetFWVersion",)" + names + "}", R"({"GetFWVersion":-1})", 255},
      {R"({"Command":"GetStatusReply",)" + names + R"(,"Parameter":{}})", "syntax error", 255},
      {R"({"Command":"GetCustomMediaName",)" + names + R"(,"Parameter":[]})", "syntax error", 255},
      {R"({"Command":"GetCustomMediaName",)" + names + "}", "syntax error", 255},
      {R"({"Command":"OpenHelpFile","FilePath":"f"})", R"({"OpenHelpFile":-1})", 255},
      {R"({"Command":"OpenHelpFile"})", "syntax error", 255},
      {R"({"Command":"No\"Such",)" + names + R"(,"Parameter":{}})", R"({"No"Such":-1})", 255},
      {R"({"Command":"No",)" + names + R"(,"Parameter":{"a":1e999}})", "syntax error", 255},
      {R"({"Command":"GetCustomMediaInfo",)" + names + R"(,"Parameter":{}})",
       R"({"GetCustomMediaInfo":-1})", 255},
      {R"({"Command":"SetCustomMediaInfo",)" + names + R"(,"Parameter":{}})",
       R"({"SetCustomMediaInfo":-1})", 255},
  };
  for (const auto& c : kCases) {
    const Outcome outcome = folder.Run({c.request});
    EXPECT_EQ(outcome.output, c.answer) << c.request;
    ASSERT_TRUE(WIFEXITED(outcome.status)) << c.request << outcome.errors;
    EXPECT_EQ(WEXITSTATUS(outcome.status), c.exitStatus) << c.request;
  }
  EXPECT_EQ(folder.RunRaw("\n\n\n").output, "");
  EXPECT_EQ(WEXITSTATUS(folder.RunRaw("\n\n\n").status), 1);
  EXPECT_EQ(folder.RunRaw("%7B%7D\n\n{}").output, "syntax errorsyntax error");
}

TEST(Answer, ResultCodesOfThePrinterControl) {
  VirtualPrinter printer("QM-R410 Series");
  VirtualPrinter forgetful("QM-R410 Series", {"--fault", "forget"});
  VirtualPrinter silent("QM-R410 Series", {"--fault", "drop=1000000"});
  VirtualPrinter foreign("QM-V5 Series");
  const std::string fast = "timeout=100&retries=1";
  const WorkerFolder folder({{"good", "QM-R410 Series", printer.Uri()},
                             {"forgetful", "QM-R410 Series", forgetful.Uri()},
                             {"silent", "QM-R410 Series", silent.Uri(fast)},
                             {"foreign", "QM-V5 Series", foreign.Uri()}});
  ASSERT_EQ(WEXITSTATUS(folder.Run({kList}).status), 0);
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0})";
  const std::string change = R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":9})";
  const struct {
    const char* command;
    const char* printer;
    const char* device;
    std::string parameter;
    int code;
  } kCases[] = {
      {"GetCustomMediaInfo", "unlisted", "QM-R410 Series", record, -4},
      {"SetCustomMediaInfo", "unlisted", "QM-R410 Series", change, -4},
      // A read is built before the printer is opened, a write after.
      {"GetCustomMediaInfo", "unlisted", "no such device", record, -1},
      {"SetCustomMediaInfo", "unlisted", "no such device", change, -4},
      {"SetCustomMediaInfo", "good", "no such device", change, -1},
      {"GetCustomMediaInfo", "silent", "QM-R410 Series", record, -6},
      {"SetCustomMediaInfo", "silent", "QM-R410 Series", change, -1},
      {"SetMediaInitialize", "silent", "QM-R410 Series", R"({"InitializeCustomMedia":1})", -1},
      {"GetStatusReply", "silent", "QM-R410 Series", "[]", -6},
      // The status does not need a device name that is known, and a reply may be empty.
      {"GetStatusReply", "good", "no such device", "[]", 0},
      {"SetCustomMediaInfo", "forgetful", "QM-R410 Series", change, -6},
      // A printer that does not know the request answers without the header.
      {"GetFWVersion", "good", "QM-V5 Series", "", -7},
      // Int 9 was written, the text 9 is asked for.
      {"SetCustomMediaInfo", "good", "QM-R410 Series", change, 0},
      {"SetCustomMediaInfo", "good", "QM-R410 Series",
       R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":"9"})", -6},
      {"SetMediaInitialize", "good", "QM-R410 Series", "{}", 0},
  };
  KeptWorker worker(folder);
  for (const auto& c : kCases) {
    const std::string request = Request(c.command, c.printer, c.device, c.parameter);
    EXPECT_EQ(worker.Ask(request),
              std::string("{\"") + c.command + "\":" + std::to_string(c.code) + '}')
        << request;
  }
  worker.process().CloseInput();
  EXPECT_EQ(WEXITSTATUS(worker.process().Wait()), 0);
}

TEST(ProcessEnd, ProgrammingErrorsOfTheHostEndTheProcessWithTheirReport) {
  VirtualPrinter printer("QM-R410 Series");
  const WorkerFolder folder({{"p", "QM-R410 Series", printer.Uri()}});
  const auto info = [](const char* command, const char* device, const char* parameter) {
    return Request(command, "p", device, parameter);
  };
  const std::string sources = "src/naitive/SourceFiles/";
  const std::string families = sources + "ModelInfomation/PrinterClass/";
  const std::string builder = sources + "GantryCore/PrinterCommand";
  const struct {
    std::string request;
    std::string source;
    std::string report;
  } kCases[] = {
      {info("GetCustomMediaInfo", "QM-R410 Series", R"({"CommandVersion":2})"),
       sources + "NativeProcess/PrinterProcess:",
       ": GetCustomMediaInfo: Assertion `false' failed."},
      {info("SetCustomMediaInfo", "QM-R410 Series", R"({"CommandVersion":1e10})"),
       sources + "NativeProcess/PrinterProcess:",
       ": SetCustomMediaInfo: Assertion `false' failed."},
      {info("GetCustomMediaInfo", "QM-R410 Series", R"({"CommandVersion":"0"})"),
       sources + "GantryCore/ParameterMapVO:", ": find: Assertion `val.is<int>()' failed."},
      {info("GetCustomMediaInfo", "QM-T44 Series", R"({"CommandVersion":1})"),
       families + "Lunde:42:", " ReadCommandInfo: Assertion `false' failed."},
      {info("GetCustomMediaInfo", "QM-T64 Series", R"({"CommandVersion":1})"),
       families + "TamskST:48:", " ReadCommandInfo: Assertion `false' failed."},
      {info("GetFWVersion", "QM-R410 Series", ""),
       families + "Ostrel:52:", " ReadCommandInfo: Assertion `false' failed."},
      {info("SetCustomMediaInfo", "QM-V5 Series", R"({"CommandVersion":128})"),
       families + "Corvel:46:", " ReadCommandInfo: Assertion `false' failed."},
      {info("GetFWVersion", "QM-R210 Series", ""),
       families + "Parvane:55:", " ReadCommandInfo: Assertion `false' failed."},
      {info("GetFWVersion", "QM-R310 Series", ""),
       families + "Tamsk:54:", " ReadCommandInfo: Assertion `false' failed."},
      {info("SetCustomMediaInfo", "QM-R410 Series", R"({"CommandVersion":128})"), builder + ":",
       ": MakeVariablePart: Assertion `parameter.is<std::string>()' failed."},
      {info("SetCustomMediaInfo", "QM-R410 Series", R"({"CommandVersion":128,"SettingAll":"ABC"})"),
       sources + "GantryCore/DataConverter:",
       ": Ascii2Byte: Assertion `(ascii.size() % 2) == 0' failed."},
      {"[]", "std::runtime_error", "is<object>()"},
      {"\"GetPrinterList\"", "std::runtime_error", "is<object>()"},
  };
  const std::string earlier =
      R"({"GetPrinterList":0,"Reply":{"DeviceName":"QM-R410 Series","PrinterName":"p"}})";
  for (const auto& c : kCases) {
    const Outcome outcome = folder.Run({kList, c.request, kList});
    EXPECT_EQ(outcome.output, earlier) << c.request;
    ASSERT_TRUE(WIFSIGNALED(outcome.status)) << c.request;
    EXPECT_EQ(WTERMSIG(outcome.status), SIGABRT) << c.request;
    EXPECT_NE(outcome.errors.find(c.source), std::string::npos) << outcome.errors;
    EXPECT_NE(outcome.errors.find(c.report), std::string::npos) << outcome.errors;
  }
}

}  // namespace

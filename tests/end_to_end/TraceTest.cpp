// The trace of a request, from both sides of the printer's port.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;

constexpr char kDevice[] = "QM-R410 Series";
constexpr char kTraced[] = "PRINTER_TRACE=\"${0%/*}/trace\" exec \"$0\"";

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct TraceLine {
  std::string program;
  std::string event;  // with its port
  std::string bytes;
  std::string text;
};

std::vector<TraceLine> Lines(const std::string& trace) {
  const std::regex form(
      R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z (worker|driver|printer)\[\d+\] )"
      R"(((?:host|network|snmp|raw|local) [a-z]+) (-|[0-9A-F]+(?:\+\d+)?)(?: ([ -~]+))?)");
  std::vector<TraceLine> lines;
  std::istringstream text(trace);
  for (std::string line; std::getline(text, line);) {
    std::smatch columns;
    EXPECT_TRUE(std::regex_match(line, columns, form)) << line;
    lines.push_back({columns[1], columns[2], columns[3], columns[4]});
  }
  return lines;
}

// What a program tells of one kind of event, in order: the port and the bytes.
std::vector<std::string> Events(const std::vector<TraceLine>& lines, const std::string& program,
                                const std::string& event) {
  std::vector<std::string> found;
  for (const TraceLine& line : lines) {
    const std::size_t blank = line.event.find(' ');
    const bool is_wanted = line.program == program && line.event.substr(blank + 1) == event;
    if (is_wanted) found.push_back(line.event.substr(0, blank + 1) + line.bytes);
  }
  return found;
}

// All bytes that one kind of event carried.
std::string BytesOf(const std::vector<TraceLine>& lines, const std::string& program,
                    const std::string& event) {
  std::string bytes;
  for (const std::string& each : Events(lines, program, event)) {
    bytes += each.substr(each.find(' ') + 1);
  }
  return bytes;
}

// A printer and a worker that both write a trace.
class Trace : public testing::Test {
 protected:
  void Start(const std::string& device, Link link, const std::vector<std::string>& faults = {}) {
    std::vector<std::string> options{"--trace"};
    for (const std::string& fault : faults) options.insert(options.end(), {"--fault", fault});
    folder_ = std::make_unique<WorkerFolder>(std::vector<ListedPrinter>{});
    printer_ = std::make_unique<VirtualPrinter>(device, options, link, folder_->path() / "printer");
    folder_->List({{"Studio", device, printer_->Uri(link == Link::kLocal ? "" : "timeout=300")}});
    worker_.reset(new Process(folder_->Start(kTraced)));
    Ask(*worker_, kList);
    device_ = device;
  }

  std::string Send(const std::string& command, const std::string& parameter) {
    return Ask(*worker_, Request(command, "Studio", device_, parameter));
  }

  std::string WorkersTrace() const { return ReadFile(folder_->path() / "trace"); }
  std::string PrintersTrace() const { return ReadFile(folder_->path() / "printer"); }

  std::string device_;
  std::unique_ptr<WorkerFolder> folder_;
  std::unique_ptr<VirtualPrinter> printer_;
  std::unique_ptr<Process> worker_;
};

// Whatever a command travels over, both sides tell of the same bytes.
TEST_F(Trace, AgreesWithThatOfThePrinter) {
  const struct {
    const char* device;
    Link link;
    const char* write;
  } kCases[] = {
      {kDevice, Link::kNetwork,
       R"({"CustomMediaNo":3,"CommandVersion":0,"CustomMediaName":"Roll \"B\"","PlatenGap":"2.5"})"},
      {kDevice, Link::kLocal, R"({"CustomMediaNo":3,"CommandVersion":1,"MediaSuction":4})"},
      {"QM-T84 Series", Link::kNetwork, nullptr},
  };
  for (const auto& row : kCases) {
    Start(row.device, row.link);
    const std::string block =
        R"({"CustomMediaNo":3,"CommandVersion":128,"SettingAll":")" + std::string(448, '7') + "\"}";
    const std::string write = row.write == nullptr ? block : row.write;
    EXPECT_EQ(Send("SetCustomMediaInfo", write), R"({"SetCustomMediaInfo":0})");
    Send("GetCustomMediaName", R"({"CustomMediaNo":3})");
    Send("GetStatusReply", R"(["StatusCode"])");
    const auto workers = Lines(WorkersTrace());
    const auto printers = Lines(PrintersTrace());

    // The printer's own words for its status are no command on SNMP, and one on a local port.
    auto sent = Events(workers, "worker", "command");
    auto taken = Events(printers, "printer", "command");
    ASSERT_EQ(sent.size(), 5U) << WorkersTrace();
    ASSERT_EQ(taken.size(), 5U) << PrintersTrace();
    sent.pop_back();
    taken.pop_back();
    EXPECT_EQ(sent, taken);
    const auto told = Events(printers, "printer", "reply");
    for (const std::string& reply : Events(workers, "worker", "reply")) {
      EXPECT_THAT(told, testing::Contains(reply));
    }
    if (row.link == Link::kNetwork) {
      EXPECT_EQ(Events(workers, "driver", "send"), Events(printers, "printer", "recv"));
    }
    // What a device sends comes in pieces of any length, also what nobody reads.
    EXPECT_EQ(BytesOf(workers, "driver", "recv"), BytesOf(printers, "printer", "send"));
  }
}

TEST_F(Trace, NamesFieldsAsTheHostDoes) {
  Start(kDevice, Link::kNetwork);
  Send("SetCustomMediaInfo",
       R"({"CustomMediaNo":3,"CommandVersion":0,"CustomMediaName":"Roll","PlatenGap":"2.5",)"
       R"("MediaTension":-5,"AfterHeater":"Off"})");
  const std::string trace = WorkersTrace();
  EXPECT_THAT(trace, HasSubstr("write-record name=EX length=28 format=000000001B DeviceID=55 "
                               "CustomMediaNo=3 CommandVersion=0 PlatenGap=2.5 AfterHeater=Off "
                               "MediaTension=-5 CustomMediaName=\"Roll\"\n"));
  EXPECT_THAT(trace, ContainsRegex("reply 4558[0-9A-F]+ read-record DeviceID=55 .* PlatenGap=2.5 "
                                   ".* AfterHeater=Off .* CustomMediaName=\"Roll\"\n"));
  EXPECT_THAT(trace, HasSubstr(" save name=SV length=0\n"));
}

// Faults of the printer: what the driver tells of them, try by try.
TEST_F(Trace, TellsOfTries) {
  const struct {
    const char* fault;
    const char* lines;
  } kCases[] = {
      {"drop=1",
       R"(snmp send \S+ try=1/4 to=127\.0\.0\.1:\d+\n.* snmp timeout - try=1/4 ms=3\d\d\.\d+\n)"
       R"(.* snmp send \S+ try=2/4 .*\n.* snmp recv \S+ try=2/4 ms=\d+\.\d+ error-status=0 value=")"},
      {"wrong-id=1", R"(snmp ignored 30\S+ try=1/4 ms=\d+\.\d+ another request-id\n)"},
      {"wrong-oid=1", R"(snmp ignored 30\S+ try=1/4 ms=\d+\.\d+ another object identifier\n)"},
      {"truncate=20", R"(snmp ignored 30\S+ try=1/4 ms=\d+\.\d+ no SNMP message\n)"},
      {"oversize", R"(worker\[\d+\] snmp failed - the answer is longer than the worker takes\n)"},
      {"na", R"(worker\[\d+\] snmp reply 45583A30303030303031424E413B read-record refused)"},
  };
  for (const auto& row : kCases) {
    Start(kDevice, Link::kNetwork, {row.fault});
    Send("GetCustomMediaInfo", R"({"CustomMediaNo":3,"CommandVersion":0})");
    const std::string trace = WorkersTrace();
    EXPECT_TRUE(std::regex_search(trace, std::regex(row.lines))) << row.fault << '\n' << trace;
  }
}

// Whom a search asked, what was told, and why that is not listed.
TEST(TraceOfSearches, SaysWhyAPrinterIsMissing) {
  const VirtualPrinter printer(kDevice, {"--fault", "lack=hrDeviceDescr"});
  const std::string uri = printer.Uri();
  const std::string port = uri.substr(uri.find("snmp=") + 5);
  const WorkerFolder folder({});
  std::ofstream(folder.path() / "SupportPrinterList.xml")
      << R"(<plist version="1.0"><dict><key>SupportedPrinters</key><array><string>QM-T84 Series)"
      << "</string></array><key>Discovery</key><dict><key>Network</key><true/>"
      << "<key>Addresses</key><array><string>127.0.0.1:" << port
      << "</string></array></dict></dict></plist>";
  const Process worker = folder.Start(kTraced);
  EXPECT_EQ(Ask(worker, kList), R"({"GetPrinterList":0})");
  const std::string trace = ReadFile(folder.path() / "trace");
  EXPECT_EQ(Lines(trace).size(),
            static_cast<std::size_t>(std::count(trace.begin(), trace.end(), '\n')));
  const std::string reason = R"(ZIOP: network: left out: SupportedPrinters lacks "QM-R410 Series")";
  for (const std::string& line : {
           "network search - Network=yes CUPS=no USB=no TimeoutMilliseconds=3000 "
           "Address=\"127.0.0.1:" +
               port + "\"",
           "snmp send 30[0-9A-F]+ to=127.0.0.1:" + port + " object=sysDescr.0",
           "snmp recv 30[0-9A-F]+ from=127.0.0.1:" + port +
               " object=hrDeviceDescr.1 error-status=2",
           "snmp recv 30[0-9A-F]+ from=127.0.0.1:" + port +
               " object=sysDescr.0 error-status=0 value=\"QM-R410 Series\"",
           "network found - uri=\"socket://127.0.0.1[?]snmp=" + port + "\" serial=",
           "host report - " + reason,
       }) {
    EXPECT_THAT(trace, ContainsRegex("driver[[][0-9]+[]] " + line));
  }
  EXPECT_EQ(folder.Errors(), reason + '\n');
}

// The words that the host's protocol has for a result code.
std::string Meaning(int code) {
  const std::string page = Document("protocol.md");
  std::smatch row;
  const std::regex form("\\| " + std::to_string(code) + " \\| (.+) \\|");
  EXPECT_TRUE(std::regex_search(page, row, form)) << code;
  return row[1];
}

TEST(TraceOfFailures, NamesTheSystemCallAndTheMeaningOfTheCode) {
  const struct {
    const char* uri;
    const char* printer;
    const char* lines;
    int code;
  } kCases[] = {
      {"socket://127.0.0.1:1?snmp=1&timeout=20&retries=0", "Studio",
       R"(driver\[\d+\] snmp failed - recv: Connection refused \(error 111\)\n)", -6},
      {"socket://127.0.0.1:1?snmp=1&timeout=20&retries=0", "Nobody",
       R"(worker\[\d+\] host failed - no printer "Nobody" in the list of the last search\n)", -4},
      {"file:///nowhere/lp0", "Studio",
       R"(local failed - code=-3 .*: stat /nowhere/lp0: No such file or directory \(error 2\)\n)",
       -4},
  };
  for (const auto& row : kCases) {
    const WorkerFolder folder({{"Studio", kDevice, row.uri}});
    const Process worker = folder.Start(kTraced);
    Ask(worker, kList);
    Ask(worker, Request("GetCustomMediaInfo", row.printer, kDevice,
                        R"({"CustomMediaNo":3,"CommandVersion":0})"));
    const std::string trace = ReadFile(folder.path() / "trace");
    EXPECT_TRUE(std::regex_search(trace, std::regex(row.lines))) << trace;
    EXPECT_THAT(trace, ContainsRegex("host result - code=" + std::to_string(row.code) +
                                     " ms=[0-9.]+ " + Meaning(row.code) + "\n"));
  }
}

TEST(TraceOfFailures, TellsWhatEndsTheWorker) {
  const WorkerFolder folder({{"Studio", kDevice, "socket://127.0.0.1:1?snmp=1"}});
  const Process worker = folder.Start(kTraced);
  Ask(worker, kList);
  worker.Write(Line(Request("GetCustomMediaInfo", "Studio", kDevice,
                            R"({"CustomMediaNo":3,"CommandVersion":5})")));
  worker.ReadAll();
  EXPECT_THAT(ReadFile(folder.path() / "trace"),
              ContainsRegex("host report - assertion .+ failed in .+\n$"));
}

// Standard output is the host's, whatever becomes of the trace.
TEST(TraceFile, CostsOneLineWhenItCannotBeHad) {
  const VirtualPrinter printer(kDevice);
  const WorkerFolder folder({{"Studio", kDevice, printer.Uri()}});
  const std::string request =
      Line(kList) + Line(Request("GetStatusReply", "Studio", kDevice, R"(["StatusCode"])"));
  const auto run = [&](const std::string& trace) {
    fs::remove(folder.path() / "errors");
    const auto worker = folder.Start("PRINTER_TRACE=" + trace + " exec \"$0\"");
    worker.Write(request);
    return worker.ReadAll();
  };
  const std::string answers = folder.Run(request).output;
  EXPECT_THAT(answers, HasSubstr(R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})"));
  EXPECT_EQ(folder.Errors(), "");

  EXPECT_EQ(run("/nowhere/trace"), answers);
  EXPECT_EQ(folder.Errors(),
            "PrinterNativeProcess: no trace: open /nowhere/trace: No such file or directory "
            "(error 2)\n");
  EXPECT_EQ(run("-"), answers);
  EXPECT_EQ(Events(Lines(folder.Errors()), "worker", "result").size(), 2U);
}

TEST(TraceFile, TakesTheLinesOfManyWorkers) {
  constexpr std::size_t kWorkers = 4;
  constexpr std::size_t kRequests = 40;
  const VirtualPrinter printer(kDevice);
  const WorkerFolder folder({{"Studio", kDevice, printer.Uri()}});
  folder.Run(Line(kList));
  std::vector<std::unique_ptr<Process>> workers;
  for (std::size_t i = 0; i < kWorkers; ++i) {
    workers.emplace_back(new Process(folder.Start(kTraced)));
  }
  const std::string line = Line(Request("GetCustomMediaInfo", "Studio", kDevice,
                                        R"({"CustomMediaNo":3,"CommandVersion":0})"));
  for (std::size_t i = 0; i < kRequests; ++i) {
    for (const auto& worker : workers) worker->Write(line);
  }
  for (const auto& worker : workers) worker->ReadAll();
  const auto lines = Lines(ReadFile(folder.path() / "trace"));
  EXPECT_EQ(Events(lines, "worker", "result").size(), kWorkers * kRequests);
  EXPECT_EQ(Events(lines, "driver", "send").size(), kWorkers * kRequests);
}

}  // namespace

// Ends of the worker that come from outside: signals, and streams that the host has closed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <string>

#include "tests/end_to_end/Rig.h"
#include "tests/port_driver/LocalPeer.h"
#include "tests/port_driver/Peer.h"

namespace {

using std::string_literals::operator""s;  // NOLINT(misc-unused-using-decls)
using testing::ContainsRegex;
using ZIOP::Peer;

constexpr char kDevice[] = "QM-R410 Series";
const std::string kAskStatus = Line(Request("GetStatusReply", "p", kDevice, R"(["StatusCode"])"));

// A printer in the test's hands, listed on the network and at a local port, for which a worker
// waits a minute.
struct SilentPrinter {
  SilentPrinter() { folder.Run(Line(kList)); }

  Peer snmp{SOCK_DGRAM};
  Peer raw{SOCK_STREAM};
  ZIOP::LocalPeer device;
  Ravik::FileDescriptor kept{open(device.path().c_str(), O_RDWR | O_NOCTTY)};  // between workers
  WorkerFolder folder{{{"local", kDevice, device.Uri(60000)},
                       {"p", kDevice,
                        "socket://127.0.0.1:" + std::to_string(raw.port()) +
                            "?snmp=" + std::to_string(snmp.port()) + "&timeout=60000&retries=0"}}};
};

// Ends the worker by the signal, which must not take as long as the printer may.
void ExpectEnd(Process& worker, int signal) {
  const auto start = std::chrono::steady_clock::now();
  const int status = worker.Wait(signal);
  EXPECT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), signal);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(Signal, EndsTheWorkerWhileItWaits) {
  SilentPrinter printer;
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    Process idle = printer.folder.Start();
    Ask(idle, kList);
    ExpectEnd(idle, signal);
    Process asking = printer.folder.Start();
    asking.Write(kAskStatus);
    EXPECT_NE(printer.snmp.Receive(), "");
    ExpectEnd(asking, signal);
    EXPECT_EQ(asking.ReadAll(), "");
    Process reading = printer.folder.Start();
    reading.Write(Line(Request("GetStatusReply", "local", kDevice, "[]")));
    EXPECT_EQ(ZIOP::ReadAll(printer.device.side(), 24).size(), 24U);
    ExpectEnd(reading, signal);
  }
}

TEST(Signal, LeavesAWriteWholeOnTheRawConnection) {
  const SilentPrinter printer;
  Process worker = printer.folder.Start();
  worker.Write(Line(Request("SetCustomMediaInfo", "p", kDevice,
                            R"({"CustomMediaNo":1,"CommandVersion":128,"SettingAll":")" +
                                std::string(448, '7') + "\"}")));
  const ZIOP::FileDescriptor connection = printer.raw.Accept();
  EXPECT_NE(ZIOP::ReadAll(connection), "");
  ExpectEnd(worker, SIGTERM);  // which waits for the printer's end of the connection
  int error = 0;
  socklen_t length = sizeof error;
  EXPECT_EQ(getsockopt(connection.get(), SOL_SOCKET, SO_ERROR, &error, &length), 0);
  EXPECT_EQ(error, 0) << "a reset, which makes a printer drop what it has not worked off";
}

TEST(Signal, StaysIgnored) {
  SilentPrinter printer;
  Process worker = printer.folder.Start("trap '' HUP; exec \"$0\"");
  worker.Write(kAskStatus);
  const std::string request = printer.snmp.Receive();
  worker.Signal(SIGHUP);
  printer.snmp.Send(ZIOP::SnmpAnswer(request, ZIOP::Element(0x04, "\r\n\3\0\1\1\4"s)));
  EXPECT_EQ(worker.ReadUntil("}}"), R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})");
  ExpectEnd(worker, SIGTERM);
}

TEST(Stream, InputMayEndBeforeTheLastAnswerAndItsLine) {
  VirtualPrinter printer(kDevice, {"--fault", "delay=300"});
  const WorkerFolder folder({{"p", kDevice, printer.Uri()}});
  const Outcome outcome = folder.Run(Line(kList) + kAskStatus.substr(0, kAskStatus.size() - 1));
  EXPECT_THAT(outcome.output,
              testing::EndsWith(R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})"));
  EXPECT_EQ(outcome.status, 0);
}

// The answer to the first request is lost, so that the second, a write, is not to be done.
TEST(Stream, NothingIsDoneWhenNoAnswerCanBeGiven) {
  VirtualPrinter printer(kDevice);
  const WorkerFolder folder({{"p", kDevice, printer.Uri()}});
  const std::string write =
      Line(Request("SetCustomMediaInfo", "p", kDevice,
                   R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":9})"));
  const std::string read = Line(
      Request("GetCustomMediaInfo", "p", kDevice, R"({"CustomMediaNo":1,"CommandVersion":0})"));
  const std::string kWritten = "\"MediaSuction\":9";
  const struct {
    const char* shell;
    bool closes_output;
    int signal;          // that ends the worker, or 0 for exit status 1
    const char* errors;  // a regular expression
  } kCases[] = {
      {"exec \"$0\"", true, SIGPIPE, "^$"},
      {"trap '' PIPE; exec \"$0\"", true, 0, "^$"},
      {"exec \"$0\" >/dev/full", false, 0, "^[^\n]*No space left[^\n]*\n$"},
      {"exec \"$0\" 2>&1 >/dev/full", true, 0, "^$"},
      {"exec \"$0\" >&-", false, 0, "^[^\n]*Bad file descriptor[^\n]*\n$"},
      {"exec \"$0\" <&-", false, 0, "^$"},
      {"exec \"$0\" >&- 2>&-", false, 0, "^$"},
  };
  for (const auto& c : kCases) {
    std::filesystem::remove(folder.path() / "errors");
    Process worker = folder.Start(c.shell);
    if (c.closes_output) worker.CloseOutput();
    worker.Write(Line(kList) + write);
    EXPECT_EQ(worker.ReadAll(), "") << c.shell;
    const int status = worker.Wait();
    EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, c.signal) << c.shell;
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : 1, 1) << c.shell;
    EXPECT_THAT(folder.Errors(), ContainsRegex(c.errors)) << c.shell;
    const std::string record = folder.Run(Line(kList) + read).output;
    EXPECT_THAT(record, testing::Not(testing::HasSubstr(kWritten))) << c.shell;
  }
  const Process mute = folder.Start("exec \"$0\" 2>&-");
  mute.Write(Line(kList) + write + read);
  EXPECT_THAT(mute.ReadAll(), testing::HasSubstr(kWritten)) << "closed standard error is no matter";
}

// Closed descriptors would be those of the port, and a report of the worker's a datagram.
TEST(Stream, ReportsDoNotGoToThePrinter) {
  SilentPrinter printer;
  Process failing = printer.folder.Start("exec \"$0\" >&- 2>&-");
  failing.Write(Line(
      Request("SetCustomMediaInfo", "p", kDevice, R"({"CommandVersion":128,"SettingAll":"ABC"})")));
  EXPECT_EQ(WTERMSIG(failing.Wait()), SIGABRT);
  const Process asking = printer.folder.Start();
  asking.Write(kAskStatus);
  EXPECT_EQ(printer.snmp.Receive().substr(0, 1), "\x30") << "the first datagram is a request";
}

}  // namespace

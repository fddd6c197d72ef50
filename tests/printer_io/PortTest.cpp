// One printer port: what it hands to the plug-in and what it takes from it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "printer_io/CZIOCommon.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using fake_plugin::script;
using fake_plugin::TakeCalls;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class PortTest : public testing::Test {
 protected:
  ~PortTest() override { EXPECT_EQ(fake_plugin::LiveObjects(), 0); }

  // An open port whose start is not in the log.
  std::unique_ptr<CZIOCommon> OpenPort(int type) {
    auto port = std::make_unique<CZIOCommon>(fake_plugin::MakeData("abc").get(),
                                             fake_plugin::MakeNumber(type).get());
    EXPECT_EQ(port->OpenPrinterPort(), 0);
    TakeCalls();
    return port;
  }

  // Exchanges "XY" for a reply in a buffer that is exactly as long as its capacity.
  int Exchange(CZIOCommon& port, long capacity = 512) {
    std::string command = "XY";
    reply_.assign(static_cast<std::size_t>(capacity), '.');
    reply_.shrink_to_fit();
    return port.SendWriteAndReadCommand(command.data(), 2, reply_.data(), capacity);
  }

  std::string ReplyText() const { return {reply_.begin(), reply_.end()}; }

  fake_plugin::Session plugin_;
  std::vector<char> reply_;
};

TEST_F(PortTest, OpensAndClosesOnce) {
  {
    CZIOCommon port(fake_plugin::MakeData("abc").get(), fake_plugin::MakeNumber(1).get());
    port.ClosePrinterPort();
    script().results["open"] = -7;
    EXPECT_EQ(port.OpenPrinterPort(), -1) << "codes of open become -1";
    port.ClosePrinterPort();
    script().results.clear();
    EXPECT_EQ(port.OpenPrinterPort(), 0);
    port.ClosePrinterPort();
    port.ClosePrinterPort();
    EXPECT_EQ(port.OpenPrinterPort(), 0);
    EXPECT_EQ(fake_plugin::LastContext(), &port);
  }
  EXPECT_THAT(TakeCalls(), ElementsAre("factory", "AddRef", "QueryInterface port", "Release",
                                       "initialise 2 616263", "open", "open", "close", "open",
                                       "close", "terminate", "release", "Release"));
}

TEST_F(PortTest, FailsWithoutPortInformationOrType) {
  const auto data = fake_plugin::MakeData("abc");
  const auto tcpip = fake_plugin::MakeNumber(4);
  char bytes[600] = {};
  for (const bool has_type : {false, true}) {
    CZIOCommon port(has_type ? nullptr : data.get(), has_type ? tcpip.get() : nullptr);
    EXPECT_EQ(port.IsTCPIPConnection(), has_type ? 1 : 0);
    EXPECT_EQ(port.OpenPrinterPort(), -1);
    EXPECT_EQ(port.GetStatus(bytes), -1);
    EXPECT_EQ(port.SendWriteCommand(bytes, 1, 0), -1);
    EXPECT_EQ(port.SendWriteCommand(bytes, 1, 1), -1);
    EXPECT_EQ(port.SendWriteAndReadCommand(bytes, 1, bytes, 1), -1);
    EXPECT_EQ(port.SendReadCommand(bytes, 1), -1);
    EXPECT_EQ(port.D4_SendWriteAndReadCommand(bytes, 1, bytes, 1), -1);
    port.ClosePrinterPort();
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(PortTest, LocalPortWritesFlushesAndReads) {
  struct Case {
    std::string fails;
    std::vector<std::string> calls;
  };
  const Case cases[] = {
      {"write", {"write 5859"}},
      {"flush", {"write 5859", "flush 0"}},
      {"read", {"write 5859", "flush 0", "read 512"}},
      {"", {"write 5859", "flush 0", "read 512"}},
  };
  const auto port = OpenPort(1);
  for (const Case& c : cases) {
    script().results = {{c.fails, -33}};
    script().replies = {"answer"};
    EXPECT_EQ(Exchange(*port), c.fails.empty() ? 0 : -1) << c.fails;
    EXPECT_EQ(TakeCalls(), c.calls);
  }
  EXPECT_THAT(ReplyText(), StartsWith("answer."));

  char bytes[] = "XY";
  EXPECT_EQ(port->SendWriteCommand(bytes, 2, 1), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("write 5859", "flush 0")) << "no SNMP on a local port";
}

TEST_F(PortTest, NetworkPortSendsOneRequest) {
  const auto port = OpenPort(4);
  char request[512] = {};
  long length = 0;
  ASSERT_EQ(CZIOCommon::CreateSNMPCommand("XY", 2, request, &length), 0);
  std::string sent;
  script().responder = [&sent](const std::string& bytes) {
    sent = bytes;
    return std::string("answer");
  };
  EXPECT_EQ(Exchange(*port), 0);
  EXPECT_EQ(sent, std::string(request, static_cast<std::size_t>(length)));
  EXPECT_THAT(ReplyText(), StartsWith("answer."));

  char bytes[] = "XY";
  EXPECT_EQ(port->SendWriteCommand(bytes, 2, 1), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre(StartsWith("ioctl 6 30"), StartsWith("ioctl 6 30")));
  script().replies = {std::string(513, 'x')};
  EXPECT_EQ(port->SendWriteCommand(bytes, 2, 1), -50) << "also an answer that is dropped";
  script().results["ioctl"] = -1234;
  EXPECT_EQ(Exchange(*port), -1234);
  EXPECT_EQ(port->SendWriteCommand(bytes, 2, 1), -1234);
  TakeCalls();

  EXPECT_EQ(port->SendWriteCommand(bytes, 2, 0), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("write 5859", "flush 0")) << "the spooler's way";

  std::string long_command(500, 'x');
  EXPECT_EQ(port->SendWriteCommand(long_command.data(), 500, 1), -1);
  EXPECT_THAT(TakeCalls(), IsEmpty()) << "refused before anything is sent";
}

// What a plug-in may make of the exchange block, and what is taken of it.
TEST_F(PortTest, BoundsTheAnswerOfTheExchange) {
  static std::vector<char> own(600, 'o');  // the plug-in's own buffer
  struct Case {
    const char* name;
    long capacity;
    void (*change)(ZIOSnmpExchange&);
    int result;
    std::size_t copied;
  };
  const Case cases[] = {
      {"nothing", 512, [](ZIOSnmpExchange& b) { b.answerLength = 0; }, 0, 0},
      {"null, nothing", 512,
       [](ZIOSnmpExchange& b) {
         b = {nullptr, 0, nullptr, 0};
       },
       0, 0},
      {"null with a length", 512, [](ZIOSnmpExchange& b) { b.answer = nullptr; }, -1, 0},
      {"negative length", 512, [](ZIOSnmpExchange& b) { b.answerLength = -1; }, -1, 0},
      {"most negative length", 512, [](ZIOSnmpExchange& b) { b.answerLength = INT64_MIN; }, -1, 0},
      {"full", 512,
       [](ZIOSnmpExchange& b) {
         b.answer = own.data();
         b.answerLength = 512;
       },
       0, 512},
      {"one too many", 512,
       [](ZIOSnmpExchange& b) {
         b.answer = own.data();
         b.answerLength = 513;
       },
       -50, 0},
      {"far too many", 512, [](ZIOSnmpExchange& b) { b.answerLength = INT64_MAX; }, -50, 0},
      {"more than a small capacity", 2, [](ZIOSnmpExchange& b) { b.answerLength = 3; }, -50, 0},
      {"more than the port's own buffer", 600, [](ZIOSnmpExchange& b) { b.answerLength = 513; }, -1,
       0},
      {"across its end", 512,
       [](ZIOSnmpExchange& b) {
         b.answer += 500;
         b.answerLength = 13;
       },
       -1, 0},
      {"up to its end", 512,
       [](ZIOSnmpExchange& b) {
         b.answer += 500;
         b.answerLength = 12;
       },
       0, 12},
      {"more in the plug-in's buffer", 600,
       [](ZIOSnmpExchange& b) {
         b.answer = own.data();
         b.answerLength = 600;
       },
       0, 600},
  };
  const auto port = OpenPort(4);
  script().responder = [](const std::string&) { return std::string(512, 'o'); };
  for (const Case& c : cases) {
    script().on_exchange = c.change;
    EXPECT_EQ(Exchange(*port, c.capacity), c.result) << c.name;
    const auto copied = std::count(reply_.begin(), reply_.end(), 'o');
    EXPECT_EQ(static_cast<std::size_t>(copied), c.copied) << c.name;
  }
}

TEST_F(PortTest, ControlAndStatusPassThroughOnEveryType) {
  for (const int type : {1, 4}) {
    const auto port = OpenPort(type);
    char command[] = "D4";
    char reply[8] = {};
    script().replies = {"ok"};
    script().results.clear();
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(command, 2, reply, 8), 0);
    EXPECT_STREQ(reply, "ok");
    char status[ZIO_STATUS_BUFFER_SIZE] = {};
    script().status = "ready";
    EXPECT_EQ(port->GetStatus(status), 0);
    EXPECT_STREQ(status, "ready");
    script().results = {{"control", -77}, {"status", 3}, {"read", -5}};
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(command, 2, reply, 8), -77);
    EXPECT_EQ(port->GetStatus(status), 3);
    EXPECT_EQ(port->SendReadCommand(reply, 8), -1);
    EXPECT_THAT(TakeCalls(),
                ElementsAre("control 4434 8", "status", "control 4434 8", "status", "read 8"));
  }
}

TEST_F(PortTest, RefusesLengthsThatCannotBe) {
  char bytes[8] = {};
  for (const int type : {1, 4}) {
    const auto port = OpenPort(type);
    EXPECT_EQ(port->SendWriteCommand(bytes, -1, 0), -1);
    EXPECT_EQ(port->SendWriteCommand(nullptr, 1, 1), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes, -1, bytes, 8), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes, 8, bytes, -1), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes, 8, nullptr, 8), -1);
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(nullptr, 8, bytes, 8), -1);
    EXPECT_EQ(port->SendReadCommand(nullptr, 8), -1);
    EXPECT_EQ(port->GetStatus(nullptr), -1);
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_EQ(port->SendWriteCommand(nullptr, 0, 0), 0) << "no bytes are a write all the same";
  }
}

TEST_F(PortTest, ErrorCallbackAnswersMinusOne) {
  script().error_in = "status";
  char status[ZIO_STATUS_BUFFER_SIZE] = {};
  const auto port = OpenPort(1);
  EXPECT_EQ(port->GetStatus(status), 0);
  EXPECT_THAT(TakeCalls(), ElementsAre("status", "callback -1"));
}

}  // namespace

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
using fake_plugin::TakeLog;
using testing::StartsWith;

class PortTest : public testing::Test {
 protected:
  ~PortTest() override { EXPECT_EQ(fake_plugin::LiveObjects(), 0); }

  // An open port whose start is not in the log.
  static std::unique_ptr<CZIOCommon> OpenPort(int type) {
    auto port = std::make_unique<CZIOCommon>(fake_plugin::MakeData("abc").get(),
                                             fake_plugin::MakeNumber(type).get());
    EXPECT_EQ(port->OpenPrinterPort(), 0);
    TakeLog();
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
  char bytes_[8] = "XY";
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
  EXPECT_EQ(TakeLog(),
            "factory, AddRef, QueryInterface port, Release, initialise 2 616263, open, open, "
            "close, open, close, terminate, release, Release");
}

TEST_F(PortTest, FailsWithoutPortInformationOrType) {
  const auto tcpip = fake_plugin::MakeNumber(4);
  for (const CFNumberRef type : {static_cast<CFNumberRef>(nullptr), tcpip.get()}) {
    const auto data = type == nullptr ? fake_plugin::MakeData("abc") : CFRef<CFDataRef>();
    CZIOCommon port(data.get(), type);
    EXPECT_EQ(port.IsTCPIPConnection(), type == nullptr ? 0 : 1);
    EXPECT_EQ(port.OpenPrinterPort(), -1);
    EXPECT_EQ(port.GetStatus(bytes_), -1);
    EXPECT_EQ(port.SendWriteCommand(bytes_, 2, 1), -1);
    EXPECT_EQ(Exchange(port), -1);
    EXPECT_EQ(port.SendReadCommand(bytes_, 2), -1);
    EXPECT_EQ(port.D4_SendWriteAndReadCommand(bytes_, 2, bytes_, 2), -1);
    port.ClosePrinterPort();
  }
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(PortTest, LocalPortWritesFlushesAndReads) {
  struct Case {
    std::string fails;
    std::string log;
  };
  const Case cases[] = {
      {"write", "write 5859"},
      {"flush", "write 5859, flush 0"},
      {"read", "write 5859, flush 0, read 512"},
      {"", "write 5859, flush 0, read 512"},
  };
  const auto port = OpenPort(1);
  for (const Case& c : cases) {
    script().results = {{c.fails, -33}};
    script().replies = {"answer"};
    EXPECT_EQ(Exchange(*port), c.fails.empty() ? 0 : -1) << c.fails;
    EXPECT_EQ(TakeLog(), c.log);
  }
  EXPECT_THAT(ReplyText(), StartsWith("answer."));
  EXPECT_EQ(port->SendWriteCommand(bytes_, 2, 1), 0);
  EXPECT_EQ(TakeLog(), "write 5859, flush 0") << "no SNMP on a local port";
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
  EXPECT_EQ(fake_plugin::TakeCalls().size(), 1U);

  EXPECT_EQ(port->SendWriteCommand(bytes_, 2, 0), 0);
  EXPECT_EQ(TakeLog(), "write 5859, flush 0") << "the spooler's way";
  EXPECT_EQ(port->SendWriteCommand(bytes_, 2, 1), 0);
  EXPECT_THAT(TakeLog(), StartsWith("ioctl 6 30"));
  script().replies = {std::string(513, 'x')};
  EXPECT_EQ(port->SendWriteCommand(bytes_, 2, 1), -50) << "also an answer that is dropped";
  script().results["ioctl"] = -1234;
  EXPECT_EQ(Exchange(*port), -1234);
  TakeLog();
  std::string too_long(500, 'x');
  EXPECT_EQ(port->SendWriteCommand(too_long.data(), 500, 1), -1);
  EXPECT_EQ(TakeLog(), "") << "refused before anything is sent";
}

// What a plug-in may make of the exchange block, and what is taken of it.
TEST_F(PortTest, BoundsTheAnswerOfTheExchange) {
  using Block = ZIOSnmpExchange;
  static std::string own(600, 'o');  // the plug-in's own buffer
  struct Case {
    const char* name;
    long capacity;
    int result;
    std::ptrdiff_t copied;
    void (*change)(Block&);
  };
  const Case cases[] = {
      {"nothing", 512, 0, 0, [](Block& b) { b.answerLength = 0; }},
      {"null, nothing", 512, 0, 0,
       [](Block& b) {
         b = {nullptr, 0, nullptr, 0};
       }},
      {"null with a length", 512, -1, 0, [](Block& b) { b.answer = nullptr; }},
      {"negative", 512, -1, 0, [](Block& b) { b.answerLength = -1; }},
      {"most negative", 512, -1, 0, [](Block& b) { b.answerLength = INT64_MIN; }},
      {"far too many", 512, -50, 0, [](Block& b) { b.answerLength = INT64_MAX; }},
      {"more than a small capacity", 2, -50, 0, [](Block& b) { b.answerLength = 3; }},
      {"as many", 512, 0, 512,
       [](Block& b) {
         b = {nullptr, 0, own.data(), 512};
       }},
      {"one too many", 512, -50, 0,
       [](Block& b) {
         b = {nullptr, 0, own.data(), 513};
       }},
      {"many elsewhere", 600, 0, 600,
       [](Block& b) {
         b = {nullptr, 0, own.data(), 600};
       }},
      {"past the port's buffer", 600, -1, 0, [](Block& b) { b.answerLength = 513; }},
      {"across its end", 512, -1, 0,
       [](Block& b) {
         b = {nullptr, 0, b.answer + 500, 13};
       }},
      {"up to its end", 512, 0, 12,
       [](Block& b) {
         b = {nullptr, 0, b.answer + 500, 12};
       }},
  };
  const auto port = OpenPort(4);
  script().responder = [](const std::string&) { return std::string(512, 'o'); };
  for (const Case& c : cases) {
    script().on_exchange = c.change;
    EXPECT_EQ(Exchange(*port, c.capacity), c.result) << c.name;
    EXPECT_EQ(std::count(reply_.begin(), reply_.end(), 'o'), c.copied) << c.name;
  }
}

TEST_F(PortTest, PassesControlAndStatusThroughOnEveryType) {
  for (const int type : {1, 4}) {
    const auto port = OpenPort(type);
    char reply[8] = {};
    char status[ZIO_STATUS_BUFFER_SIZE] = {};
    script() = {};
    script().replies = {"ok"};
    script().status = "ready";
    script().error_in = "status";
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(bytes_, 2, reply, 8), 0);
    EXPECT_EQ(port->GetStatus(status), 0);
    EXPECT_STREQ(reply, "ok");
    EXPECT_STREQ(status, "ready");
    EXPECT_EQ(TakeLog(), "control 5859 8, status, callback -1");
    script().results = {{"control", -77}, {"status", 3}, {"read", -5}};
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(bytes_, 2, reply, 8), -77);
    EXPECT_EQ(port->GetStatus(status), 3);
    EXPECT_EQ(port->SendReadCommand(reply, 8), -1);
  }
}

TEST_F(PortTest, RefusesLengthsThatCannotBe) {
  for (const int type : {1, 4}) {
    const auto port = OpenPort(type);
    EXPECT_EQ(port->SendWriteCommand(bytes_, -1, 0), -1);
    EXPECT_EQ(port->SendWriteCommand(nullptr, 1, 1), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes_, -1, bytes_, 8), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes_, 8, bytes_, -1), -1);
    EXPECT_EQ(port->SendWriteAndReadCommand(bytes_, 8, nullptr, 8), -1);
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(nullptr, 8, bytes_, 8), -1);
    EXPECT_EQ(port->SendReadCommand(nullptr, 8), -1);
    EXPECT_EQ(port->GetStatus(nullptr), -1);
    EXPECT_EQ(TakeLog(), "");
    EXPECT_EQ(port->SendWriteCommand(nullptr, 0, 0), 0) << "no bytes are a write all the same";
  }
}

}  // namespace

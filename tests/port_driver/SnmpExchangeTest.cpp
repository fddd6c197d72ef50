// The exchange of SNMP messages with a printer that answers well, badly, late or not at all.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <time.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "port_driver/DriverError.h"
#include "port_driver/NetworkPort.h"
#include "tests/port_driver/Peers.h"
#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

NetworkPort MakePort(uint16_t port, const char* options, const std::string& host = "127.0.0.1") {
  return NetworkPort(
      DeviceURI::Parse("socket://" + host + "?snmp=" + std::to_string(port) + "&" + options));
}

// The answer, or the failure's code as a text.
std::string Exchange(NetworkPort& port, const std::string& request = SampleRequest()) {
  try {
    return std::string(port.ExchangeSnmp(request));
  } catch (const DriverError& error) {
    return "code " + std::to_string(static_cast<int>(error.code()));
  }
}

std::string Failure(DriverCode code) {
  return "code " + std::to_string(static_cast<int>(code));
}

SnmpSample Changed(void (*change)(SnmpSample&)) {
  SnmpSample sample;
  change(sample);
  return sample;
}

TEST(SnmpExchangeTest, PassesOverWhatIsNoAnswer) {
  const std::string right = SnmpSample().Bytes();
  const struct {
    const char* what;
    std::string datagram;
  } kRows[] = {
      {"empty", ""},
      {"one byte", "\x30"},
      {"another request-id", Changed([](SnmpSample& s) { s.id = "\x03"; }).Bytes()},
      {"another name", Changed([](SnmpSample& s) { s.name += "\x01"; }).Bytes()},
      {"another version", Changed([](SnmpSample& s) { s.version = "\x01"; }).Bytes()},
      {"the request itself", SampleRequest()},
      {"cut off", right.substr(0, right.size() - 1)},
      {"one byte more", right + "x"},
      {"largest", std::string(65507, '\x30')},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    UdpPeer peer([&](const std::string&, int) { return std::vector{row.datagram, right}; });
    NetworkPort port = MakePort(peer.port(), kPatient);
    port.Open();
    EXPECT_EQ(Exchange(port), right);
    EXPECT_EQ(peer.count(), 1);

    UdpPeer wrong([&](const std::string&, int) { return std::vector{row.datagram}; });
    NetworkPort unanswered = MakePort(wrong.port(), kBrief);
    unanswered.Open();
    EXPECT_EQ(Exchange(unanswered), Failure(DriverCode::kTimeout));
    EXPECT_EQ(wrong.count(), 3) << "one try and two retries";
  }
}

TEST(SnmpExchangeTest, TakesWhatIsAnAnswer) {
  const struct {
    const char* what;
    const char* options;
    std::string answer;
  } kRows[] = {
      {"an error", kPatient, Changed([](SnmpSample& s) { s.errorStatus = "\x02"; }).Bytes()},
      {"the same request-id in four bytes", kPatient,
       Changed([](SnmpSample& s) { s.id = std::string("\0\0\0\x02", 4); }).Bytes()},
      {"another name", "timeout=20000&match=id",
       Changed([](SnmpSample& s) { s.name += "\x01"; }).Bytes()},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    UdpPeer peer([&](const std::string&, int) { return std::vector{row.answer}; });
    NetworkPort port = MakePort(peer.port(), row.options);
    port.Open();
    EXPECT_EQ(Exchange(port), row.answer);
  }
}

TEST(SnmpExchangeTest, AsksAgainUntilAnswered) {
  const std::string answer = SnmpSample().Bytes();
  UdpPeer peer([&](const std::string&, int number) {
    return number < 4 ? std::vector<std::string>() : std::vector{answer};
  });
  NetworkPort port = MakePort(peer.port(), "timeout=50&retries=100");
  port.Open();
  EXPECT_EQ(Exchange(port), answer);
  EXPECT_GE(peer.count(), 4);
}

TEST(SnmpExchangeTest, RepeatedAnswersAreNotTheNextOnes) {
  SnmpSample first, second;
  second.value = Element(0x04, "other");
  UdpPeer peer([&](const std::string&, int number) {
    return number == 1 ? std::vector(3, first.Bytes()) : std::vector{second.Bytes()};
  });
  NetworkPort port = MakePort(peer.port(), kPatient);
  port.Open();
  EXPECT_EQ(Exchange(port), first.Bytes());
  EXPECT_EQ(Exchange(port), second.Bytes());
}

TEST(SnmpExchangeTest, OnlyTheAddressThatWasAskedAnswers) {
  const FileDescriptor asked = BindLoopback(AF_INET, SOCK_DGRAM);
  const FileDescriptor stranger = BindLoopback(AF_INET, SOCK_DGRAM);
  NetworkPort port = MakePort(PortOf(asked), kPatient);
  port.Open();
  auto answer = std::async(std::launch::async, [&] { return Exchange(port); });

  char request[512];
  sockaddr_storage from{};
  socklen_t length = sizeof from;
  auto* asker = reinterpret_cast<sockaddr*>(&from);
  ASSERT_GT(::recvfrom(asked.get(), request, sizeof request, 0, asker, &length), 0);
  const std::string right = SampleAnswer(200), wrong = SampleAnswer(210);
  ASSERT_EQ(::sendto(stranger.get(), wrong.data(), wrong.size(), 0, asker, length), 210);
  ASSERT_EQ(::sendto(asked.get(), right.data(), right.size(), 0, asker, length), 200);
  EXPECT_EQ(answer.get(), right);
}

TEST(SnmpExchangeTest, RefusalsAreWaitedOut) {
  const uint16_t number = RefusingPort(SOCK_DGRAM);
  NetworkPort port = MakePort(number, "timeout=100&retries=100");
  port.Open();
  auto answer = std::async(std::launch::async, [&] { return Exchange(port); });
  // Long enough for refusals to come, most times; the result is the same without.
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  UdpPeer peer([](const std::string&, int) { return std::vector{SnmpSample().Bytes()}; }, number);
  EXPECT_EQ(answer.get(), SnmpSample().Bytes());
}

TEST(SnmpExchangeTest, RefusalsDoNotKeepTheProcessorBusy) {
  NetworkPort port = MakePort(RefusingPort(SOCK_DGRAM), "timeout=500&retries=0");
  port.Open();
  const auto busy = [] {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
  };
  const long before = busy();
  EXPECT_EQ(Exchange(port), Failure(DriverCode::kTimeout));
  EXPECT_LT(busy() - before, 250);
}

TEST(SnmpExchangeTest, TriesEveryAddressOfAName) {
  // "localhost" may stand for both families, of which the printer serves one.
  for (const int family : {AF_INET, AF_INET6}) {
    UdpPeer peer([](const std::string&, int) { return std::vector{SnmpSample().Bytes()}; }, 0,
                 family);
    NetworkPort port =
        MakePort(peer.port(), "timeout=20000&retries=0", family == AF_INET ? "localhost" : "[::1]");
    port.Open();
    EXPECT_EQ(Exchange(port), SnmpSample().Bytes());
  }
}

TEST(SnmpExchangeTest, CancelEndsTheWait) {
  NetworkPort* canceled = nullptr;
  UdpPeer peer([&](const std::string&, int number) {
    if (number == 1) {
      canceled->Cancel();
      return std::vector<std::string>();
    }
    return std::vector{SnmpSample().Bytes()};
  });
  NetworkPort port = MakePort(peer.port(), kPatient);
  canceled = &port;
  port.Open();
  EXPECT_EQ(Exchange(port), Failure(DriverCode::kCancelled));
  port.Cancel();
  EXPECT_EQ(Exchange(port), SnmpSample().Bytes()) << "without a wait, cancel does nothing";
}

TEST(SnmpExchangeTest, ReportsWhoseFaultItIs) {
  NetworkPort port = MakePort(RefusingPort(SOCK_DGRAM), kBrief);
  port.Open();
  EXPECT_EQ(Exchange(port, "no message"), Failure(DriverCode::kParameter));
  try {
    port.ExchangeSnmp(SampleRequest());
    FAIL();
  } catch (const DriverError& error) {
    EXPECT_STREQ(error.what(),
                 "no answer to the SNMP request in 3 tries of 20 ms; "
                 "recv: Connection refused (error 111)");
  }
}

TEST(SnmpExchangeTest, NamesAreResolvedWithinBounds) {
  Waiter waiter;
  const Deadline late = Deadline::After(std::chrono::seconds(20));
  // No label of a name is that long, so that nobody is asked.
  EXPECT_THROW(ResolveHost(std::string(64, 'n'), late, waiter), DriverError);
  EXPECT_FALSE(ResolveHost("localhost", late, waiter).empty());
  waiter.Cancel();
  EXPECT_THROW(ResolveHost("localhost", late, waiter), DriverError);
}

}  // namespace
}  // namespace ZIOP

// The exchange of SNMP messages with a printer that answers well, badly or not at all.
#include <time.h>

#include <future>

#include "port_driver/DriverError.h"
#include "tests/port_driver/Peers.h"
#include "tests/port_driver/PluggedPort.h"
#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

using std::chrono::milliseconds;

std::string SnmpUri(uint16_t port, const std::string& options = kPatient,
                    const char* host = "127.0.0.1") {
  return Uri(9100, options + "&snmp=" + std::to_string(port), host);
}

TEST(SnmpExchangeTest, TakesAnswersOfEverySizeAndNothingElse) {
  std::string answer;
  int count = 0;
  const Peer peer = UdpPeer([&](const std::string& request) {
    ++count;
    return std::vector{std::string(), request, std::string(65507, '\x30'), answer + "x", answer};
  });
  PluggedPort port(SnmpUri(peer.port()));
  for (const std::size_t size : {200U, 512U, 513U, 65506U}) {
    answer = SampleAnswer(size);
    EXPECT_TRUE(port.Exchange(SampleRequest()) == answer) << size;
  }
  EXPECT_EQ(count, 4);
}

TEST(SnmpExchangeTest, GivesUpWhenItsTimeIsOver) {
  const Peer peer = UdpPeer([](const std::string& request) { return std::vector(2000, request); });
  PluggedPort port(SnmpUri(peer.port(), "timeout=50&retries=2"));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(port.Exchange(SampleRequest()), "code -4");
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(time >= milliseconds(150) && time < milliseconds(5000));
  EXPECT_EQ(port.error, "no answer to the SNMP request in 3 tries of 50 ms");
}

TEST(SnmpExchangeTest, StrangersAndRepeatedAnswersAreNotHeard) {
  const FileDescriptor stranger = Bind(SOCK_DGRAM), asked = Bind(SOCK_DGRAM);
  PluggedPort port(SnmpUri(PortOf(asked)));
  for (const std::size_t size : {200U, 201U}) {
    auto answer = std::async(std::launch::async, [&] { return port.Exchange(SampleRequest()); });
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    auto* asker = reinterpret_cast<sockaddr*>(&from);
    ASSERT_EQ(::recvfrom(asked.get(), nullptr, 0, 0, asker, &length), 0);
    const std::string wrong = SampleAnswer(300), right = SampleAnswer(size);
    ASSERT_EQ(::sendto(stranger.get(), wrong.data(), wrong.size(), 0, asker, length), 300);
    for (int i = 0; i < 3; ++i) {
      ASSERT_EQ(::sendto(asked.get(), right.data(), right.size(), 0, asker, length), size);
    }
    EXPECT_EQ(answer.get(), right);
  }
}

TEST(SnmpExchangeTest, RefusalsAreWaitedOut) {
  const uint16_t number = PortOf(Bind(SOCK_DGRAM));
  PluggedPort port(SnmpUri(number, "timeout=500&retries=0"));
  const auto busy = [] {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
  };
  const long before = busy();
  EXPECT_EQ(port.Exchange(SampleRequest()), "code -4");
  EXPECT_LT(busy() - before, 250) << "milliseconds of processor time";
  EXPECT_EQ(port.error.substr(port.error.find(';')), "; recv: Connection refused (error 111)");

  PluggedPort started(SnmpUri(number, "timeout=100&retries=100"));
  auto answer = std::async(std::launch::async, [&] { return started.Exchange(SampleRequest()); });
  // Long enough for refusals to come, most times; the result is the same without.
  std::this_thread::sleep_for(milliseconds(30));
  const Peer peer =
      UdpPeer([](const std::string&) { return std::vector{SampleAnswer(200)}; }, number);
  EXPECT_EQ(answer.get(), SampleAnswer(200));
}

TEST(SnmpExchangeTest, TriesEveryAddressOfAName) {
  // "localhost" may stand for both families, of which the printer serves one.
  for (const auto& [host, name] : {std::pair("127.0.0.1", "localhost"), {"::1", "[::1]"}}) {
    const Peer peer =
        UdpPeer([](const std::string&) { return std::vector{SampleAnswer(200)}; }, 0, host);
    PluggedPort port(SnmpUri(peer.port(), kPatient, name));
    EXPECT_EQ(port.Exchange(SampleRequest()), SampleAnswer(200)) << name;
  }
}

TEST(HostAddressTest, NamesAreWaitedForWithinBounds) {
  Waiter waiter;
  const Deadline late = Deadline::After(std::chrono::hours(1));
  // No label of a name is that long, so that nobody is asked.
  EXPECT_THROW(ResolveHost(std::string(64, 'n'), late, waiter), DriverError);
  waiter.Cancel();
  EXPECT_THROW(ResolveHost("localhost", late, waiter), DriverError);
}

TEST(DeadlineTest, Arithmetic) {
  const Deadline::Clock::time_point now{};
  EXPECT_EQ(Deadline(now + std::chrono::microseconds(1)).PollTimeout(now), 1) << "never too early";
  EXPECT_EQ(Deadline(now - milliseconds(9)).PollTimeout(now), 0);
  EXPECT_EQ(Deadline(now + std::chrono::hours(24 * 365)).PollTimeout(now), 2147483647);
  EXPECT_EQ(Deadline(now + milliseconds(9)).Share(3, now).PollTimeout(now), 3);
  EXPECT_TRUE(Deadline(now - milliseconds(9)).Share(3, now).HasPassed(now));
}

}  // namespace
}  // namespace ZIOP

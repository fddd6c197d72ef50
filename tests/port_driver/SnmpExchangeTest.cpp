// The exchange of SNMP messages with a printer that answers well, badly or not at all.
#include <dlfcn.h>

#include <atomic>
#include <future>
#include <thread>

#include "port_driver/SnmpMessage.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"

namespace ZIOP {
namespace {

using std::chrono::milliseconds;

const std::string kRequest = MakeStatusRequest(7);

// Sends an answer to the driver's next datagram socket, which anybody can do who is in time.
std::atomic<const Peer*> early_stranger{nullptr};

void SendEarly(int socket, const Peer& stranger) {
  HostAddress own{{}, sizeof(sockaddr_in)};
  own.storage.ss_family = AF_INET;
  EXPECT_EQ(::bind(socket, own.get(), own.length), 0);
  EXPECT_EQ(::getsockname(socket, own.get(), &own.length), 0);
  stranger.SendTo(own, SnmpAnswer(kRequest, 300));
}

}  // namespace
}  // namespace ZIOP

// The call of this program and of the plug-ins that it loads.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr* address,
                                                              socklen_t length) {
  static const auto system = reinterpret_cast<decltype(&connect)>(::dlsym(RTLD_NEXT, "connect"));
  const ZIOP::Peer* const stranger = ZIOP::early_stranger.exchange(nullptr);
  if (stranger != nullptr) ZIOP::SendEarly(socket, *stranger);
  return system(socket, address, length);
}

namespace ZIOP {
namespace {

std::string SnmpUri(uint16_t port, const std::string& options = kPatient,
                    const char* host = "127.0.0.1") {
  return Uri(9100, options + "&snmp=" + std::to_string(port), host);
}

std::future<std::string> Exchange(PluggedPort& port) {
  return std::async(std::launch::async, [&port] { return port.Exchange(kRequest); });
}

TEST(SnmpExchangeTest, TakesAnswersOfEverySizeAndNothingElse) {
  Peer peer(SOCK_DGRAM);
  const Peer stranger(SOCK_DGRAM), neighbour(SOCK_DGRAM, peer.port(), "127.0.0.2");
  PluggedPort port(SnmpUri(peer.port()));
  for (const std::size_t size : {200U, 511U, 512U, 513U, 65507U}) {
    auto taken = Exchange(port);
    EXPECT_EQ(peer.Receive(), kRequest);
    peer.Send(SnmpAnswer(kRequest, 300), stranger);
    peer.Send(SnmpAnswer(kRequest, 300), neighbour);
    const std::string answer = SnmpAnswer(kRequest, size);
    // Together they fit the socket's buffer.
    for (const auto& datagram : {std::string(), std::string("0"), kRequest, std::string(3000, '0'),
                                 answer + "x", answer}) {
      peer.Send(datagram);
    }
    EXPECT_TRUE(taken.get() == answer) << size;
  }
}

TEST(SnmpExchangeTest, NobodyIsHeardWhoWasThereBeforeTheConnection) {
  Peer peer(SOCK_DGRAM);
  const Peer stranger(SOCK_DGRAM);
  early_stranger = &stranger;
  PluggedPort port(SnmpUri(peer.port()));
  ASSERT_EQ(early_stranger, nullptr);
  auto taken = Exchange(port);
  EXPECT_EQ(peer.Receive(), kRequest);
  peer.Send(SnmpAnswer(kRequest, 200));
  EXPECT_EQ(taken.get(), SnmpAnswer(kRequest, 200));
}

// The host is the one that the system has connected to, whatever it was called.
TEST(SnmpExchangeTest, TheUnspecifiedAddressIsThisMachine) {
  for (const char* host : {"0.0.0.0", "127.1", "[::ffff:127.0.0.1]"}) {
    Peer peer(SOCK_DGRAM);
    PluggedPort port(SnmpUri(peer.port(), kPatient, host));
    auto taken = Exchange(port);
    EXPECT_EQ(peer.Receive(), kRequest);
    peer.Send(SnmpAnswer(kRequest, 200));
    EXPECT_EQ(taken.get(), SnmpAnswer(kRequest, 200)) << host;
  }
}

TEST(SnmpExchangeTest, LateAnswersAnswerNoOtherRequest) {
  Peer peer(SOCK_DGRAM);
  PluggedPort port(SnmpUri(peer.port()));
  for (const bool reopened : {false, true}) {
    auto given_up = Exchange(port);
    peer.Receive();
    const HostAddress before = peer.sender();
    port.Call(&ZIOPortTable::cancel);
    EXPECT_EQ(given_up.get(), "code -7");
    EXPECT_TRUE(!reopened || port.Call(&ZIOPortTable::close) + port.Call(&ZIOPortTable::open) == 0);
    auto taken = Exchange(port);
    peer.Receive();
    peer.SendTo(before, SnmpAnswer(kRequest, 300));
    peer.Send(SnmpAnswer(kRequest, 200));
    EXPECT_EQ(taken.get(), SnmpAnswer(kRequest, 200));
  }
}

TEST(SnmpExchangeTest, GivesUpWhenItsTimeIsOver) {
  Peer peer(SOCK_DGRAM);
  PluggedPort port(SnmpUri(peer.port(), "timeout=50&retries=2"));
  const auto start = std::chrono::steady_clock::now();
  auto taken = Exchange(port);
  for (int i = 0; i < 3 * 2000; ++i) {
    peer.Send(i % 2000 == 0 ? peer.Receive() : kRequest);
  }
  EXPECT_EQ(taken.get(), "code -4");
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(time >= milliseconds(150) && time < milliseconds(5000));
  EXPECT_EQ(port.error, "no answer to the SNMP request in 3 tries of 50 ms");
}

TEST(SnmpExchangeTest, RefusalsAreWaitedOut) {
  const uint16_t number = Peer(SOCK_DGRAM).port();
  PluggedPort port(SnmpUri(number, "timeout=500&retries=0"));
  const long before = ProcessorTime();
  EXPECT_EQ(port.Exchange(kRequest), "code -4");
  EXPECT_LT(ProcessorTime() - before, 250) << "milliseconds of processor time";
  EXPECT_EQ(port.error.substr(port.error.find(';')), "; recv: Connection refused (error 111)");

  PluggedPort started(SnmpUri(number, "timeout=100&retries=100"));
  auto taken = Exchange(started);
  // Long enough for refusals to come, most times; the result is the same without.
  std::this_thread::sleep_for(milliseconds(30));
  Peer peer(SOCK_DGRAM, number);
  peer.Send(SnmpAnswer(peer.Receive(), 200));
  EXPECT_EQ(taken.get(), SnmpAnswer(kRequest, 200));
}

TEST(SnmpExchangeTest, AStatusTextIsAnOctetString) {
  Peer peer(SOCK_DGRAM);
  PluggedPort port(SnmpUri(peer.port()));
  std::string buffer(ZIO_STATUS_BUFFER_SIZE, '#');
  auto result = std::async(std::launch::async,
                           [&] { return port.Call(&ZIOPortTable::status, buffer.data()); });
  peer.Send(SnmpAnswer(peer.Receive(), Element(0x05, "")));
  EXPECT_EQ(result.get(), -8);
  EXPECT_EQ(buffer, std::string(ZIO_STATUS_BUFFER_SIZE, '#'));
}

TEST(DeadlineTest, Arithmetic) {
  const Deadline::Clock::time_point now{};
  EXPECT_EQ(Deadline(now + std::chrono::microseconds(1)).PollTimeout(now), 1) << "never too early";
  EXPECT_EQ(Deadline(now - milliseconds(9)).PollTimeout(now), 0);
  EXPECT_EQ(Deadline(now + std::chrono::hours(24 * 365)).PollTimeout(now), 2147483647);
  EXPECT_EQ(Deadline(now + milliseconds(9)).Share(3, now).PollTimeout(now), 3);
}

}  // namespace
}  // namespace ZIOP

// The raw data connection of a network port: where it is unlike other ports.
#include <gmock/gmock.h>

#include <filesystem>
#include <future>
#include <thread>

#include "port_driver/SnmpMessage.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"

namespace ZIOP {
namespace {

using Table = ZIOPortTable;

// Options for printers that do not do what is waited for.
constexpr char kBrief[] = "timeout=20&retries=2";

TEST(RawDataTest, LateRepliesAnswerNoOtherCommand) {
  const Peer peer(SOCK_STREAM);
  PluggedPort port(Uri(peer.port(), "timeout=200&retries=0"));
  EXPECT_EQ(port.Write("1"), 0);
  EXPECT_EQ(port.Read(4), "code -4");
  EXPECT_EQ(port.Write("2"), 0);
  const FileDescriptor kept = peer.Accept();
  Send(kept, "late");
  EXPECT_EQ(port.Read(5), "late") << "a silent printer keeps the connection";
  EXPECT_EQ(port.Call(&Table::close), 0) << "not for ever while the printer does not close";

  ASSERT_EQ(port.Call(&Table::open), 0);
  EXPECT_EQ(port.Control("1", 4), "code -4");
  EXPECT_EQ(port.Write("2"), 0);
  Send(peer.Accept(), "late");
  const FileDescriptor fresh = peer.Accept();
  Send(fresh, "good");
  EXPECT_EQ(port.Read(4), "good");
}

TEST(RawDataTest, ClosingWaitsForAPrinterThatHasHungUpToTakeTheRest) {
  const std::string data(256 << 10, 'd');  // which the socket buffers hold
  const Peer peer(SOCK_STREAM);
  for (const bool takes : {true, false}) {
    PluggedPort port(Uri(peer.port(), takes ? kPatient : "timeout=500&retries=0"));
    EXPECT_EQ(port.Write(data), 0);
    const FileDescriptor connection = peer.Accept();
    ::shutdown(connection.get(), SHUT_WR);
    const auto rest = std::async(takes ? std::launch::async : std::launch::deferred,
                                 [&] { EXPECT_EQ(ReadAll(connection).size(), data.size()); });
    const long before = ProcessorTime();
    EXPECT_EQ(port.Call(&Table::close), takes ? 0 : -4);
    EXPECT_LT(ProcessorTime() - before, 250) << "milliseconds of processor time";
  }
}

TEST(RawDataTest, ClosingIsNotHeldUpByAPrinterThatTalksOn) {
  const Peer peer(SOCK_STREAM);
  PluggedPort port(Uri(peer.port(), "timeout=100&retries=0"));
  EXPECT_EQ(port.Write("x"), 0);
  const auto printer = std::async(std::launch::async, [connection = peer.Accept()] {
    const std::string talk(1 << 20, 't');
    while (::send(connection.get(), talk.data(), talk.size(), MSG_NOSIGNAL) > 0) {
    }
  });
  EXPECT_EQ(port.Call(&Table::close), 0);
}

TEST(RawDataTest, FailuresLeaveNoDescriptorBehind) {
  const auto count = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  const uint16_t refusing = Peer(SOCK_STREAM).port();
  { const PluggedPort first(Uri(refusing, kBrief)); }  // its event is kept for those that follow
  const auto before = count();
  for (int i = 0; i < 3; ++i) {
    PluggedPort refused(Uri(refusing, kBrief + ("&snmp=" + std::to_string(refusing))));
    PluggedPort unroutable;
    EXPECT_EQ(refused.Write("x"), -3);
    EXPECT_EQ(refused.error, "connect: Connection refused (error 111)");
    EXPECT_EQ(refused.Exchange(MakeStatusRequest(7)), "code -4");
    EXPECT_EQ(unroutable.Initialise(fake_plugin::MakeData("socket://[fe80::1]")), 0);
    EXPECT_EQ(unroutable.Call(&Table::open), -3) << "a link-local address without its zone";
  }
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace ZIOP

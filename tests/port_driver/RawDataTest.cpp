// The raw data connection of a port: writing, reading, closing, and printers that fail.
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

// More than the socket buffers of both sides hold.
std::string BigData() {
  std::string data(24 << 20, '\0');
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i] = static_cast<char>(i * 2654435761U >> 13U);
  }
  return data;
}

TEST(RawDataTest, NoByteIsLost) {
  const std::string data = BigData();
  const Peer peer(SOCK_STREAM);
  auto received = std::async(std::launch::async, [&] {
    const FileDescriptor connection = peer.Accept();
    // What the printer says and nobody reads must not cost the bytes on their way.
    Send(connection, std::string(20000, 's'));
    return ReadAll(connection);
  });
  PluggedPort port(Uri(peer.port(), kPatient, "localhost"));
  EXPECT_EQ(port.Write(data.substr(0, 7)), 0);
  EXPECT_EQ(port.Write(data.substr(7)), 0);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), 0);
  EXPECT_EQ(port.Call(&Table::close), 0);
  EXPECT_TRUE(received.get() == data);
}

TEST(RawDataTest, ReadingEndsInItsTime) {
  const struct {
    const char *what, *options, *start;
    int later;  // bytes, one every 2 ms
    const char* end;
    std::size_t capacity;
    const char* reply;
  } kRows[] = {
      {"pause", "timeout=400", "abc", 0, "", 5, "abc##"},
      {"full buffer, more there", kPatient, "abc", 0, "", 2, "ab"},
      {"end", kPatient, "abc", 3, "close", 7, "abc---#"},
      {"hung up", kPatient, "", 0, "close", 1, "code -8"},
      {"reset", kPatient, "abc", 0, "reset", 7, "code -3"},
      {"for ever", "timeout=400&retries=0", "abc", 400, "", 1 << 20, "code -4"},
  };
  const Peer peer(SOCK_STREAM);
  for (const auto& row : kRows) {
    PluggedPort port(Uri(peer.port(), row.options));
    auto reply =
        std::async(std::launch::async, [&] { return port.Control("command", row.capacity); });
    FileDescriptor connection = peer.Accept();
    EXPECT_EQ(ReadAll(connection, 7), "command");
    Send(connection, row.start);
    for (int i = 0; i < row.later; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      Send(connection, "-");
    }
    if (row.end == std::string("reset")) {
      const linger reset{1, 0};
      ::setsockopt(connection.get(), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    }
    if (row.end != std::string()) {
      connection = FileDescriptor();
    }
    EXPECT_EQ(reply.get(), row.reply) << row.what;
  }
}

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

TEST(RawDataTest, APrinterThatTakesNothingIsGivenUp) {
  const Peer peer(SOCK_STREAM);
  PluggedPort port(Uri(peer.port(), kBrief));
  EXPECT_EQ(port.Write(BigData()), -4);
  EXPECT_THAT(ReadAll(peer.Accept()), testing::EndsWith("(broken)"))
      << "the printer must not take the next command for the rest";
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

TEST(RawDataTest, CancelEndsReadingAndWriting) {
  const Peer peer(SOCK_STREAM);
  for (const std::string& command : {std::string("x"), BigData()}) {
    PluggedPort port(Uri(peer.port(), kPatient));
    const auto printer = std::async(std::launch::async, [&] {
      const FileDescriptor connection = peer.Accept();
      ReadAll(connection, 1);
      port.Call(&Table::cancel);
      ReadAll(connection);
    });
    EXPECT_EQ(port.Control(command, 1), "code -7");
  }
}

TEST(RawDataTest, FailuresLeaveNoDescriptorBehind) {
  const auto count = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  const uint16_t refusing = Peer(SOCK_STREAM).port();
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

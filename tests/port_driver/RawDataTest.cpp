// The raw data connection of a port: writing, reading, closing, and printers that fail.
#include <gmock/gmock.h>

#include <filesystem>
#include <future>

#include "tests/port_driver/Peers.h"
#include "tests/port_driver/PluggedPort.h"
#include "tests/port_driver/SnmpSamples.h"

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
  std::promise<std::string> received;
  const Peer peer = TcpPeer([&](int connection) {
    // What the printer says and nobody reads must not cost the bytes on their way.
    SendAll(connection, std::string(20000, 's'));
    received.set_value(ReadAll(connection));
  });
  PluggedPort port(Uri(peer.port(), kPatient, "localhost"));
  EXPECT_EQ(port.Write(data.substr(0, 7)), 0);
  EXPECT_EQ(port.Write(data.substr(7)), 0);
  EXPECT_EQ(port.Flush(), 0);
  EXPECT_EQ(port.Call(&Table::close), 0);
  EXPECT_TRUE(received.get_future().get() == data);
}

TEST(RawDataTest, ReadingEndsInItsTime) {
  const Peer peer = TcpPeer([&](int connection) {
    const char command = ReadAll(connection, 1)[0];
    SendAll(connection, command == 'h' || command == 's' ? "" : "abc");
    for (int i = 0; (command == 't' && i < 400) || (command == 'f' && i < 3); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      SendAll(connection, "-");
    }
    if (command != 'h' && command != 'f') {
      ReadAll(connection);  // holds the connection until the port closes it
    }
  });
  const struct {
    const char* what;
    const char* command;
    const char* options;
    std::size_t capacity;
    std::string reply;
  } kRows[] = {
      {"pause", "p", "timeout=400", 5, "abc##"},
      {"full buffer, more there", "f", kPatient, 2, "ab"},
      {"end", "f", kPatient, 7, "abc---#"},
      {"hung up", "h", kPatient, 1, "code -8"},
      {"silent", "s", kBrief, 1, "code -4"},
      {"a byte now and then for ever", "t", "timeout=400&retries=0", 1 << 20, "code -4"},
  };
  for (const auto& row : kRows) {
    PluggedPort port(Uri(peer.port(), row.options));
    EXPECT_EQ(port.Control(row.command, row.capacity), row.reply) << row.what;
  }
}

TEST(RawDataTest, LateRepliesAnswerNoOtherCommand) {
  const Peer peer = TcpPeer([&](int connection) {
    const bool late = ReadAll(connection, 1) == "1" && ReadAll(connection, 1) == "2";
    SendAll(connection, late ? "late" : "good");
    ReadAll(connection);
  });
  PluggedPort port(Uri(peer.port(), "timeout=200&retries=0"));
  EXPECT_EQ(port.Write("1"), 0);
  EXPECT_EQ(port.Read(4), "code -4");
  EXPECT_EQ(port.Write("2"), 0);
  EXPECT_EQ(port.Read(5), "late") << "a silent printer keeps the connection";
  EXPECT_EQ(port.Call(&Table::close), 0);

  ASSERT_EQ(port.Call(&Table::open), 0);
  EXPECT_EQ(port.Control("1", 4), "code -4");
  EXPECT_EQ(port.Control("2", 4), "good");
}

TEST(RawDataTest, APrinterThatTakesNothingIsGivenUp) {
  std::promise<void> given_up;
  std::promise<std::string> taken;
  const Peer peer = TcpPeer([&](int connection) {
    given_up.get_future().wait();
    taken.set_value(ReadAll(connection));
  });
  PluggedPort port(Uri(peer.port(), kBrief));
  EXPECT_EQ(port.Write(BigData()), -4);
  given_up.set_value();
  EXPECT_THAT(taken.get_future().get(), testing::EndsWith("(broken)"))
      << "the printer must not take the next command for the rest";
}

TEST(RawDataTest, CloseWaitsForNoPrinterForEver) {
  std::promise<void> closed;
  const Peer peer = TcpPeer([&](int connection) {
    ReadAll(connection);
    closed.get_future().wait();
  });
  PluggedPort port(Uri(peer.port(), "timeout=500&retries=0"));
  EXPECT_EQ(port.Write("all of it"), 0);
  EXPECT_EQ(port.Call(&Table::close), 0);
  closed.set_value();
}

TEST(RawDataTest, CancelEndsReadingAndWriting) {
  PluggedPort* canceled = nullptr;
  const Peer peer = TcpPeer([&](int connection) {
    ReadAll(connection, 1);
    canceled->Call(&Table::cancel);
    ReadAll(connection);
  });
  for (const std::string& command : {std::string("x"), BigData()}) {
    PluggedPort port(Uri(peer.port(), kPatient));
    canceled = &port;
    EXPECT_EQ(port.Control(command, 1), "code -7");
  }
}

TEST(RawDataTest, FailuresLeaveNoDescriptorBehind) {
  const auto count = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  const uint16_t refusing = PortOf(Bind(SOCK_STREAM));
  // Connects without anybody who accepts, whose descriptor would be in this process too.
  const FileDescriptor silent = Bind(SOCK_STREAM);
  ASSERT_EQ(::listen(silent.get(), 8), 0);
  const auto before = count();
  for (int i = 0; i < 3; ++i) {
    PluggedPort refused(Uri(refusing, kBrief)), read(Uri(PortOf(silent), kBrief)), unroutable;
    EXPECT_EQ(refused.Write("x"), -3);
    EXPECT_EQ(refused.error, "connect: Connection refused (error 111)");
    EXPECT_EQ(refused.Exchange(SampleRequest()), "code -4");
    EXPECT_EQ(read.Write("x"), 0);
    EXPECT_EQ(read.Read(1), "code -4");
    EXPECT_EQ(unroutable.Initialise("socket://[fe80::1]"), 0);
    EXPECT_EQ(unroutable.Call(&Table::open), -3) << "a link-local address without its zone";
  }
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace ZIOP

// The raw data connection of a network port: writing, reading, closing, and printers that fail.
#include "port_driver/NetworkPort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <atomic>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include "port_driver/DriverError.h"
#include "tests/port_driver/Peers.h"

namespace ZIOP {
namespace {

// NOLINTNEXTLINE(misc-unused-using-decls): it is used
using std::string_literals::operator""s;

NetworkPort MakePort(uint16_t port, const char* options, const std::string& host = "127.0.0.1") {
  return NetworkPort(
      DeviceURI::Parse("socket://" + host + ":" + std::to_string(port) + "?" + options));
}

DriverCode CodeOf(const std::function<void()>& operation) {
  try {
    operation();
    return DriverCode::kSuccess;
  } catch (const DriverError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.code();
  }
}

std::string Read(NetworkPort& port, std::size_t capacity) {
  std::string bytes(capacity, '#');
  bytes.resize(port.Read(bytes.data(), capacity));
  return bytes;
}

// More than the socket buffers of both sides hold.
std::string BigData() {
  std::string data(24 << 20, '\0');
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i] = static_cast<char>(i * 2654435761U >> 13U);
  }
  return data;
}

TEST(NetworkPortTest, LosesNoByte) {
  const std::string data = BigData();
  std::promise<std::string> received;
  TcpPeer peer([&](int connection, int) {
    // What the printer says and nobody reads must not cost the bytes on their way.
    SendAll(connection, std::string(20000, 's'));
    received.set_value(ReadToEnd(connection));
  });
  NetworkPort port = MakePort(peer.port(), kPatient);
  port.Open();
  port.Write(std::string_view(data).substr(0, 7));
  port.Write(std::string_view(data).substr(7));
  port.Flush();
  port.Close();
  EXPECT_TRUE(received.get_future().get() == data);
}

TEST(NetworkPortTest, ReadEndsWithAPauseAFullBufferOrTheConnection) {
  TcpPeer peer([&](int connection, int) {
    const std::string command = ReadExactly(connection, 1);
    if (command == "h") {
      return;
    }
    SendAll(connection, "abc");
    if (command != "p") {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      SendAll(connection, "def");
    }
    if (command != "e") {
      ReadToEnd(connection);  // holds the connection until the port closes it
    }
  });
  const struct {
    const char* what;
    const char* command;
    const char* options;
    std::size_t capacity;
    const char* reply;
  } kRows[] = {
      {"pause", "p", "timeout=400", 100, "abc"},
      {"full buffer", "f", kPatient, 6, "abcdef"},
      {"full buffer, more there", "f", kPatient, 2, "ab"},
      {"end", "e", kPatient, 100, "abcdef"},
      {"nothing asked for", "f", kPatient, 0, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    NetworkPort port = MakePort(peer.port(), row.options);
    port.Open();
    std::string reply(row.capacity, '#');
    reply.resize(port.Control(row.command, reply.data(), reply.size()));
    EXPECT_EQ(reply, row.reply);
    port.Close();
  }
  NetworkPort port = MakePort(peer.port(), kPatient);
  port.Open();
  char none = 0;
  EXPECT_EQ(CodeOf([&] { port.Control("h", &none, 1); }), DriverCode::kPrinter) << "hung up";
}

TEST(NetworkPortTest, ASilentPrinterIsNoReply) {
  TcpPeer peer([&](int connection, int) {
    ReadExactly(connection, 5);
    SendAll(connection, "late");
    ReadToEnd(connection);
  });
  NetworkPort port = MakePort(peer.port(), kBrief);
  port.Open();
  port.Write("1234");
  EXPECT_EQ(CodeOf([&] { Read(port, 4); }), DriverCode::kTimeout);
  port.Write("5");
  std::string reply;
  while (reply.empty()) {
    CodeOf([&] { reply = Read(port, 4); });
  }
  EXPECT_EQ(reply, "late") << "the connection stays up";
}

TEST(NetworkPortTest, APrinterThatTakesNothingIsGivenUp) {
  std::promise<void> given_up;
  std::promise<std::string> taken;
  TcpPeer peer([&](int connection, int) {
    given_up.get_future().wait();
    taken.set_value(ReadToEnd(connection));
  });
  NetworkPort port = MakePort(peer.port(), kBrief);
  port.Open();
  const std::string data = BigData();
  EXPECT_EQ(CodeOf([&] { port.Write(data); }), DriverCode::kTimeout);
  given_up.set_value();
  EXPECT_THAT(taken.get_future().get(), testing::EndsWith("(broken)"))
      << "the printer must not take the next command for the rest";
  EXPECT_EQ(CodeOf([&] { port.Close(); }), DriverCode::kSuccess);
}

TEST(NetworkPortTest, CloseWaitsForNoPrinterForEver) {
  TcpPeer peer([&](int connection, int stop) {
    ReadToEnd(connection);
    WaitFor(stop);
  });
  NetworkPort port = MakePort(peer.port(), "timeout=1000&retries=0");
  port.Open();
  port.Write("all of it");
  EXPECT_EQ(CodeOf([&] { port.Close(); }), DriverCode::kSuccess);
  EXPECT_EQ(CodeOf([&] { port.Close(); }), DriverCode::kParameter);
}

TEST(NetworkPortTest, ConnectsAgainAfterAReset) {
  std::atomic<int> connections{0};
  TcpPeer peer([&](int connection, int) {
    ReadExactly(connection, 1);
    if (++connections == 1) {
      ResetConnection(connection);
      return;
    }
    SendAll(connection, "ok");
    ReadToEnd(connection);
  });
  NetworkPort port = MakePort(peer.port(), kPatient);
  port.Open();
  const DriverCode code = CodeOf([&] {
    for (;;) {
      port.Write("x");
      port.Flush();
    }
  });
  EXPECT_EQ(code, DriverCode::kSystem);
  port.Write("x");
  EXPECT_EQ(Read(port, 2), "ok");
  port.Close();
}

TEST(NetworkPortTest, TriesEveryAddressAndReportsARefusal) {
  TcpPeer peer([&](int connection, int) { ReadToEnd(connection); });
  NetworkPort named = MakePort(peer.port(), kPatient, "localhost");
  named.Open();
  named.Write("x");
  named.Close();

  NetworkPort refused = MakePort(RefusingPort(SOCK_STREAM), kPatient);
  refused.Open();
  try {
    refused.Write("x");
    FAIL();
  } catch (const DriverError& error) {
    EXPECT_STREQ(error.what(), "connect: Connection refused (error 111)");
    EXPECT_EQ(error.code(), DriverCode::kSystem);
  }
  refused.Close();
}

TEST(NetworkPortTest, CancelEndsReadingAndWriting) {
  NetworkPort* canceled = nullptr;
  TcpPeer peer([&](int connection, int) {
    ReadExactly(connection, 1);
    canceled->Cancel();
    ReadToEnd(connection);
  });
  for (const std::string& command : {"x"s, BigData()}) {
    NetworkPort port = MakePort(peer.port(), kPatient);
    canceled = &port;
    port.Open();
    char reply = 0;
    EXPECT_EQ(CodeOf([&] { port.Control(command, &reply, 1); }), DriverCode::kCancelled);
  }
}

}  // namespace
}  // namespace ZIOP

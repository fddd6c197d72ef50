// What every port does, whatever its printer is reached over: the order of calls, arguments, bytes
// both ways, bounds, cancelling and the status text.
#include <gmock/gmock.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include <future>
#include <optional>
#include <thread>

#include "port_driver/SnmpMessage.h"
#include "port_driver/Waiter.h"
#include "tests/port_driver/LocalPeer.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"
#include "tests/port_driver/TemporaryFolder.h"
#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/Server.h"

namespace ZIOP {
namespace {

using fake_plugin::MakeData;
using Table = ZIOPortTable;
constexpr int kParameter = -2, kUnsupported = -5;

// A printer in the test's hands.
class Printer {
 public:
  explicit Printer(bool is_local) {
    if (is_local) {
      local_.emplace();
    }
  }

  bool IsLocal() const { return local_.has_value(); }
  std::string Uri(int timeout_ms) const {
    return IsLocal() ? local_->Uri(timeout_ms)
                     : ZIOP::Uri(raw_.port(), "retries=0&timeout=" + std::to_string(timeout_ms) +
                                                  "&snmp=" + std::to_string(snmp_.port()));
  }

  // The printer's side of the byte stream, once.
  Ravik::FileDescriptor Accept() { return IsLocal() ? std::move(local_->side()) : raw_.Accept(); }

  void AnswerStatusRequest(const std::string& text) {
    if (!IsLocal()) {
      snmp_.Send(SnmpAnswer(snmp_.Receive(), Element(0x04, text)));
      return;
    }
    const std::string command("\x1B@\x1B(R\x08\0\0REMOTE1ST\x01\0\x01\x1B\0\0\0", 24);
    EXPECT_EQ(ReadAll(local_->side(), command.size()), command);
    Send(local_->side(), text);
  }

 private:
  Peer raw_{SOCK_STREAM}, snmp_{SOCK_DGRAM};
  std::optional<LocalPeer> local_;
};

// More than all buffers on the way hold.
std::string BigData() {
  std::string data(24 << 20, '\0');
  for (std::size_t i = 0; i < data.size(); ++i) {
    data[i] = static_cast<char>(i * 2654435761U >> 13U);
  }
  return data;
}

class PortContractTest : public testing::TestWithParam<bool> {
 protected:
  Printer printer{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Ports, PortContractTest, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Local" : "Network"; });

void ExpectClosed(PluggedPort& port) {
  char buffer[ZIO_STATUS_BUFFER_SIZE];
  EXPECT_EQ(port.Call(&Table::close), kParameter);
  EXPECT_EQ(port.Exchange(MakeStatusRequest(1)), "code -2");
  EXPECT_EQ(port.Write("x"), kParameter);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), kParameter);
  EXPECT_EQ(port.Call(&Table::tab), kParameter);
  EXPECT_EQ(port.Call(&Table::status, buffer), kParameter);
  EXPECT_EQ(port.Read(1), "code -2");
  EXPECT_EQ(port.Control("x", 1), "code -2");
}

TEST_P(PortContractTest, CallsOutOfOrderAreRefused) {
  PluggedPort port;
  ExpectClosed(port);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
  EXPECT_EQ(port.Call(&Table::cancel), kParameter);
  EXPECT_EQ(port.Call(&Table::terminate), kParameter);
  ASSERT_EQ(port.Initialise(MakeData(printer.Uri(1000))), 0);
  EXPECT_EQ(port.Initialise(MakeData(printer.Uri(1000))), kParameter);
  for (int i = 0; i < 2; ++i) {
    ExpectClosed(port);
    EXPECT_EQ(port.Call(&Table::cancel), 0) << "legal on a closed port";
    EXPECT_EQ(port.Call(&Table::open), 0) << "a closed port can be opened again";
    EXPECT_EQ(port.Call(&Table::open), kParameter);
    EXPECT_EQ(port.error, "the port is open already");
    EXPECT_EQ(port.Call(&Table::close), 0);
  }
  EXPECT_EQ(port.Call(&Table::open), 0);
  EXPECT_EQ(port.Call(&Table::terminate), 0);
  ExpectClosed(port);
}

TEST_P(PortContractTest, UnusableArgumentsAreRefused) {
  PluggedPort port(printer.Uri(1000));
  char byte = 'x';
  char* const none = nullptr;
  for (long length : {-1L, 1L}) {
    char* const bytes = length < 0 ? &byte : none;
    ControlElement command{bytes, length, &byte, 1}, reply{&byte, 1, bytes, length};
    ZIOSnmpExchange request{bytes, length, &byte, 1}, answer{&byte, 1, bytes, length};
    EXPECT_EQ(port.Call(&Table::write, bytes, &length), kParameter);
    EXPECT_EQ(port.Call(&Table::read, bytes, &length), kParameter);
    EXPECT_EQ(port.Call(&Table::control, &command), kParameter);
    EXPECT_EQ(port.Call(&Table::control, &reply), kParameter);
    EXPECT_EQ(port.Call(&Table::ioctl, 6L, static_cast<void*>(&request)), kParameter);
    EXPECT_EQ(port.Call(&Table::ioctl, 6L, static_cast<void*>(&answer)), kParameter);
    EXPECT_TRUE(answer.answer == bytes && answer.answerLength == length) << "left as it was";
  }
  long* const no_length = nullptr;
  EXPECT_EQ(port.Call(&Table::write, &byte, no_length), kParameter);
  EXPECT_EQ(port.Call(&Table::read, &byte, no_length), kParameter);
  EXPECT_EQ(port.Call(&Table::status, none), kParameter);
  EXPECT_EQ(port.Call(&Table::control, static_cast<ControlElement*>(nullptr)), kParameter);
  EXPECT_EQ(port.Call(&Table::ioctl, 6L, static_cast<void*>(nullptr)), kParameter);
  EXPECT_EQ(port.Call(&Table::ioctl, 5L, static_cast<void*>(&byte)), kUnsupported);
  EXPECT_EQ(port.Call(&Table::getInfo, static_cast<ZIOXInfo*>(nullptr)), kUnsupported);
  EXPECT_EQ(port.Exchange("no message"), GetParam() ? "code -5" : "code -2");
  EXPECT_EQ(port.Read(0), "");
}

TEST_P(PortContractTest, StatusTextsFitTheBuffer) {
  const std::string longest = '\0' + std::string(255, 's');
  PluggedPort port(printer.Uri(GetParam() ? 2000 : 20000));  // a local one is over after a pause
  for (const auto& text : {std::string("s"), longest, longest + "s", std::string("t")}) {
    std::string buffer(ZIO_STATUS_BUFFER_SIZE, '#');
    auto result =
        std::async(std::launch::async, [&] { return port.Call(&Table::status, buffer.data()); });
    printer.AnswerStatusRequest(text);
    EXPECT_EQ(result.get(), 0);
    const std::string expected = text.substr(0, 256) + '\0';
    EXPECT_EQ(buffer, expected + std::string(buffer.size() - expected.size(), '#'));
  }
}

TEST_P(PortContractTest, NoByteIsLost) {
  const std::string data = BigData();
  auto received = std::async(std::launch::async, [&] {
    const Ravik::FileDescriptor connection = printer.Accept();
    const std::string start = ReadAll(connection, 7);
    // What the printer says and nobody reads must not cost the bytes on their way.
    Send(connection, std::string(3000, 's'));
    return start + ReadAll(connection);
  });
  PluggedPort port(printer.Uri(4000));
  EXPECT_EQ(port.Write(data.substr(0, 7)), 0);
  EXPECT_EQ(port.Write(data.substr(7)), 0);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), 0);
  EXPECT_EQ(port.Call(&Table::close), 0);
  EXPECT_TRUE(received.get() == data);
}

TEST_P(PortContractTest, ReadingEndsInItsTime) {
  const struct {
    const char* what;
    int timeout;
    const char* start;
    int later;  // bytes, one every 2 ms
    const char* end;
    std::size_t capacity;
    const char *network, *local;  // the reply
  } kRows[] = {
      {"pause", 400, "abc", 0, "", 5, "abc##", "abc##"},
      {"full buffer, more there", 20000, "abc", 0, "", 2, "ab", "ab"},
      {"end, or unplugged", 20000, "abc", 3, "close", 7, "abc---#", "code -8"},
      {"hung up", 20000, "", 0, "close", 1, "code -8", "code -8"},
      {"reset", 20000, "abc", 0, "reset", 7, "code -3", "code -8"},
      {"for ever", 400, "abc", 400, "", 1 << 20, "code -4", "code -4"},
  };
  for (const auto& row : kRows) {
    Printer peer(GetParam());
    PluggedPort port(peer.Uri(row.timeout));
    auto reply =
        std::async(std::launch::async, [&] { return port.Control("command", row.capacity); });
    Ravik::FileDescriptor connection = peer.Accept();
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
      connection = Ravik::FileDescriptor();
    }
    EXPECT_EQ(reply.get(), GetParam() ? row.local : row.network) << row.what;
  }
}

TEST_P(PortContractTest, APrinterThatTakesNothingIsGivenUp) {
  PluggedPort port(printer.Uri(60));
  const long before = ProcessorTime();
  EXPECT_EQ(port.Write(BigData()), -4);
  EXPECT_LT(ProcessorTime() - before, 1000) << "milliseconds of processor time";
  // It must not take the next command for the rest: what it has not taken is gone.
  if (!GetParam()) {
    EXPECT_THAT(ReadAll(printer.Accept()), testing::EndsWith("(broken)"));
  }
}

TEST_P(PortContractTest, CancelEndsReadingAndWriting) {
  for (const std::string& command : {std::string("x"), BigData()}) {
    Printer peer(GetParam());
    PluggedPort port(peer.Uri(20000));
    const auto canceller = std::async(std::launch::async, [&] {
      const Ravik::FileDescriptor connection = peer.Accept();
      ReadAll(connection, 1);
      port.Call(&Table::cancel);
      ReadAll(connection);
    });
    EXPECT_EQ(port.Control(command, 1), "code -7");
    EXPECT_EQ(port.Call(&Table::terminate), 0);
  }
}

// An event that ports of one process use one after the other must not be shared with its children.
TEST(WaiterTest, IsNotCancelledByAChildProcess) {
  { const Waiter earlier; }
  const pid_t child = ::fork();
  if (child == 0) {
    Waiter waiter;
    waiter.Cancel();
    ::_exit(0);
  }
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_NO_THROW(Waiter().Rest(Deadline::After({})));
}

// The virtual printer on all its ports.
class ServedPrinter {
 public:
  ServedPrinter() {
    server_.OfferLocalPort(path_);
    serving_ = std::async(std::launch::async, [this] { server_.Run(stop_.get()); });
  }
  ~ServedPrinter() { EXPECT_EQ(::eventfd_write(stop_.get(), 1), 0); }

  std::string Uri(bool is_local) const {
    return is_local ? "file://" + path_
                    : ZIOP::Uri(server_.RawPort(), "snmp=" + std::to_string(server_.SnmpPort()));
  }

 private:
  TemporaryFolder folder_;
  const std::string path_ = folder_.path() + "/lp0";
  Ravik::FileDescriptor stop_{::eventfd(0, EFD_CLOEXEC)};
  VirtualPrinter::TestPrinter state_;
  VirtualPrinter::Server server_{"127.0.0.1", 0, 0, state_.printer, state_.faults, state_.trace};
  std::future<void> serving_;  // ends before what it uses
};

TEST_P(PortContractTest, TheVirtualPrinterIsSpokenToAlike) {
  const auto framed = [](const VirtualPrinter::Bytes& command) {
    return "\x1B@\x1B(R" + std::string("\x08\0\0REMOTE1", 10) +
           std::string(command.begin(), command.end()) + std::string("\x1B\0\0\0", 4);
  };
  const auto read = VirtualPrinter::Read("370300");
  const auto write = VirtualPrinter::Write("370300" + std::string(32, '1'));
  VirtualPrinter::TestPrinter twin;
  const ServedPrinter served;
  PluggedPort port(served.Uri(GetParam()));
  char status[ZIO_STATUS_BUFFER_SIZE] = {};
  EXPECT_EQ(port.Call(&Table::status, status), 0);
  const std::string text = twin.Ask(VirtualPrinter::MakeCommand("ST", "01"));
  EXPECT_EQ(std::string(status, text.size()), text);
  for (const auto& command : {read, write, read}) {
    const std::string reply = twin.Ask(command);
    EXPECT_EQ(port.Control(framed(command), 512), reply + std::string(512 - reply.size(), '#'));
  }
  EXPECT_EQ(port.Write(framed(write)), 0);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), 0);
  EXPECT_EQ(port.Read(512), "EX:0000001BOK;");
  EXPECT_EQ(port.Call(&Table::close), 0);
}

}  // namespace
}  // namespace ZIOP

// The contracts of the port I/O interface's slots, over every kind of port, through the bundle.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/port_driver/LoadedPlugIn.h"
#include "tests/port_driver/Peers.h"
#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

constexpr int kParameter = -2, kTimeout = -4, kUnsupported = -5, kPrinter = -8;

// A printer at the other end of one kind of port: answers "ping" with "pong" and shows a status.
class PrinterDouble {
 public:
  virtual ~PrinterDouble() = default;
  virtual std::string uri() const = 0;
  virtual void SetStatus(const std::string& status) = 0;
};

class NetworkDouble : public PrinterDouble {
 public:
  std::string uri() const override {
    return "socket://127.0.0.1:" + std::to_string(raw_.port()) +
           "?timeout=2000&snmp=" + std::to_string(snmp_.port());
  }
  void SetStatus(const std::string& status) override { status_ = status; }

 private:
  std::string status_;
  UdpPeer snmp_{[this](const std::string& request, int) {
    return std::vector{AnswerTo(request, Element(status_.empty() ? 0x05 : 0x04, status_))};
  }};
  TcpPeer raw_{[](int connection, int) {
    if (ReadExactly(connection, 4) == "ping") {
      SendAll(connection, "pong");
    }
    ReadToEnd(connection);
  }};
};

std::unique_ptr<PrinterDouble> MakeNetworkDouble() {
  return std::make_unique<NetworkDouble>();
}

// The port interface of the bundle, and what its error callback is told.
class Port {
 public:
  Port() : interface_(plugin_.GetPort()), table_(*interface_->table) {}
  ~Port() { EXPECT_EQ(table_.release(interface_), 0); }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  int Initialise(const std::string& address, int version = ZIO_INTERFACE_VERSION) {
    const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                             reinterpret_cast<const UInt8*>(address.data()),
                                             static_cast<CFIndex>(address.size())));
    return InitialiseWith(data.get(), version);
  }
  int InitialiseWith(CFTypeRef information, int version = ZIO_INTERFACE_VERSION) {
    std::string path = ZIOP_BUNDLE;
    const ZIOOpenParameter parameter{
        static_cast<CFDataRef>(information), nullptr, nullptr, Tell, this, path.c_str()};
    return table_.initialise(interface_, version, &parameter);
  }

  // Calls a slot with the interface and the arguments.
  template <typename Slot, typename... Arguments>
  int Call(Slot slot, Arguments... arguments) {
    return (table_.*slot)(interface_, arguments...);
  }

  // Code and message of the last error.
  int code = 0;
  std::string message;

 private:
  static int Tell(void* context, int code, char* message) {
    Port& port = *static_cast<Port*>(context);
    port.code = code;
    port.message = message;
    message[0] = '!';  // the text is the callback's
    port.table_.cancel(port.interface_);
    return -1;
  }

  LoadedPlugIn plugin_{ZIOP_BUNDLE};
  ZIOPortInterface* interface_;
  const ZIOPortTable& table_;
};

using Table = ZIOPortTable;

class PortContractTest : public testing::TestWithParam<std::unique_ptr<PrinterDouble> (*)()> {
 protected:
  // Every operation that needs an open port.
  void ExpectAllRefused(Port& port) {
    char byte = 0;
    long length = 1;
    char buffer[ZIO_STATUS_BUFFER_SIZE];
    ControlElement control{&byte, 1, &byte, 1};
    ZIOSnmpExchange exchange{&byte, 1, &byte, 1};
    EXPECT_EQ(port.Call(&Table::close), kParameter);
    EXPECT_EQ(port.Call(&Table::ioctl, 6L, static_cast<void*>(&exchange)), kParameter);
    EXPECT_EQ(port.Call(&Table::write, &byte, &length), kParameter);
    EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), kParameter);
    EXPECT_EQ(port.Call(&Table::tab), kParameter);
    EXPECT_EQ(port.Call(&Table::status, buffer), kParameter);
    EXPECT_EQ(port.Call(&Table::read, &byte, &length), kParameter);
    EXPECT_EQ(port.Call(&Table::control, &control), kParameter);
  }

  std::unique_ptr<PrinterDouble> printer_ = GetParam()();
};

TEST_P(PortContractTest, RefusesCallsOutOfOrder) {
  Port port;
  ExpectAllRefused(port);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
  EXPECT_EQ(port.Call(&Table::cancel), kParameter);
  EXPECT_EQ(port.Call(&Table::terminate), kParameter);
  ASSERT_EQ(port.Initialise(printer_->uri()), 0);
  EXPECT_EQ(port.Initialise(printer_->uri()), kParameter);
  ExpectAllRefused(port);
  EXPECT_EQ(port.Call(&Table::cancel), 0) << "legal on a closed port";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(port.Call(&Table::open), 0) << "a closed port can be opened again";
    EXPECT_EQ(port.Call(&Table::open), kParameter);
    EXPECT_EQ(port.Call(&Table::close), 0);
    ExpectAllRefused(port);
  }
  EXPECT_EQ(port.message, "the port is not open");
  EXPECT_EQ(port.Call(&Table::open), 0);
  EXPECT_EQ(port.Call(&Table::terminate), 0);
  ExpectAllRefused(port);
}

TEST_P(PortContractTest, RefusesUnusableArguments) {
  Port port;
  ASSERT_EQ(port.Initialise(printer_->uri()), 0);
  ASSERT_EQ(port.Call(&Table::open), 0);
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
    EXPECT_EQ(answer.answerLength, length);
  }
  long* const no_length = nullptr;
  ControlElement* const no_block = nullptr;
  EXPECT_EQ(port.Call(&Table::write, &byte, no_length), kParameter);
  EXPECT_EQ(port.Call(&Table::read, &byte, no_length), kParameter);
  EXPECT_EQ(port.Call(&Table::status, none), kParameter);
  EXPECT_EQ(port.Call(&Table::control, no_block), kParameter);
  EXPECT_EQ(port.Call(&Table::ioctl, 6L, static_cast<void*>(nullptr)), kParameter);
  EXPECT_EQ(port.Call(&Table::ioctl, 5L, static_cast<void*>(&byte)), kUnsupported);
  EXPECT_EQ(port.Call(&Table::getInfo, static_cast<ZIOXInfo*>(nullptr)), kUnsupported);
  EXPECT_EQ(port.code, kUnsupported);
}

TEST_P(PortContractTest, CarriesData) {
  Port port;
  ASSERT_EQ(port.Initialise(printer_->uri()), 0);
  ASSERT_EQ(port.Call(&Table::open), 0);
  char command[] = "ping", reply[8] = "#######";
  long length = 4;
  EXPECT_EQ(port.Call(&Table::write, command, &length), 0);
  EXPECT_EQ(length, 4);
  EXPECT_EQ(port.Call(&Table::flush, static_cast<unsigned char>(0)), 0);
  EXPECT_EQ(port.Call(&Table::tab), 0);
  EXPECT_EQ(port.Call(&Table::read, reply, &length), 0);
  EXPECT_EQ(length, 4);
  EXPECT_STREQ(reply, "pong###");
  EXPECT_EQ(port.Call(&Table::close), 0);

  ASSERT_EQ(port.Call(&Table::open), 0);
  char answer[8] = "#######";
  ControlElement block{command, 4, answer, 7};
  EXPECT_EQ(port.Call(&Table::control, &block), 0);
  EXPECT_STREQ(answer, "pong###") << "what the reply leaves free stays";
  EXPECT_EQ(port.Call(&Table::close), 0);
}

TEST_P(PortContractTest, ShowsTheStatus) {
  Port port;
  ASSERT_EQ(port.Initialise(printer_->uri()), 0);
  ASSERT_EQ(port.Call(&Table::open), 0);
  const std::string longest(256, 's');
  for (const std::string& status : {std::string("@BDC\0ST\r\n", 9), longest, longest + "more"}) {
    char buffer[ZIO_STATUS_BUFFER_SIZE] = {};
    printer_->SetStatus(status);
    EXPECT_EQ(port.Call(&Table::status, buffer), 0);
    EXPECT_EQ(std::string(buffer, 257), (status + std::string(257, '\0')).substr(0, 256) + '\0');
  }
  char untouched[ZIO_STATUS_BUFFER_SIZE] = "as before";
  printer_->SetStatus("");
  EXPECT_EQ(port.Call(&Table::status, untouched), kPrinter);
  EXPECT_STREQ(untouched, "as before");
}

INSTANTIATE_TEST_SUITE_P(Ports, PortContractTest, testing::Values(MakeNetworkDouble),
                         [](const auto&) { return "Network"; });

TEST(PortInterfaceTest, RefusesToInitialise) {
  const struct {
    const char* what;
    CFRef<CFTypeRef> information;
    int version;
    int code;
    const char* message;
  } kRows[] = {
      {"null", {}, 2, kParameter, "no data"},
      {"a string", CFRef<CFTypeRef>::Retain(CFSTR("socket://h")), 2, kParameter, "no data"},
      {"no bytes", CFRef<CFTypeRef>(CFDataCreate(nullptr, nullptr, 0)), 2, kParameter, "no scheme"},
      {"another version", {}, 1, kUnsupported, "version"},
  };
  for (const auto& row : kRows) {
    Port port;
    EXPECT_EQ(port.InitialiseWith(row.information.get(), row.version), row.code) << row.what;
    EXPECT_EQ(port.code, row.code);
    EXPECT_THAT(port.message, testing::HasSubstr(row.message)) << row.what;
  }
  Port port;
  EXPECT_EQ(port.Initialise("file:///dev/usb/lp0"), kUnsupported);
  EXPECT_EQ(port.Call(&Table::initialise, 2, static_cast<const ZIOOpenParameter*>(nullptr)),
            kParameter);
}

TEST(PortInterfaceTest, HandsOverAnswersOfEverySize) {
  std::string answer;
  UdpPeer peer([&](const std::string&, int) { return std::vector{answer}; });
  Port port;
  ASSERT_EQ(port.Initialise("socket://127.0.0.1?timeout=200&retries=0&snmp=" +
                            std::to_string(peer.port())),
            0);
  ASSERT_EQ(port.Call(&Table::open), 0);
  const std::string request = SampleRequest();
  for (const std::size_t size : {0U, 511U, 512U, 513U, 65507U}) {
    SCOPED_TRACE(size);
    answer = size == 0 ? "" : SampleAnswer(size);
    char buffer[512] = "as before";
    ZIOSnmpExchange block{request.data(), static_cast<int64_t>(request.size()), buffer, 512};
    const int code = port.Call(&Table::ioctl, 6L, static_cast<void*>(&block));
    if (size == 0) {
      EXPECT_EQ(code, kTimeout);
      EXPECT_EQ(block.answerLength, 512);
      EXPECT_STREQ(buffer, "as before");
      continue;
    }
    ASSERT_EQ(code, 0) << "the error callback's cancel ended an operation that came after it";
    EXPECT_EQ(block.answer == buffer, size <= 512);
    EXPECT_EQ(std::string(block.answer, static_cast<std::size_t>(block.answerLength)), answer);
  }
}

}  // namespace
}  // namespace ZIOP

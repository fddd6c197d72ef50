// Contracts of the port I/O interface's slots: order, arguments, failures, answers' places.
#include "tests/port_driver/Peers.h"
#include "tests/port_driver/PluggedPort.h"
#include "tests/port_driver/SnmpSamples.h"

namespace ZIOP {
namespace {

using Table = ZIOPortTable;
constexpr int kParameter = -2, kUnsupported = -5;
constexpr char kNowhere[] = "socket://127.0.0.1";  // never sent to

void ExpectClosed(PluggedPort& port) {
  char buffer[ZIO_STATUS_BUFFER_SIZE];
  EXPECT_EQ(port.Call(&Table::close), kParameter);
  EXPECT_EQ(port.Exchange(SampleRequest()), "code -2");
  EXPECT_EQ(port.Write("x"), kParameter);
  EXPECT_EQ(port.Flush(), kParameter);
  EXPECT_EQ(port.Call(&Table::tab), kParameter);
  EXPECT_EQ(port.Call(&Table::status, buffer), kParameter);
  EXPECT_EQ(port.Read(1), "code -2");
  EXPECT_EQ(port.Control("x", 1), "code -2");
}

TEST(PortSlotsTest, RefuseCallsOutOfOrder) {
  PluggedPort port;
  ExpectClosed(port);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
  EXPECT_EQ(port.Call(&Table::cancel), kParameter);
  EXPECT_EQ(port.Call(&Table::terminate), kParameter);
  ASSERT_EQ(port.Initialise(kNowhere), 0);
  EXPECT_EQ(port.Initialise(kNowhere), kParameter);
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

TEST(PortSlotsTest, RefuseUnusableArguments) {
  PluggedPort port(kNowhere);
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
  EXPECT_EQ(port.Exchange("no message"), "code -2");
}

TEST(PortSlotsTest, RefuseToInitialise) {
  PluggedPort port;
  EXPECT_EQ(port.Initialise(CFRef<CFTypeRef>()), kParameter);
  EXPECT_EQ(port.Initialise(CFRef<CFTypeRef>::Retain(CFSTR("socket://h"))), kParameter);
  EXPECT_EQ(port.Initialise(std::string()), kParameter);
  EXPECT_EQ(port.error, "device URI: no scheme");
  EXPECT_EQ(port.Initialise("file:///dev/usb/lp0"), kUnsupported);
  EXPECT_EQ(port.Initialise(CFRef<CFTypeRef>(), 1), kUnsupported);
  EXPECT_EQ(port.Call(&Table::initialise, 2, static_cast<const ZIOOpenParameter*>(nullptr)),
            kParameter);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
}

TEST(PortSlotsTest, StatusTextsFitTheBuffer) {
  std::string status;
  const Peer peer = UdpPeer([&](const std::string& request) {
    SnmpSample answer;
    answer.id = request.substr(17, 4);
    answer.name = request.substr(request.size() - 16, 14);
    answer.value = Element(status.empty() ? 0x05 : 0x04, status);
    return std::vector{answer.Bytes()};
  });
  PluggedPort port("socket://127.0.0.1?snmp=" + std::to_string(peer.port()));
  for (const std::size_t length : {1U, 256U, 257U}) {
    char buffer[ZIO_STATUS_BUFFER_SIZE] = {};
    status = std::string(length, 's').replace(0, 1, 1, '\0');
    EXPECT_EQ(port.Call(&Table::status, buffer), 0);
    status.resize(std::min<std::size_t>(length, 256));
    EXPECT_EQ(std::string(buffer, sizeof buffer), status + std::string(257 - status.size(), '\0'));
  }
  char untouched[ZIO_STATUS_BUFFER_SIZE] = "as before";
  status = "";
  EXPECT_EQ(port.Call(&Table::status, untouched), -8);
  EXPECT_STREQ(untouched, "as before");
}

}  // namespace
}  // namespace ZIOP

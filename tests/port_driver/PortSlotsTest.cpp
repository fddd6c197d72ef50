// Contracts of the port I/O interface's slots: order, arguments, failures, answers' places.
#include <future>

#include "port_driver/SnmpMessage.h"
#include "tests/port_driver/Peer.h"
#include "tests/port_driver/PluggedPort.h"

namespace ZIOP {
namespace {

using fake_plugin::MakeData;
using Table = ZIOPortTable;
constexpr int kParameter = -2, kUnsupported = -5;
constexpr char kNowhere[] = "socket://127.0.0.1";  // never sent to

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

TEST(PortSlotsTest, RefuseCallsOutOfOrder) {
  PluggedPort port;
  ExpectClosed(port);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
  EXPECT_EQ(port.Call(&Table::cancel), kParameter);
  EXPECT_EQ(port.Call(&Table::terminate), kParameter);
  ASSERT_EQ(port.Initialise(MakeData(kNowhere)), 0);
  EXPECT_EQ(port.Initialise(MakeData(kNowhere)), kParameter);
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
  EXPECT_EQ(port.Initialise(fake_plugin::MakeText("socket://h")), kParameter);
  EXPECT_EQ(port.Initialise(MakeData("")), kParameter);
  EXPECT_EQ(port.error, "device URI: no scheme");
  EXPECT_EQ(port.Initialise(MakeData("file:///dev/usb/lp0")), kUnsupported);
  EXPECT_EQ(port.Initialise(MakeData(kNowhere), 1), kUnsupported);
  EXPECT_EQ(port.Call(&Table::initialise, 2, static_cast<const ZIOOpenParameter*>(nullptr)),
            kParameter);
  EXPECT_EQ(port.Call(&Table::open), kParameter);
}

TEST(PortSlotsTest, StatusTextsFitTheBuffer) {
  const std::string longest = '\0' + std::string(255, 's');
  const struct {
    std::string value;
    int result;
    std::string text;
  } kRows[] = {
      {Element(0x04, "s"), 0, std::string("s\0", 2)},
      {Element(0x04, longest), 0, longest + '\0'},
      {Element(0x04, longest + "s"), 0, longest + '\0'},
      {Element(0x05, ""), -8, ""},
  };
  Peer peer(SOCK_DGRAM);
  PluggedPort port(Uri(9100, kPatient + ("&snmp=" + std::to_string(peer.port()))));
  for (const auto& row : kRows) {
    std::string buffer(ZIO_STATUS_BUFFER_SIZE, '#');
    auto result =
        std::async(std::launch::async, [&] { return port.Call(&Table::status, buffer.data()); });
    peer.Send(SnmpAnswer(peer.Receive(), row.value));
    EXPECT_EQ(result.get(), row.result);
    EXPECT_EQ(buffer, row.text + std::string(buffer.size() - row.text.size(), '#'));
  }
}

}  // namespace
}  // namespace ZIOP

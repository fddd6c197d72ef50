// Which calls an operation makes on a port, in which order, and the code that it leaves.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "printer_control/PrinterController.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using Ravik::APPLICATION_ERROR;
using Ravik::CommandVO;
using Ravik::CPrinterController;
using Ravik::ParameterMapVO;

constexpr char kDevice[] = "QM-R410 Series";
constexpr auto kUntouched = static_cast<APPLICATION_ERROR>(-99);

std::string InRemoteMode(const std::string& digits) {
  return "1B401B285208000052454D4F544531" + digits + "1B000000";
}

class ControllerTest : public testing::Test {
 protected:
  ControllerTest() {
    fake_plugin::StorePrinters({{"network", kDevice, "n", ZIO_PORT_TYPE_TCPIP},
                                {"local", kDevice, "l", ZIO_PORT_TYPE_LOCAL}});
    record_.insert("CustomMediaNo", 3);
    record_.insert("CommandVersion", 0);
  }

  // The calls on the port since the last time, without those of loading and ending.
  static std::string PortCalls() {
    const std::set<std::string> names{"open",  "ioctl", "status",  "write",
                                      "flush", "read",  "control", "close"};
    std::string calls;
    for (const std::string& call : fake_plugin::TakeCalls()) {
      const std::string name = call.substr(0, call.find(' '));
      if (names.count(name) == 0) continue;
      calls += (calls.empty() ? "" : ", ") + (name == "ioctl" ? name : call);
    }
    EXPECT_EQ(fake_plugin::LiveObjects(), 0);
    return calls;
  }

  fake_plugin::Session plugin_;
  ParameterMapVO record_;
  ParameterMapVO out_;
  APPLICATION_ERROR error_ = kUntouched;
};

TEST_F(ControllerTest, StatusFiguresAreCopiedAsFarAsAskedFor) {
  const char status[] = "text\r\n\x06\x00\x01\x01\x04\x02\x01\x55";
  fake_plugin::script().status = std::string(status, sizeof status - 1);
  ParameterMapVO asked;
  asked.insert("ErrorCode");
  asked.insert("SerialNumber");
  EXPECT_TRUE(
      CPrinterController::Read(Ravik::READ_STATUS, {"network", "unknown"}, asked, out_, error_));
  EXPECT_EQ(error_, Ravik::ERROR_NONE);
  EXPECT_EQ(PortCalls(), "open, status, close");
  EXPECT_TRUE(out_.size() == 1 && out_.isKey("ErrorCode"));

  fake_plugin::script().results["status"] = -3;
  EXPECT_FALSE(
      CPrinterController::Read(Ravik::READ_STATUS, {"network", kDevice}, asked, out_, error_));
  EXPECT_EQ(error_, Ravik::ERROR_TRANSFER);
}

TEST_F(ControllerTest, ReadsAndWrites) {
  record_.insert("SettingAll", "AB");
  record_.insert("InitializeCustomMedia", 1);
  const std::string read = InRemoteMode("45580800010000001B370300");
  const std::string record = InRemoteMode("45581800000000001B370300" + std::string(32, 'F'));
  const std::string block = "45580900000000001B370300AB";
  const std::string both = InRemoteMode(block + "53560000");
  const std::string reset = InRemoteMode("45580700000000001E3781");
  const std::string direct = ", flush 0, write " + InRemoteMode("53560000") + ", flush 0, close";
  const std::string exchange = "open, ioctl, close";
  const std::string accepted = "EX:0000001B370300";
  constexpr auto kRead = Ravik::READ_CUSTOMMEDIA_INFO1;
  constexpr auto kWrite = Ravik::WRITE_CUSTOMMEDIA_INFO1;
  constexpr auto kBlock = Ravik::WRITE_CUSTOMMEDIA_INFO3;
  constexpr auto kReset = Ravik::WRITE_MEDIA_INITIALIZE;
  const struct {
    const char* printer;
    const char* device;
    Ravik::COMMAND_KEY key;
    const char* failing;  // call, or none
    int code;
    std::string calls;
    std::string reply{};
  } kCases[] = {
      {"network", kDevice, kRead, "", 0, exchange, accepted},
      {"local", kDevice, kRead, "", 0, "open, write " + read + ", flush 0, read 512, close",
       accepted},
      {"network", "unknown", kRead, "", -1, "", accepted},
      {"unlisted", kDevice, kRead, "", -4, "", accepted},
      {"network", kDevice, kRead, "open", -4, "open", accepted},
      {"network", kDevice, kRead, "ioctl", -6, exchange, accepted},
      {"network", kDevice, kRead, "", -7, exchange, "no header"},
      {"network", kDevice, kRead, "", -1, exchange,
       "EX:0000001B" + std::string(512 - 11 - 4, 'x') + "NA;?"},
      // A close that fails in the plug-in is no failure of closing the port object.
      {"network", kDevice, kRead, "close", 0, exchange, accepted},
      {"network", kDevice, kWrite, "", 0, "open, ioctl, ioctl, close"},
      {"network", kDevice, kBlock, "", 0, "open, write " + both + ", flush 0, close"},
      {"local", kDevice, kWrite, "", 0, "open, write " + record + direct},
      {"local", kDevice, kBlock, "", 0, "open, write " + InRemoteMode(block) + direct},
      {"unlisted", "unknown", kReset, "", -4, ""},
      {"network", kDevice, kReset, "open", -4, "open"},
      // Built while the printer is open; the code stays for what is not opening.
      {"network", "unknown", kReset, "", kUntouched, "open, close"},
      // After a failed command the printer is not told to keep it.
      {"network", kDevice, kReset, "ioctl", kUntouched, exchange},
      {"network", kDevice, kBlock, "write", kUntouched, "open, write " + both + ", close"},
      {"local", kDevice, kReset, "flush", kUntouched, "open, write " + reset + ", flush 0, close"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.printer) + ' ' + c.device + ' ' + c.failing + ' ' + c.calls);
    fake_plugin::script() = {};
    fake_plugin::script().replies = {c.reply};
    if (*c.failing != '\0') fake_plugin::script().results[c.failing] = -3;
    error_ = kUntouched;
    ParameterMapVO out;
    const auto operate = c.key == kRead ? CPrinterController::Read : CPrinterController::Write;
    EXPECT_EQ(operate(c.key, {c.printer, c.device}, record_, out, error_), c.code == 0);
    EXPECT_EQ(error_, c.code);
    EXPECT_EQ(PortCalls(), c.calls);
    EXPECT_EQ(out.size() != 0, c.code == 0 && c.key == kRead);
  }
}

TEST_F(ControllerTest, AWriteThatIsNotMadePermanentIsNotDone) {
  fake_plugin::script().on_exchange = [](ZIOSnmpExchange&) {
    fake_plugin::script().results["ioctl"] = -3;  // from the second one on
  };
  EXPECT_FALSE(CPrinterController::Write(Ravik::WRITE_CUSTOMMEDIA_INFO1, {"network", kDevice},
                                         record_, out_, error_));
  EXPECT_EQ(error_, kUntouched);
  EXPECT_EQ(PortCalls(), "open, ioctl, ioctl, close");
}

TEST_F(ControllerTest, CommandsOutsideRemoteModeUseTheD4Channel) {
  fake_plugin::script().replies = {"reply"};
  const unsigned char bytes[] = {0x41, 0x42};
  CommandVO reply;
  EXPECT_TRUE(CPrinterController::SendCommand({"network", kDevice}, CommandVO(bytes, 2), true,
                                              &reply, error_));
  EXPECT_EQ(PortCalls(), "open, control 4142 512, close");
  EXPECT_EQ(reply.bytes().size(), 512U);
}

}  // namespace

// Which calls an operation makes on a port, in which order, and the code that it leaves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "printer_control/PrinterController.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using Ravik::APPLICATION_ERROR;
using Ravik::CommandVO;
using Ravik::CPrinterController;
using Ravik::ParameterMapVO;
using Ravik::PrinterVO;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kDevice[] = "QM-R410 Series";
constexpr auto kUntouched = static_cast<APPLICATION_ERROR>(-99);

const char kStart[] = "1B401B285208000052454D4F544531";
const char kEnd[] = "1B000000";

class ControllerTest : public testing::Test {
 protected:
  ControllerTest() {
    fake_plugin::StorePrinters({{"network", kDevice, "n", ZIO_PORT_TYPE_TCPIP},
                                {"local", kDevice, "l", ZIO_PORT_TYPE_LOCAL}});
    record_.insert("CustomMediaNo", 3);
    record_.insert("CommandVersion", 0);
  }

  static PrinterVO Printer(const std::string& name, const std::string& device = kDevice) {
    return {name, device};
  }

  // The calls on the port since the last time, without those of loading and ending.
  static std::vector<std::string> PortCalls() {
    std::vector<std::string> calls;
    for (const std::string& call : fake_plugin::TakeCalls()) {
      const std::string name = call.substr(0, call.find(' '));
      const bool isLoading = name == "factory" || name == "AddRef" || name == "QueryInterface" ||
                             name == "Release" || name == "initialise" || name == "terminate" ||
                             name == "release";
      if (!isLoading) calls.push_back(name == "ioctl" ? "ioctl" : call);
    }
    EXPECT_EQ(fake_plugin::LiveObjects(), 0);
    return calls;
  }

  fake_plugin::Session plugin_;
  ParameterMapVO record_;
  ParameterMapVO out_;
  APPLICATION_ERROR error_ = kUntouched;
};

TEST_F(ControllerTest, ARemoteReadGoesOverTheNetworkAsOneSnmpExchange) {
  fake_plugin::script().replies = {"EX:0000001B370300"};
  EXPECT_TRUE(CPrinterController::Read(Ravik::READ_CUSTOMMEDIA_INFO1, Printer("network"), record_,
                                       out_, error_));
  EXPECT_EQ(error_, Ravik::ERROR_NONE);
  EXPECT_THAT(PortCalls(), ElementsAre("open", "ioctl", "close"));
  int device = 0;
  ASSERT_TRUE(out_.find("DeviceID", device));
  EXPECT_EQ(device, 0x37);
}

TEST_F(ControllerTest, ARemoteReadOnALocalPortIsFramed) {
  fake_plugin::script().replies = {"EX:0000001B370300"};
  EXPECT_TRUE(CPrinterController::Read(Ravik::READ_CUSTOMMEDIA_INFO1, Printer("local"), record_,
                                       out_, error_));
  EXPECT_THAT(
      PortCalls(),
      ElementsAre("open", std::string("write ") + kStart + "45580800010000001B370300" + kEnd,
                  "flush 0", "read 512", "close"));
}

TEST_F(ControllerTest, ReadsThatFail) {
  const struct {
    const char* printer;
    const char* device;
    const char* failing;  // call, or none
    const char* reply;
    int code;
    std::vector<std::string> calls;
  } kCases[] = {
      {"network", "unknown", nullptr, "", -1, {}},
      {"unlisted", kDevice, nullptr, "", -4, {}},
      {"network", kDevice, "open", "", -4, {"open"}},
      {"network", kDevice, "ioctl", "", -6, {"open", "ioctl", "close"}},
      {"network", kDevice, nullptr, "no header", -7, {"open", "ioctl", "close"}},
      // A close that fails in the plug-in is no failure of closing the port object.
      {"network", kDevice, "close", "EX:0000001B37", 0, {"open", "ioctl", "close"}},
  };
  for (const auto& c : kCases) {
    fake_plugin::script() = {};
    fake_plugin::script().replies = {c.reply};
    if (c.failing != nullptr) fake_plugin::script().results[c.failing] = -3;
    error_ = kUntouched;
    ParameterMapVO out;
    EXPECT_EQ(CPrinterController::Read(Ravik::READ_CUSTOMMEDIA_INFO1, Printer(c.printer, c.device),
                                       record_, out, error_),
              c.code == 0);
    EXPECT_EQ(error_, c.code) << c.printer << ' ' << c.device;
    EXPECT_EQ(PortCalls(), c.calls) << c.printer << ' ' << c.device;
    EXPECT_EQ(out.size() != 0, c.code == 0);
  }
}

TEST_F(ControllerTest, AReadRefusedAtTheVeryEndOfTheReply) {
  fake_plugin::script().replies = {"EX:0000001B" + std::string(512 - 11 - 4, 'x') + "NA;?"};
  EXPECT_FALSE(CPrinterController::Read(Ravik::READ_CUSTOMMEDIA_INFO1, Printer("network"), record_,
                                        out_, error_));
  EXPECT_EQ(error_, -1);
}

TEST_F(ControllerTest, StatusFiguresAreCopiedAsFarAsAskedFor) {
  const char status[] = "text\r\n\x06\x00\x01\x01\x04\x02\x01\x55";
  fake_plugin::script().status = std::string(status, sizeof status - 1);
  ParameterMapVO asked;
  asked.insert("ErrorCode");
  asked.insert("SerialNumber");
  EXPECT_TRUE(CPrinterController::Read(Ravik::READ_STATUS, Printer("network", "unknown"), asked,
                                       out_, error_));
  EXPECT_EQ(error_, Ravik::ERROR_NONE);
  EXPECT_THAT(PortCalls(), ElementsAre("open", "status", "close"));
  EXPECT_EQ(out_.size(), 1U);
  EXPECT_TRUE(out_.isKey("ErrorCode"));

  fake_plugin::script().results["status"] = -3;
  EXPECT_FALSE(
      CPrinterController::Read(Ravik::READ_STATUS, Printer("network"), asked, out_, error_));
  EXPECT_EQ(error_, Ravik::ERROR_TRANSFER);
}

TEST_F(ControllerTest, WritesTakeThePathThatConnectionAndCommandCallFor) {
  const std::string write =
      "45581800000000001B3703"
      "00" +
      std::string(32, 'F');
  record_.insert("SettingAll", "AB");
  const std::string block = "45580900000000001B370300AB";
  const std::string sv = "53560000";
  const struct {
    const char* printer;
    Ravik::COMMAND_KEY key;
    std::vector<std::string> calls;
  } kCases[] = {
      {"network", Ravik::WRITE_CUSTOMMEDIA_INFO1, {"open", "ioctl", "ioctl", "close"}},
      {"network",
       Ravik::WRITE_CUSTOMMEDIA_INFO3,
       {"open", "write " + (kStart + block + sv + kEnd), "flush 0", "close"}},
      {"local",
       Ravik::WRITE_CUSTOMMEDIA_INFO1,
       {"open", "write " + (kStart + write + kEnd), "flush 0", "write " + (kStart + sv + kEnd),
        "flush 0", "close"}},
      {"local",
       Ravik::WRITE_CUSTOMMEDIA_INFO3,
       {"open", "write " + (kStart + block + kEnd), "flush 0", "write " + (kStart + sv + kEnd),
        "flush 0", "close"}},
  };
  for (const auto& c : kCases) {
    EXPECT_TRUE(CPrinterController::Write(c.key, Printer(c.printer), record_, out_, error_));
    EXPECT_EQ(error_, Ravik::ERROR_NONE);
    EXPECT_EQ(PortCalls(), c.calls) << c.printer << ' ' << c.key;
  }
  EXPECT_EQ(out_.size(), 0U);
}

TEST_F(ControllerTest, WritesThatFailLeaveTheCodeButForOpening) {
  const struct {
    const char* printer;
    const char* device;
    const char* failing;
    int code;
    std::vector<std::string> calls;
  } kCases[] = {
      {"unlisted", "unknown", nullptr, -4, {}},
      {"network", kDevice, "open", -4, {"open"}},
      {"network", "unknown", nullptr, kUntouched, {"open", "close"}},
      // After a failed command the printer is not told to keep it.
      {"network", kDevice, "ioctl", kUntouched, {"open", "ioctl", "close"}},
      {"local",
       kDevice,
       "flush",
       kUntouched,
       {"open", std::string("write ") + kStart + "45580700000000001E3781" + kEnd, "flush 0",
        "close"}},
  };
  ParameterMapVO initialise;
  initialise.insert("InitializeCustomMedia", 1);
  for (const auto& c : kCases) {
    fake_plugin::script() = {};
    if (c.failing != nullptr) fake_plugin::script().results[c.failing] = -3;
    error_ = kUntouched;
    EXPECT_FALSE(CPrinterController::Write(Ravik::WRITE_MEDIA_INITIALIZE,
                                           Printer(c.printer, c.device), initialise, out_, error_));
    EXPECT_EQ(error_, c.code) << c.printer << ' ' << c.device;
    EXPECT_EQ(PortCalls(), c.calls) << c.printer << ' ' << c.device;
  }
}

TEST_F(ControllerTest, CommandsOutsideRemoteModeUseTheD4Channel) {
  fake_plugin::script().replies = {"reply"};
  const unsigned char bytes[] = {0x41, 0x42};
  CommandVO reply;
  EXPECT_TRUE(CPrinterController::SendCommand(Printer("network"), CommandVO(bytes, 2), true, &reply,
                                              error_));
  EXPECT_THAT(PortCalls(), ElementsAre("open", "control 4142 512", "close"));
  EXPECT_EQ(reply.bytes().size(), 512U);
  EXPECT_FALSE(CPrinterController::SendSpooler(Printer("unlisted"), CommandVO(bytes, 2), error_));
  EXPECT_EQ(error_, Ravik::ERROR_OPEN);
  EXPECT_THAT(PortCalls(), IsEmpty());
}

}  // namespace

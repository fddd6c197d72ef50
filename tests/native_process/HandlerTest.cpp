// How writes are confirmed by reading back.
#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "NativeProcess/PrinterProcess.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using Ravik::ParameterMapVO;
using Ravik::PrinterProcess;
using Ravik::PrinterVO;

constexpr char kAccepted[] = "EX:OK;";

// A record of slot 3 in layout 0 with this media suction, in the printer's digits.
std::string Record(const std::string& suction, const std::string& flag = "01") {
  return "EX:0000001B37030002FFFFFFFFFFFF" + suction + "FFFFFFFFFFFFFF" + flag + ';';
}

class HandlerTest : public testing::Test {
 protected:
  HandlerTest() { fake_plugin::StorePrinters({{"p", "QM-R410 Series", "a"}}); }

  static int Exchanges() {
    int exchanges = 0;
    for (const auto& call : fake_plugin::TakeCalls()) exchanges += call.rfind("ioctl", 0) == 0;
    return exchanges;
  }

  const PrinterVO printer_{"p", "QM-R410 Series"};
  fake_plugin::Session plugin_;
  ParameterMapVO in_;
  ParameterMapVO out_;
};

TEST_F(HandlerTest, AWriteIsReadBackUntilThePrinterAgreesOrTheReadingFails) {
  in_.insert("CommandVersion", 0);
  in_.insert("CustomMediaNo", 3);
  in_.insert("MediaSuction", 4);
  in_.insert("NoSuchSetting", "does not count");
  fake_plugin::script().replies = {kAccepted, kAccepted, Record("03"), Record("04")};
  EXPECT_EQ(PrinterProcess::SetCustomMediaInfo(printer_, in_, out_), 0);
  EXPECT_EQ(Exchanges(), 4);
  fake_plugin::script().replies = {kAccepted, kAccepted, "no header", Record("04")};
  EXPECT_EQ(PrinterProcess::SetCustomMediaInfo(printer_, in_, out_), -6);
  EXPECT_EQ(Exchanges(), 3);
  EXPECT_EQ(out_.size(), 0U);
}

// The time is the process's own: a wait that costs little work goes on for long.
TEST_F(HandlerTest, TheWaitIsMeasuredInProcessorTime) {
  in_.insert("CommandVersion", 0);
  in_.insert("MediaSuction", "4");  // a text never equals the number that is read back
  int readings = 0;
  fake_plugin::script().responder = [&](const std::string&) {
    if (++readings == 3) {
      const std::clock_t start = std::clock();
      while (std::clock() - start < 10000) {
      }
    }
    return Record("04");
  };
  EXPECT_EQ(PrinterProcess::SetCustomMediaInfo(printer_, in_, out_), -6);
  EXPECT_LE(readings, 3);
}

TEST_F(HandlerTest, InitialisingANumberedRecordWaitsUntilItIsUnregistered) {
  in_.insert("InitializeCustomMedia", 3);
  fake_plugin::script().replies = {kAccepted, kAccepted, Record("04", "01"), Record("04", "00")};
  EXPECT_EQ(PrinterProcess::SetMediaInitialize(printer_, in_, out_), 0);
  EXPECT_EQ(Exchanges(), 4);

  ParameterMapVO all;
  all.insert("InitializeCustomMedia", "All");
  fake_plugin::script().replies = {kAccepted, kAccepted};
  EXPECT_EQ(PrinterProcess::SetMediaInitialize(printer_, all, out_), 0);
  EXPECT_EQ(Exchanges(), 2);
}

}  // namespace

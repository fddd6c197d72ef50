// Printers that are listed for a day after they were found.
#include "port_driver/PrinterMemory.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "corefoundation/Foundation.h"
#include "tests/port_driver/TemporaryFolder.h"

namespace ZIOP {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kAddresses = {"192.0.2.255", "printer"};
const auto kNow = std::chrono::system_clock::now();

FoundPrinter Printer(const std::string& address, const std::string& serial,
                     const std::string& model = "Model A") {
  FoundPrinter printer;
  printer.uri = "socket://" + address;
  printer.address = address;
  printer.model = model;
  printer.serial = serial;
  printer.asked = "192.0.2.255";
  return printer;
}

class PrinterMemoryTest : public testing::Test {
 protected:
  PrinterMemoryTest() { setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1); }

  // URIs and serial numbers of what is recalled, after the printers were found.
  std::vector<std::string> Recall(std::vector<FoundPrinter> found,
                                  std::chrono::system_clock::time_point now = kNow,
                                  const std::vector<std::string>& addresses = kAddresses,
                                  const std::vector<std::string>& models = {"Model A"}) {
    std::vector<std::string> texts;
    for (const FoundPrinter& printer :
         RecallPrinters(found, addresses, SupportedModels(models), now)) {
      texts.push_back(printer.uri + " " + printer.serial);
    }
    found_ = std::move(found);
    return texts;
  }

  const TemporaryFolder folder_;
  const std::filesystem::path file_ = std::filesystem::path(folder_.path()) / "ZIOP.plist";
  std::vector<FoundPrinter> found_;  // with what was filled in
};

TEST_F(PrinterMemoryTest, ListsWhatWasFoundWithinADay) {
  EXPECT_THAT(Recall({}), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(file_)) << "nothing to remember";
  EXPECT_THAT(Recall({Printer("192.0.2.1", "AB10001"), Printer("192.0.2.2", ""),
                      Printer("192.0.2.3", "AB10003", "Another")}),
              IsEmpty());
  EXPECT_THAT(Recall({Printer("192.0.2.2", "AB10002")}, kNow + hours(20)),
              ElementsAre("socket://192.0.2.1 AB10001"));
  EXPECT_THAT(Recall({}, kNow + hours(24)),
              ElementsAre("socket://192.0.2.2 AB10002", "socket://192.0.2.1 AB10001"));
  EXPECT_THAT(Recall({}, kNow + hours(25)), ElementsAre("socket://192.0.2.2 AB10002"));
  EXPECT_THAT(Recall({}, kNow + hours(45)), IsEmpty());
}

TEST_F(PrinterMemoryTest, ForgetsWhatNoLongerHolds) {
  const struct {
    const char* what;
    std::vector<FoundPrinter> found;
    std::chrono::system_clock::time_point now;
    std::vector<std::string> addresses;
    std::vector<std::string> models;
    bool holds;
  } kCases[] = {
      {"as before", {}, kNow, kAddresses, {"Model A"}, true},
      {"a clock that was ahead", {}, kNow - hours(1), kAddresses, {"Model A"}, false},
      {"another network", {}, kNow, {"printer"}, {"Model A"}, false},
      {"other models", {}, kNow, kAddresses, {"Model B"}, false},
      {"another address", {Printer("192.0.2.9", "AB10001")}, kNow, kAddresses, {"Model A"}, false},
      {"another printer", {Printer("192.0.2.1", "ZZ20002")}, kNow, kAddresses, {"Model A"}, false},
      {"one of many", {Printer("192.0.2.9", "ZZ20002")}, kNow, kAddresses, {"Model A"}, true},
      {"no telling number", {Printer("192.0.2.9", "00000")}, kNow, kAddresses, {"Model A"}, true},
  };
  for (const auto& each : kCases) {
    std::filesystem::remove(file_);
    Recall({Printer("192.0.2.1", "AB10001")});
    EXPECT_THAT(Recall(each.found, each.now, each.addresses, each.models),
                testing::SizeIs(each.holds ? 1 : 0))
        << each.what;
  }
}

TEST_F(PrinterMemoryTest, FillsInWhatGotLost) {
  Recall({Printer("192.0.2.1", "AB10001"), Printer("192.0.2.2", "AB10002")});
  Recall({Printer("192.0.2.1", ""), Printer("192.0.2.2", "", "Model B")}, kNow, kAddresses,
         {"Model A", "Model B"});
  EXPECT_EQ(found_[0].serial, "AB10001");
  EXPECT_EQ(found_[1].serial, "") << "another model";

  // The maker in the identifier decides which words are the model.
  Recall({Printer("192.0.2.3", "AB10003")});
  found_[0].deviceId = "MFG:Model;MDL:B;";
  Recall(found_);
  Recall({Printer("192.0.2.3", "AB10003", "Maker Model A")});
  EXPECT_EQ(found_[0].serial, "AB10003");
  EXPECT_EQ(found_[0].deviceId, "") << "would make it a printer that is not supported";
}

TEST_F(PrinterMemoryTest, TakesADamagedFileForEmpty) {
  Recall({Printer("192.0.2.1", "AB10001"), Printer("192.0.2.2", "AB10002")});
  std::ifstream stored(file_);
  const std::string whole{std::istreambuf_iterator<char>(stored), {}};
  for (std::size_t cut = 0; cut < whole.size(); cut += 97) {
    std::ofstream(file_) << whole.substr(0, cut);
    EXPECT_THAT(Recall({}), IsEmpty()) << cut;
  }
  for (const char* list :
       {"<array><string/></array>", "<dict/>", "<array><dict/><dict><key>URI</key><true/></dict>",
        "<array><dict><key>Time</key><data>OQ==</data></dict></array>"}) {
    std::ofstream(file_) << "<plist><dict><key>networkPrinters</key>" << list << "</dict></plist>";
    EXPECT_THAT(Recall({}), IsEmpty()) << list;
  }
  // It is written again.
  Recall({Printer("192.0.2.1", "AB10001")});
  EXPECT_THAT(Recall({}), testing::SizeIs(1));
}

TEST_F(PrinterMemoryTest, HoldsALimitedNumber) {
  std::vector<FoundPrinter> found;
  for (std::size_t i = 0; i < kMaximumRemembered + 100; ++i) {
    found.push_back(Printer("192.0.2." + std::to_string(i), ""));
    found.back().description = std::string(5000, 'x');
  }
  Recall(found);
  EXPECT_EQ(Recall({}).size(), kMaximumRemembered);
}

}  // namespace
}  // namespace ZIOP

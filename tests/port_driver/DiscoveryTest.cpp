// Searches that the plug-in runs for the list of printers.
#include <filesystem>

#include "printer_io/MakeZIOPortInfo.h"
#include "tests/fake_plugin/FakePlugin.h"
#include "tests/port_driver/PluggedPort.h"
#include "tests/port_driver/TemporaryFolder.h"

namespace ZIOP {
namespace {

using fake_plugin::MakeArray;
using fake_plugin::MakeDictionary;
using fake_plugin::MakeNumber;
using fake_plugin::MakeRecord;
using fake_plugin::MakeText;
using Entries = std::map<std::string, CFRef<CFTypeRef>>;

// The plug-in with FakeSearch for its search of the network, and without the one for queues.
class DiscoveryTest : public testing::Test {
 public:
  DiscoveryTest() {
    std::filesystem::create_directories(bundle_ + "/Contents/Linux");
    for (const std::string file : {"/Contents/Info.plist", "/Contents/Linux/libZIOP.so",
                                   "/Contents/Linux/libZIOPDiscovery.so"}) {
      std::filesystem::copy_file(ZIOP_BUNDLE + file, bundle_ + file);
    }
    std::filesystem::copy_file(FAKE_SEARCH, bundle_ + "/Contents/Linux/libZIOPNetwork.so");
  }

  // Expects that the plug-in lists these records, and gives what it says on standard error.
  std::string List(const Entries& information, const std::vector<CFRef<CFTypeRef>>& records) {
    testing::internal::CaptureStderr();
    MakeZIOPortInfo info(MakeText(bundle_).get(), MakeDictionary(information).get());
    const CFDictionaryRef list = info.GetList();
    EXPECT_TRUE(list != nullptr && CFEqual(list, fake_plugin::MakeList(records).get()));
    return testing::internal::GetCapturedStderr();
  }

  const std::string& bundle() const { return bundle_; }

 private:
  TemporaryFolder folder_;
  std::string bundle_ = folder_.path() + "/ZIOP.plugin";
};

CFRef<CFTypeRef> Flag(bool value) {
  return CFRef<CFTypeRef>::Retain(value ? kCFBooleanTrue : kCFBooleanFalse);
}

const CFRef<CFTypeRef> kModels = MakeArray({MakeText("M"), MakeNumber(1), MakeText("N")});

TEST_F(DiscoveryTest, ListsConfiguredPrintersThenThoseThatAreFound) {
  const auto configured = MakeArray({MakeDictionary({
      {ZIO_INFO_TARGET_NAME, MakeText("B\u00FCro")},
      {ZIO_INFO_PRINTER_NAME, MakeText("Own")},
      {"DeviceURI", MakeText("socket://localhost?retries=0")},
  })});
  const auto addresses =
      MakeArray({MakeText("||M||socket://192.0.2.2|SN0042||||"),
                 MakeText("signals||M||socket://192.0.2.3|||||"),
                 MakeText("||M||socket://127.0.0.1|||127.0.0.1||"), MakeNumber(1),
                 MakeText("Hall|Z|N||socket://[2001:db8::1]:9|||||")});
  const auto discovery = MakeDictionary({{"Network", Flag(true)},
                                         {"CUPS", Flag(true)},
                                         {"USB", Flag(false)},
                                         {"Addresses", addresses},
                                         {"TimeoutMilliseconds", MakeNumber(60001)}});
  const std::string module =
      std::filesystem::canonical(bundle()) / "Contents/Linux/libZIOPQueues.so";
  EXPECT_EQ(
      List({{"Printers", configured}, {"SupportedPrinters", kModels}, {"Discovery", discovery}},
           {MakeRecord({"B\u00FCro", "Own", "socket://localhost?retries=0"}),
            MakeRecord({"Hall ([2001:db8::1]:9)", "N", "socket://[2001:db8::1]:9"}),
            MakeRecord({"M (SN0042)", "M", "socket://192.0.2.2"}),
            MakeRecord({"signals (192.0.2.3)", "M", "socket://192.0.2.3"})}),
      "ZIOP: Addresses entry 4 left out: it is no string\n"
      "ZIOP: SupportedPrinters entry 2 left out: it is no string\n"
      "ZIOP: search left out: " +
          module + ": cannot open shared object file: No such file or directory\n");
}

TEST_F(DiscoveryTest, WhatHasTheWrongClassIsAbsent) {
  const auto text = MakeText("1");
  const auto addresses = MakeArray({MakeText("||M||socket://192.0.2.2|||||")});
  const struct {
    Entries information;
    const char* lines;
  } kRows[] = {
      {{{"Discovery", text}}, "ZIOP: Discovery left out: it is no dictionary\n"},
      {{{"SupportedPrinters", kModels},
        {"Discovery", MakeDictionary({{"Network", MakeNumber(1)}, {"Addresses", addresses}})}},
       "ZIOP: Network left out: it is no boolean\n"
       "ZIOP: SupportedPrinters entry 2 left out: it is no string\n"},
      {{{"SupportedPrinters", MakeArray({MakeText("M")})},
        {"Discovery",
         MakeDictionary(
             {{"Network", Flag(true)}, {"Addresses", text}, {"TimeoutMilliseconds", text}})}},
       "ZIOP: Addresses left out: it is no array\n"
       "ZIOP: TimeoutMilliseconds left out: it is no number\n"},
      {{{"Discovery", MakeDictionary({{"Network", Flag(true)}, {"Addresses", addresses}})}},
       "ZIOP: nothing searched: SupportedPrinters names no printers\n"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(List(row.information, {}), row.lines);
  }
}

}  // namespace
}  // namespace ZIOP

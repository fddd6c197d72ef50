// Printer discovery: the plug-in's list, the stored list and the records in them.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "printer_io/PropertyListFile.h"
#include "printer_io/SearchPrinterMac.h"
#include "printer_io/ZIOSearchPrinter.h"
#include "tests/fake_plugin/FakePlugin.h"
#include "util/ZIOLibrary.h"

namespace Ravik {
namespace {

using fake_plugin::MakeArray;
using fake_plugin::MakeData;
using fake_plugin::MakeDictionary;
using fake_plugin::MakeList;
using fake_plugin::MakeNumber;
using fake_plugin::MakeRecord;
using fake_plugin::MakeText;
using fake_plugin::script;

using Names = std::vector<std::pair<std::string, std::string>>;

class DiscoveryTest : public testing::Test {
 protected:
  ~DiscoveryTest() override { EXPECT_EQ(fake_plugin::LiveObjects(), 0); }

  // Name and device name of every printer found.
  static Names Found(const std::vector<PrinterVO>& printers) {
    Names names;
    for (const PrinterVO& printer : printers) {
      names.emplace_back(printer.printerName(), printer.deviceName());
    }
    return names;
  }

  fake_plugin::Session plugin_;
};

const auto Record = [](const char* name, const char* device = "D") {
  return CFRef<CFTypeRef>(MakeRecord({name, device, "address"}));
};

TEST_F(DiscoveryTest, AppendsThePrintersInTheirOrderAndStoresThem) {
  const auto list = MakeList({Record("B", "D1"), Record("A", "D2"), Record("B", "D1")});
  script().list = list;
  std::vector<PrinterVO> printers = {PrinterVO("there", "before")};
  EXPECT_EQ(ISearchPrinter::Search(printers), 0);
  EXPECT_EQ(Found(printers), (Names{{"there", "before"}, {"B", "D1"}, {"A", "D2"}, {"B", "D1"}}));
  EXPECT_EQ(fake_plugin::TakeLog(),
            "factory, AddRef, QueryInterface info, Release, info.initialise 2, info.getList, "
            "info.terminate, info.release, Release");
  const auto stored = fake_plugin::StoredList();
  ASSERT_TRUE(stored);
  EXPECT_TRUE(CFEqual(stored.get(), CFDictionaryGetValue(list.get(), CFSTR("InfoPrinterList"))));
}

TEST_F(DiscoveryTest, StoresWhatIsListedAlsoWhenItIsNothing) {
  const auto lower_case = MakeDictionary({{"infoPrinterList", MakeArray({Record("A")})}});
  const auto no_array = MakeDictionary({{ZIO_INFO_PRINTER_LIST, MakeText("x")}});
  struct Case {
    const char* name;
    CFRef<CFTypeRef> list;
    const char* fails;
    bool stored;
  };
  const Case cases[] = {
      {"no list", {}, "", false},
      {"list without an array", MakeDictionary({}), "", false},
      {"array under the stored list's key", lower_case, "", false},
      {"failed initialise", MakeList({Record("A")}), "info.initialise", false},
      {"no interface", MakeList({Record("A")}), "QueryInterface", false},
      {"empty array", MakeList({}), "", true},
      {"no dictionary: the stored list stays", MakeText("x"), "", true},
      {"no array: the stored list stays", no_array, "", true},
  };
  for (const Case& c : cases) {
    fake_plugin::StorePrinters({{"A", "D", "address"}});
    script().list = c.list;
    script().results = {{c.fails, -1}};
    std::vector<PrinterVO> printers;
    EXPECT_EQ(ISearchPrinter::Search(printers), 0) << c.name;
    EXPECT_TRUE(printers.empty()) << c.name;
    EXPECT_EQ(static_cast<bool>(fake_plugin::StoredList()), c.stored) << c.name;
  }
}

TEST_F(DiscoveryTest, EndsAtABrokenRecord) {
  const auto number = MakeNumber(1);
  const auto text = MakeText("x");
  struct Case {
    const char* name;
    CFRef<CFTypeRef> broken;
    bool throws;  // std::logic_error; else the search ends with what it has
  };
  const Case cases[] = {
      {"no dictionary", text, false},
      {"target name no text",
       MakeDictionary({{ZIO_INFO_PRINTER_NAME, text}, {ZIO_INFO_TARGET_NAME, number}}), false},
      {"device name no text",
       MakeDictionary({{ZIO_INFO_PRINTER_NAME, number}, {ZIO_INFO_TARGET_NAME, text}}), false},
      {"no target name", MakeDictionary({{ZIO_INFO_PRINTER_NAME, text}}), true},
      {"no device name", MakeDictionary({{ZIO_INFO_TARGET_NAME, text}}), true},
      {"neither", MakeDictionary({}), true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    script().list = MakeList({Record("A"), c.broken, Record("B")});
    std::vector<PrinterVO> printers;
    if (c.throws) {
      EXPECT_THROW(ISearchPrinter::Search(printers), std::logic_error);
    } else {
      EXPECT_EQ(ISearchPrinter::Search(printers), 0);
    }
    EXPECT_EQ(Found(printers), (Names{{"A", "D"}}));
  }
}

TEST_F(DiscoveryTest, FindsTheFirstStoredRecordOfAName) {
  const auto no_address = MakeDictionary({{ZIO_INFO_TARGET_NAME, MakeText("A")}});
  const auto no_target = MakeDictionary({{ZIO_INFO_ADDRESS, MakeData("x")}});
  struct Case {
    const char* name;
    std::vector<CFRef<CFTypeRef>> records;
    const char* wanted;
    int found;  // -1: none
  };
  const Case cases[] = {
      {"first of two", {Record("A", "1"), Record("A", "2")}, "A", 0},
      {"behind others", {Record("B"), Record("A")}, "A", 1},
      {"letter case counts", {Record("a")}, "A", -1},
      {"not a part of it", {Record("AB")}, "A", -1},
      {"hidden by a record without an address", {no_address, Record("A")}, "A", -1},
      {"hidden by a record without a target name", {no_target, Record("A")}, "A", -1},
      {"in front of such a record", {Record("A"), no_target}, "A", 0},
      {"beyond ASCII", {Record("\xE6\x97\xA5")}, "\xE6\x97\xA5", 0},
      {"no records", {}, "A", -1},
  };
  for (const Case& c : cases) {
    fake_plugin::StoreList(MakeArray(c.records).get());
    const auto record = ZIOSearchPrinter::GetPrinterInfo(MakeText(c.wanted).get());
    ASSERT_EQ(static_cast<bool>(record), c.found >= 0) << c.name;
    if (record) {
      EXPECT_TRUE(CFEqual(record.get(), c.records[static_cast<std::size_t>(c.found)].get()))
          << c.name;
    }
  }
  EXPECT_FALSE(ZIOSearchPrinter::GetPrinterInfo(nullptr));
}

TEST_F(DiscoveryTest, ChecksTheClassesOfTheStoredList) {
  fake_plugin::StoreList(MakeText("no list").get());
  EXPECT_FALSE(ZIOSearchPrinter::GetPrinterInfo(CFSTR("A")));
  fake_plugin::StoreList(MakeArray({MakeText("no record"), Record("A")}).get());
  EXPECT_THROW(ZIOSearchPrinter::GetPrinterInfo(CFSTR("A")), NSException);
  fake_plugin::StoreList(MakeArray({MakeDictionary({{ZIO_INFO_TARGET_NAME, MakeNumber(1)},
                                                    {ZIO_INFO_ADDRESS, MakeData("x")}})})
                             .get());
  EXPECT_THROW(ZIOSearchPrinter::GetPrinterInfo(CFSTR("A")), NSException);
}

TEST(PropertyListFile, ReadsDictionariesAlone) {
  std::string folder = (std::filesystem::temp_directory_path() / "plist-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string path = folder + "/list.xml";
  const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">";
  struct Case {
    const char* name;
    std::string bytes;
    bool read;
  };
  const Case cases[] = {
      {"a dictionary", start + "<dict><key>k</key><string>v</string></dict></plist>", true},
      {"an array", start + "<array/></plist>", false},
      {"a text", start + "<string>x</string></plist>", false},
      {"cut off", start + "<dict><key>k</key>", false},
      {"foreign", "{\"k\": 1}", false},
      {"empty", "", false},
      {"binary, cut off", "bplist00", false},
      {"too long", start + "<dict/></plist>" + std::string(1U << 24U, ' '), false},
  };
  for (const Case& c : cases) {
    std::ofstream(path, std::ios::binary) << c.bytes;
    EXPECT_EQ(static_cast<bool>(ReadPropertyListFile(MakeText(path).get())), c.read) << c.name;
  }
  const std::string pipe = folder + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& other : {folder + "/missing", folder, pipe, std::string("/dev/zero")}) {
    EXPECT_FALSE(ReadPropertyListFile(MakeText(other).get())) << other;
  }
  EXPECT_FALSE(ReadPropertyListFile(nullptr));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace Ravik

// Printer discovery: the plug-in's list, the stored list and the records in them.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "GantryCore/IPrinterLibrary.h"
#include "printer_io/PropertyListFile.h"
#include "printer_io/SearchPrinterMac.h"
#include "printer_io/ZIOSearchPrinter.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace Ravik {
namespace {

using fake_plugin::MakeArray;
using fake_plugin::MakeData;
using fake_plugin::MakeDictionary;
using fake_plugin::MakeList;
using fake_plugin::MakeNumber;
using fake_plugin::MakeText;
using fake_plugin::script;
using Object = CFRef<CFTypeRef>;

Object Record(const char* name, const char* device = "D") {
  return fake_plugin::MakeRecord({name, device, "address"});
}

// A record with the values that are given.
Object Entries(const Object& target, const Object& address, const Object& port,
               const Object& printer = {}) {
  std::map<std::string, Object> entries;
  if (target) entries[ZIO_INFO_TARGET_NAME] = target;
  if (address) entries[ZIO_INFO_ADDRESS] = address;
  if (port) entries[ZIO_INFO_IOX_TYPE] = port;
  if (printer) entries[ZIO_INFO_PRINTER_NAME] = printer;
  return MakeDictionary(entries);
}

class DiscoveryTest : public testing::Test {
 protected:
  // Searches; name and device name of every printer that there is then.
  std::string Found() {
    std::string names;
    EXPECT_EQ(ISearchPrinter::Search(printers_), 0);
    for (const PrinterVO& p : printers_) names += p.printerName() + "=" + p.deviceName() + " ";
    return names;
  }

  fake_plugin::Session plugin_;
  std::vector<PrinterVO> printers_;
};

TEST_F(DiscoveryTest, AppendsThePrintersInTheirOrderAndStoresThem) {
  const auto list = MakeList({Record("B", "D1"), Record("A", "D2"), Record("B", "D1")});
  script().list = list;
  printers_ = {PrinterVO("there", "before")};
  EXPECT_EQ(Found(), "there=before B=D1 A=D2 B=D1 ");
  EXPECT_EQ(fake_plugin::TakeLog(),
            "factory, AddRef, QueryInterface info, Release, info.initialise 2, info.getList, "
            "info.terminate, info.release, Release");
  const auto stored = fake_plugin::StoredList();
  ASSERT_TRUE(stored);
  EXPECT_TRUE(CFEqual(stored.get(), CFDictionaryGetValue(list.get(), CFSTR("InfoPrinterList"))));
}

TEST_F(DiscoveryTest, StoresWhatIsListedAlsoWhenItIsNothing) {
  const struct {
    Object list;
    const char* fails;
    bool stored;  // what was stored before stays, or an empty array is
  } cases[] = {{{}, "", false},
               {MakeDictionary({}), "", false},
               {MakeList({}), "", true},
               {MakeList({Record("A")}), "info.initialise", false},
               {MakeList({Record("A")}), "QueryInterface", false},
               {MakeDictionary({{"infoPrinterList", MakeArray({Record("A")})}}), "", false},
               {MakeDictionary({{"InfoPrinterList", MakeText("no array")}}), "", true},
               {MakeText("no dictionary"), "", true}};
  for (const auto& c : cases) {
    fake_plugin::StorePrinters({{"A", "D", "address"}});
    script().list = c.list;
    script().results = {{c.fails, -1}};
    EXPECT_EQ(Found(), "") << &c - cases;
    EXPECT_EQ(static_cast<bool>(fake_plugin::StoredList()), c.stored) << &c - cases;
  }
}

TEST_F(DiscoveryTest, EndsAtABrokenRecord) {
  const Object number = MakeNumber(1);
  const Object text = MakeText("x");
  // A record, and whether it lacks a name, which is the standard library's error.
  const std::pair<Object, bool> cases[] = {{text, false},
                                           {Entries(number, {}, {}, text), false},
                                           {Entries(text, {}, {}, number), false},
                                           {Entries({}, {}, {}, text), true},
                                           {Entries(text, {}, {}, {}), true}};
  for (const auto& [broken, missing] : cases) {
    script().list = MakeList({Record("A"), broken, Record("B")});
    printers_.clear();
    if (missing) {
      EXPECT_THROW(ISearchPrinter::Search(printers_), std::logic_error);
    } else {
      EXPECT_EQ(ISearchPrinter::Search(printers_), 0);
    }
    EXPECT_EQ(printers_.size(), 1U) << "what was appended before stays";
  }
}

TEST_F(DiscoveryTest, OpensByTheFirstCompleteRecordOfTheName) {
  const Object name = MakeText("A");
  const Object bytes = MakeData("x");
  const Object type = MakeNumber(1);
  const struct {
    std::vector<Object> records;
    bool opens;  // the record with the device name 1
  } cases[] = {{{Record("A", "1"), Record("A")}, true},
               {{Record("B"), Record("A", "1")}, true},
               {{Record("A", "1"), Entries({}, bytes, type)}, true},
               {{Record("a"), Record("AB")}, false},
               {{}, false},
               {{name, Record("A")}, false},
               {{Entries(MakeText("B"), {}, type), Record("A")}, false},
               {{Entries({}, bytes, type), Record("A")}, false},
               {{Entries(type, bytes, type), Record("A")}, false},
               {{Entries(name, bytes, {})}, false},
               {{Entries(name, bytes, name)}, false},
               {{Entries(name, name, type)}, false}};
  for (const auto& c : cases) {
    fake_plugin::StoreList(MakeArray(c.records).get());
    IPrinterLibrary library;
    EXPECT_EQ(library.OpenLibrary("A"), c.opens) << &c - cases;
    EXPECT_FALSE(library.OpenLibrary("A\xFF")) << "a name that is no text";
    if (!c.opens) continue;
    const auto record = ZIOSearchPrinter::GetPrinterInfo(CFSTR("A"));
    EXPECT_TRUE(CFEqual(record.get(), Record("A", "1").get())) << &c - cases;
  }
  fake_plugin::StoreList(name.get());
  EXPECT_FALSE(ZIOSearchPrinter::GetPrinterInfo(CFSTR("A"))) << "no array";
}

TEST(PropertyListFile, ReadsDictionariesAlone) {
  std::string folder = std::filesystem::temp_directory_path() / "plist-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">";
  const std::pair<std::string, bool> cases[] = {
      {start + "<dict/></plist>", true},
      {start + "<array/></plist>", false},
      {"", false},
      {start + "<dict/></plist>" + std::string(1U << 24U, ' '), false}};  // too long
  for (const auto& [bytes, read] : cases) {
    std::ofstream(folder + "/list") << bytes;
    EXPECT_EQ(bool{ReadPropertyListFile(MakeText(folder + "/list").get())}, read) << bytes.size();
  }
  ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0600), 0);
  for (const char* const other : {"/missing", "", "/pipe", "/../../../../../../dev/zero"}) {
    EXPECT_FALSE(ReadPropertyListFile(MakeText(folder + other).get())) << other;
  }
  EXPECT_FALSE(ReadPropertyListFile(nullptr));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace Ravik

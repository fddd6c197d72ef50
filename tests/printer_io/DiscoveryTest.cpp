// Printer discovery: the plug-in's list, the stored list and the records in them.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

#include "GantryCore/IPrinterLibrary.h"
#include "printer_io/PropertyListFile.h"
#include "printer_io/SearchPrinterMac.h"
#include "printer_io/StoredPrinters.h"
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
using fake_plugin::TakeLog;
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

// The record that a walk over all of them finds for the name: null when it meets none, or one
// without name or address before; throws at one of another class.
const NSDictionary* Walk(const std::vector<Object>& records, CFTypeRef name) {
  for (const Object& object : records) {
    const auto record = CFCast<CFDictionaryRef>(object.get());
    if (record == nullptr) throw NSException("no record");
    const auto* const target = CFDictionaryGetValue(record, CFSTR(ZIO_INFO_TARGET_NAME));
    if (target != nullptr && CFCast<CFStringRef>(target) == nullptr) throw NSException("no text");
    if (target == nullptr || CFDictionaryGetValue(record, CFSTR(ZIO_INFO_ADDRESS)) == nullptr) {
      return nullptr;
    }
    if (CFEqual(name, target)) return record;
  }
  return nullptr;
}

// What a search ends with: a record, or null, or an exception.
template <typename Search>
std::pair<const NSDictionary*, bool> Outcome(Search search) {
  try {
    return {search(), false};
  } catch (const NSException&) {
    return {nullptr, true};
  }
}

class DiscoveryTest : public testing::Test {
 protected:
  fake_plugin::Session plugin_;
  std::vector<PrinterVO> printers_;
};

TEST_F(DiscoveryTest, AppendsAndStoresTheListUpToWhatIsBroken) {
  const Object number = MakeNumber(1);
  const Object text = MakeText("x");
  const auto list = MakeList({Record("B", "D1"), Record("A", "D2"), Record("B", "D1")});
  const struct {
    Object list;
    std::string found;
    bool stored = true;  // that list, or what was stored before
    const char* fails = "";
  } cases[] = {{list, "B=D1 A=D2 B=D1 "},
               {{}, "", false},
               {MakeDictionary({}), "", false},
               {MakeList({}), ""},
               {MakeList({Record("A")}), "", false, "info.initialise"},
               {MakeList({Record("A")}), "", false, "QueryInterface"},
               {MakeDictionary({{"infoPrinterList", MakeArray({Record("A")})}}), "", false},
               {MakeDictionary({{"InfoPrinterList", text}}), ""},
               {text, ""},
               {MakeList({Record("A"), text, Record("B")}), "A=D "},
               {MakeList({Record("A"), Entries(number, {}, {}, text), Record("B")}), "A=D "},
               {MakeList({Record("A"), Entries(text, {}, {}, number), Record("B")}), "A=D "}};
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    fake_plugin::StorePrinters({{"A", "D", "address"}});
    script().list = c.list;
    script().results = {{c.fails, -1}};
    TakeLog();
    printers_ = {PrinterVO("there", "before")};
    EXPECT_EQ(ISearchPrinter::Search(printers_), 0);
    std::string names;
    for (const PrinterVO& p : printers_) names += p.printerName() + "=" + p.deviceName() + " ";
    EXPECT_EQ(names, "there=before " + c.found);
    const auto stored = fake_plugin::StoredList();
    EXPECT_EQ(static_cast<bool>(stored), c.stored);
    if (&c != cases) continue;
    EXPECT_TRUE(CFEqual(stored.get(), CFDictionaryGetValue(list.get(), CFSTR("InfoPrinterList"))));
    EXPECT_EQ(TakeLog(),
              "factory, AddRef, QueryInterface info, Release, info.initialise 2, info.getList, "
              "info.terminate, info.release, Release");
  }
  for (const Object& nameless : {Entries({}, {}, {}, text), Entries(text, {}, {})}) {
    script().list = MakeList({Record("A"), nameless});
    printers_.clear();
    EXPECT_THROW(ISearchPrinter::Search(printers_), std::logic_error);
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

// Every search in its turn finds what one that walks all records from the first would.
TEST(StoredPrinters, FindsWhatAWalkFromTheFirstRecordFinds) {
  const Object bytes = MakeData("x");
  const Object odd[] = {MakeNumber(1), Entries({}, bytes, bytes), Entries(MakeText("B"), {}, bytes),
                        Entries(MakeNumber(1), bytes, bytes)};
  std::mt19937 random{4041};
  const auto below = [&random](std::size_t end) { return random() % end; };
  for (int i = 0; i < 400; ++i) {
    std::vector<Object> records;
    for (std::size_t count = below(40); count > 0; --count) {
      const std::string name(1 + below(2), static_cast<char>('a' + below(12)));
      records.push_back(below(40) == 0 ? odd[below(std::size(odd))] : Record(name.c_str()));
    }
    const Object array = MakeArray(records);
    StoredPrinters stored(CFRef<CFArrayRef>::Retain(CFCast<CFArrayRef>(array.get())));
    for (int search = 0; search < 30; ++search) {
      const Object name = MakeText(std::string(1 + below(2), static_cast<char>('a' + below(13))));
      EXPECT_EQ(Outcome([&] { return stored.Find(CFCast<CFStringRef>(name.get())); }),
                Outcome([&] { return Walk(records, name.get()); }));
    }
  }
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

// The bundle as the worker finds it, and the list of printers that it makes.
#include <unistd.h>

#include <fstream>
#include <memory>
#include <set>
#include <sstream>

#include "ModelInfomation/ReadClass.h"
#include "port_driver/PropertyText.h"
#include "printer_io/MakeZIOPortInfo.h"
#include "tests/port_driver/PluggedPort.h"
#include "util/FileDescriptor.h"

namespace ZIOP {
namespace {

using fake_plugin::MakeArray;
using fake_plugin::MakeDictionary;
using fake_plugin::MakeRecord;
using fake_plugin::MakeText;

// Whether the bundle makes this list of records.
bool Lists(const CFRef<CFDictionaryRef>& information,
           const std::vector<CFRef<CFTypeRef>>& records = {}, const char* bundle = ZIOP_BUNDLE) {
  MakeZIOPortInfo info(MakeText(bundle).get(), information.get());
  const CFDictionaryRef list = info.GetList();
  return list != nullptr && CFEqual(list, fake_plugin::MakeList(records).get());
}

TEST(PlugInTest, MakesWhatIsAskedForAndNothingElse) {
  CPluginLoader loader(ZIOP_BUNDLE, ZIO_PLUGIN_TYPE_ID);
  EXPECT_EQ(loader.GetInterface("5C0D2E14-7A42-4B19-9F63-2D8E4A71C305"), nullptr);
  EXPECT_NE(loader.GetInterface("00000000-0000-0000-C000-000000000046"), nullptr);
  auto* info = static_cast<ZIOPortInfoInterface*>(loader.GetInterface(ZIO_PORT_INFO_INTERFACE_ID));
  EXPECT_LT(info->table->initialise(info, ZIO_INTERFACE_VERSION, nullptr), 0);
  EXPECT_LT(info->table->initialise(info, 1, MakeDictionary({}).get()), 0);
  EXPECT_EQ(info->table->getList(info), nullptr);
  EXPECT_EQ(info->table->release(info), 0);
}

TEST(PlugInTest, RefusesToInitialiseAPort) {
  PluggedPort port;
  EXPECT_EQ(port.Initialise(CFRef<CFTypeRef>()), -2);
  EXPECT_EQ(port.Initialise(MakeText("socket://h")), -2);
  EXPECT_EQ(port.Initialise(fake_plugin::MakeData("")), -2);
  EXPECT_EQ(port.error, "device URI: no scheme");
  EXPECT_EQ(port.Initialise(fake_plugin::MakeData("usb://h")), -5);
  EXPECT_EQ(port.Initialise(fake_plugin::MakeData("socket://h"), 1), -5);
  EXPECT_EQ(port.Call(&ZIOPortTable::initialise, 2, static_cast<const ZIOOpenParameter*>(nullptr)),
            -2);
  EXPECT_EQ(port.Call(&ZIOPortTable::open), -2);
}

TEST(PlugInTest, ListsTheConfiguredPrinters) {
  using Entries = std::map<std::string, CFRef<CFTypeRef>>;
  const auto printer = [](const char* name, const char* uri, const Entries& others) {
    Entries entries = others;
    entries.emplace(ZIO_INFO_TARGET_NAME, MakeText(name));
    entries.emplace("DeviceURI", MakeText(uri));
    return MakeDictionary(entries);
  };
  const Entries model = {{ZIO_INFO_PRINTER_NAME, MakeText("Model")}};
  const CFRef<CFTypeRef> number = fake_plugin::MakeNumber(1);
  const auto list = MakeArray({
      printer("B\u00FCro", "socket://192.0.2.1", model),
      MakeDictionary({{ZIO_INFO_TARGET_NAME, MakeText("a\nb\\")}, *model.begin()}),
      MakeDictionary(model),
      printer("n", "socket://192.0.2.1", {{ZIO_INFO_PRINTER_NAME, number}}),
      printer("bad", "socket://192.0.2.1:0", model),
      number,
      printer("cable", "file:///dev/lp0", model),
      printer("last", "socket://192.0.2.1:9", model),
  });
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Lists(MakeDictionary({{"Printers", list}}),
                    {MakeRecord({"B\u00FCro", "Model", "socket://192.0.2.1"}),
                     MakeRecord({"cable", "Model", "file:///dev/lp0", ZIO_PORT_TYPE_LOCAL}),
                     MakeRecord({"last", "Model", "socket://192.0.2.1:9"})}));
  EXPECT_TRUE(Lists(MakeDictionary({{"Printers", MakeText("socket://h")}})));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZIOP: Printers entry 2 \"a\\x0Ab\\x5C\" left out: DeviceURI is missing\n"
            "ZIOP: Printers entry 3 left out: InfoTargetName is missing\n"
            "ZIOP: Printers entry 4 \"n\" left out: InfoPrinterName is no string\n"
            "ZIOP: Printers entry 5 \"bad\" left out: "
            "device URI: port is no number from 1 to 65535\n"
            "ZIOP: Printers entry 6 left out: it is no dictionary\n"
            "ZIOP: Printers left out: it is no array\n");
}

TEST(PlugInTest, TheShippedListIsEmptyAndKnowsTheModels) {
  std::stringstream shipped;
  shipped << std::ifstream(ZIOP_PRINTER_LIST).rdbuf();
  const CFRef<CFDictionaryRef> list(static_cast<CFDictionaryRef>(
      CFPropertyListCreateWithData(nullptr, fake_plugin::MakeData(shipped.str()).get(),
                                   kCFPropertyListImmutable, nullptr, nullptr)));
  EXPECT_TRUE(Lists(list));
  const auto models =
      CFCast<CFArrayRef>(CFDictionaryGetValue(list.get(), CFSTR("SupportedPrinters")));
  ASSERT_NE(models, nullptr);
  std::set<std::string> names;
  for (CFIndex i = 0; i < CFArrayGetCount(models); ++i) {
    const std::string name = TextOf(CFCast<CFStringRef>(CFArrayGetValueAtIndex(models, i)));
    EXPECT_NE(std::unique_ptr<Ravik::IPrinterClass>(Ravik::GetPrinterObject(name)), nullptr)
        << name;
    names.insert(name);
  }
  EXPECT_EQ(names.size(), 18U);
}

// A reader that is gone would end the process with a signal, and one that does not read stop it.
TEST(PlugInTest, NobodyHasToReadTheDiagnostics) {
  const std::vector<CFRef<CFTypeRef>> entries(5000, MakeText("no printer"));
  const Ravik::FileDescriptor standard_error(::dup(STDERR_FILENO));
  for (const bool has_reader : {false, true}) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const Ravik::FileDescriptor writer(ends[1]), reader(has_reader ? ends[0] : -1);
    EXPECT_EQ(has_reader ? 0 : ::close(ends[0]), 0);
    ::dup2(ends[1], STDERR_FILENO);
    EXPECT_TRUE(Lists(MakeDictionary({{"Printers", MakeArray(entries)}})));
    ::dup2(standard_error.get(), STDERR_FILENO);
  }
}

TEST(ExamplePlugInTest, IsAWholePlugIn) {
  EXPECT_TRUE(Lists(MakeDictionary({}),
                    {MakeRecord({"Example printer", "Example", "example:1", 1})}, EXAMPLE_BUNDLE));
  PluggedPort port("example:1", EXAMPLE_BUNDLE);
  EXPECT_EQ(port.Control("ping", 7), "ping###");
  EXPECT_EQ(port.Call(&ZIOPortTable::close), 0);
  EXPECT_EQ(port.Call(&ZIOPortTable::terminate), 0);
}

}  // namespace
}  // namespace ZIOP

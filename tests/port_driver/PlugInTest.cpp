// The bundle as the worker finds it, and the list of printers that it makes.
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "port_driver/FileDescriptor.h"
#include "printer_io/MakeZIOPortInfo.h"
#include "tests/port_driver/PluggedPort.h"

namespace ZIOP {
namespace {

CFRef<CFDictionaryRef> Dictionary(const std::string& text) {
  const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(text.data()),
                                           static_cast<CFIndex>(text.size())));
  return CFRef<CFDictionaryRef>(static_cast<CFDictionaryRef>(CFPropertyListCreateWithData(
      kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr)));
}

CFRef<CFDictionaryRef> With(const std::string& key, const std::string& value) {
  return Dictionary("<plist version=\"1.0\"><dict><key>" + key + "</key>" + value +
                    "</dict></plist>");
}

// Whether the bundle makes this list of records.
bool Lists(const CFRef<CFDictionaryRef>& information, const std::string& records,
           const char* bundle = ZIOP_BUNDLE) {
  const CFRef<CFStringRef> path(CFStringCreateWithCString(nullptr, bundle, kCFStringEncodingUTF8));
  MakeZIOPortInfo info(path.get(), information.get());
  const CFDictionaryRef list = info.GetList();
  return list != nullptr && CFEqual(list, With(ZIO_INFO_PRINTER_LIST, records).get());
}

constexpr char kEmpty[] = "<array/>";

TEST(PlugInTest, MakesWhatIsAskedForAndNothingElse) {
  CPluginLoader loader(ZIOP_BUNDLE, ZIO_PLUGIN_TYPE_ID);
  EXPECT_EQ(loader.GetInterface("5C0D2E14-7A42-4B19-9F63-2D8E4A71C305"), nullptr);
  for (int i = 0; i < 3; ++i) {
    EXPECT_NE(loader.GetInterface("00000000-0000-0000-C000-000000000046"), nullptr);
  }
}

TEST(PlugInTest, ListsTheConfiguredPrinters) {
  const std::string name = "<dict><key>InfoTargetName</key><string>";
  const std::string model = "</string><key>InfoPrinterName</key><string>Model</string>";
  const std::string uri = "<key>DeviceURI</key><string>socket://192.0.2.1";
  const std::string end = "</string></dict>";
  const std::string type = "<key>InfoIOXType</key><integer>4</integer></dict>";
  const std::string list = "<array>" + name + "B\u00FCro" + model + uri + end +  // listed
                           name + "a&#10;b\\" + model + "</dict>" +              // no URI
                           "<dict>" + uri + end +                                // no name
                           name + "n</string><key>InfoPrinterName</key><true/>" + uri + end + name +
                           "bad" + model + uri + ":0" + end +  // unreadable URI
                           "<true/>" + name + "last" + model + uri + ":9" + end + "</array>";
  const std::string records =
      "<array>" + name + "B\u00FCro" + model +
      "<key>InfoAddress</key><data>c29ja2V0Oi8vMTkyLjAuMi4x</data>" + type + name + "last" + model +
      "<key>InfoAddress</key><data>c29ja2V0Oi8vMTkyLjAuMi4xOjk=</data>" + type + "</array>";
  testing::internal::CaptureStderr();
  EXPECT_TRUE(Lists(With("Printers", list), records));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZIOP: Printers entry 2 \"a\\x0Ab\\x5C\" left out: DeviceURI is missing\n"
            "ZIOP: Printers entry 3 left out: InfoTargetName is missing\n"
            "ZIOP: Printers entry 4 \"n\" left out: InfoPrinterName is no string\n"
            "ZIOP: Printers entry 5 \"bad\" left out: "
            "device URI: port is no number from 1 to 65535\n"
            "ZIOP: Printers entry 6 left out: it is no dictionary\n");
}

TEST(PlugInTest, ListsNothingWithoutPrinters) {
  std::stringstream shipped;
  shipped << std::ifstream(ZIOP_PRINTER_LIST).rdbuf();
  EXPECT_TRUE(Lists(Dictionary(shipped.str()), kEmpty));
  EXPECT_TRUE(Lists(With("Printers", "<string>socket://h</string>"), kEmpty));
  CPluginLoader loader(ZIOP_BUNDLE, ZIO_PLUGIN_TYPE_ID);
  auto* info = static_cast<ZIOPortInfoInterface*>(loader.GetInterface(ZIO_PORT_INFO_INTERFACE_ID));
  EXPECT_LT(info->table->initialise(info, ZIO_INTERFACE_VERSION, nullptr), 0);
  EXPECT_LT(info->table->initialise(info, 1, With("Printers", kEmpty).get()), 0);
  EXPECT_EQ(info->table->getList(info), nullptr);
  EXPECT_EQ(info->table->release(info), 0);
}

// A reader that is gone would end the process with a signal, and one that does not read stop it.
TEST(PlugInTest, NobodyHasToReadTheDiagnostics) {
  std::string entries;
  for (int i = 0; i < 5000; ++i) {
    entries += "<true/>";
  }
  const FileDescriptor standard_error(::dup(STDERR_FILENO));
  for (const bool has_reader : {false, true}) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const FileDescriptor writer(ends[1]), reader(has_reader ? ends[0] : -1);
    EXPECT_EQ(has_reader ? 0 : ::close(ends[0]), 0);
    ::dup2(ends[1], STDERR_FILENO);
    EXPECT_TRUE(Lists(With("Printers", "<array>" + entries + "</array>"), kEmpty));
    ::dup2(standard_error.get(), STDERR_FILENO);
  }
}

TEST(ExamplePlugInTest, IsAWholePlugIn) {
  EXPECT_TRUE(Lists(With("Printers", kEmpty),
                    "<array><dict><key>InfoTargetName</key><string>Example printer</string>"
                    "<key>InfoPrinterName</key><string>Example</string>"
                    "<key>InfoAddress</key><data>ZXhhbXBsZTox</data>"
                    "<key>InfoIOXType</key><integer>1</integer></dict></array>",
                    EXAMPLE_BUNDLE));
  PluggedPort port("example:1", EXAMPLE_BUNDLE);
  EXPECT_EQ(port.Control("ping", 7), "ping###");
  EXPECT_EQ(port.Call(&ZIOPortTable::close), 0);
  EXPECT_EQ(port.Call(&ZIOPortTable::terminate), 0);
}

}  // namespace
}  // namespace ZIOP

// The bundle as the worker finds it, and the list of printers that it makes.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/port_driver/LoadedPlugIn.h"

namespace ZIOP {
namespace {

CFRef<CFDictionaryRef> Dictionary(const std::string& text) {
  const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(text.data()),
                                           static_cast<CFIndex>(text.size())));
  return CFRef<CFDictionaryRef>(static_cast<CFDictionaryRef>(CFPropertyListCreateWithData(
      kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr)));
}

CFRef<CFDictionaryRef> WithPrinters(const std::string& printers) {
  return Dictionary("<plist version=\"1.0\"><dict><key>Printers</key>" + printers +
                    "</dict></plist>");
}

CFDictionaryRef RecordAt(CFDictionaryRef list, CFIndex index) {
  const auto records = CFCast<CFArrayRef>(CFDictionaryGetValue(list, CFSTR(ZIO_INFO_PRINTER_LIST)));
  return records == nullptr || index >= CFArrayGetCount(records)
             ? nullptr
             : CFCast<CFDictionaryRef>(CFArrayGetValueAtIndex(records, index));
}

// Name, device name, address and type of a record.
std::string Describe(CFDictionaryRef record) {
  std::string text;
  for (const CFStringRef key : {CFSTR(ZIO_INFO_TARGET_NAME), CFSTR(ZIO_INFO_PRINTER_NAME)}) {
    char name[100] = "";
    CFStringGetCString(CFCast<CFStringRef>(CFDictionaryGetValue(record, key)), name, sizeof name,
                       kCFStringEncodingUTF8);
    text += std::string(name) + "|";
  }
  const auto address = CFCast<CFDataRef>(CFDictionaryGetValue(record, CFSTR(ZIO_INFO_ADDRESS)));
  text.append(reinterpret_cast<const char*>(CFDataGetBytePtr(address)),
              static_cast<std::size_t>(CFDataGetLength(address)));
  SInt32 type = 0;
  CFNumberGetValue(CFCast<CFNumberRef>(CFDictionaryGetValue(record, CFSTR(ZIO_INFO_IOX_TYPE))),
                   kCFNumberSInt32Type, &type);
  return text + "|" + std::to_string(type);
}

TEST(PlugInTest, MakesInstancesOfItsTypeAlone) {
  LoadedPlugIn plugin(ZIOP_BUNDLE);
  const auto other = LoadedPlugIn::MakeUUID(CFSTR("5C0D2E14-7A42-4B19-9F63-2D8E4A71C305"));
  EXPECT_EQ(CFPlugInInstanceCreate(nullptr, plugin.factory(), other.get()), nullptr);

  HRESULT result = S_OK;
  EXPECT_EQ(plugin.GetInterface<void>(other.get(), &result), nullptr);
  EXPECT_EQ(result, E_NOINTERFACE);
  EXPECT_EQ(plugin.left(), 1U);
  EXPECT_EQ(plugin.GetInterface<void>(IUnknownUUID, &result), plugin.instance());
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(plugin.left(), 1U);
}

TEST(PlugInTest, InterfacesOutliveTheInstance) {
  ZIOPortInterface* port = nullptr;
  ZIOPortInfoInterface* info = nullptr;
  {
    LoadedPlugIn plugin(ZIOP_BUNDLE);
    port = plugin.GetPort();
    info = plugin.GetPortInfo();
    EXPECT_EQ(plugin.left(), 1U);
  }
  EXPECT_LT(port->table->open(port), 0) << "not initialised";
  EXPECT_EQ(port->table->release(port), 0);
  EXPECT_EQ(info->table->terminate(info), 0) << "legal without initialise";
  EXPECT_EQ(info->table->release(info), 0);
}

TEST(PlugInTest, ListsTheConfiguredPrinters) {
  auto information = WithPrinters(R"(<array>
    <dict><key>InfoTargetName</key><string>Büro 1</string>
      <key>InfoPrinterName</key><string>Model</string>
      <key>DeviceURI</key><string>socket://192.0.2.1</string></dict>
    <dict><key>InfoTargetName</key><string>a&#10;b\</string>
      <key>InfoPrinterName</key><string>Model</string></dict>
    <dict><key>InfoPrinterName</key><string>Model</string>
      <key>DeviceURI</key><string>socket://192.0.2.1</string></dict>
    <dict><key>InfoTargetName</key><string>numbered</string>
      <key>InfoPrinterName</key><integer>4</integer>
      <key>DeviceURI</key><string>socket://192.0.2.1</string></dict>
    <dict><key>InfoTargetName</key><string>bad</string>
      <key>InfoPrinterName</key><string>Model</string>
      <key>DeviceURI</key><string>socket://192.0.2.1:0</string></dict>
    <dict><key>InfoTargetName</key><string>local</string>
      <key>InfoPrinterName</key><string>Model</string>
      <key>DeviceURI</key><string>file:///dev/usb/lp0</string></dict>
    <string>socket://192.0.2.1</string>
    <dict><key>InfoTargetName</key><string>last</string>
      <key>InfoPrinterName</key><string></string>
      <key>Extra</key><true/>
      <key>DeviceURI</key><string>socket://[::1]:9?match=id</string></dict>
  </array>)");
  LoadedPlugIn plugin(ZIOP_BUNDLE);
  ZIOPortInfoInterface* info = plugin.GetPortInfo();
  EXPECT_EQ(info->table->getList(info), nullptr) << "not initialised";
  ASSERT_EQ(info->table->initialise(info, ZIO_INTERFACE_VERSION, information.get()), 0);
  information = {};  // the interface keeps its own reference

  testing::internal::CaptureStderr();
  const CFDictionaryRef list = info->table->getList(info);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZIOP: Printers entry 2 \"a\\x0Ab\\x5C\" left out: DeviceURI is missing\n"
            "ZIOP: Printers entry 3 left out: InfoTargetName is missing\n"
            "ZIOP: Printers entry 4 \"numbered\" left out: InfoPrinterName is no string\n"
            "ZIOP: Printers entry 5 \"bad\" left out: "
            "device URI: port is no number from 1 to 65535\n"
            "ZIOP: Printers entry 6 \"local\" left out: "
            "device URI: no port for scheme \"file\"\n"
            "ZIOP: Printers entry 7 left out: it is no dictionary\n");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(Describe(RecordAt(list, 0)), "Büro 1|Model|socket://192.0.2.1|4");
  EXPECT_EQ(Describe(RecordAt(list, 1)), "last||socket://[::1]:9?match=id|4");
  EXPECT_EQ(RecordAt(list, 2), nullptr);
  EXPECT_EQ(info->table->terminate(info), 0);
  EXPECT_EQ(info->table->release(info), 0);
}

TEST(PlugInTest, ListsNothingWithoutPrinters) {
  std::stringstream shipped;
  shipped << std::ifstream(ZIOP_PRINTER_LIST).rdbuf();
  const struct {
    const char* what;
    CFRef<CFDictionaryRef> information;
  } kRows[] = {
      {"the list that is shipped", Dictionary(shipped.str())},
      {"no array", WithPrinters("<string>socket://192.0.2.1</string>")},
      {"no key", Dictionary("<plist version=\"1.0\"><dict/></plist>")},
  };
  LoadedPlugIn plugin(ZIOP_BUNDLE);
  for (const auto& row : kRows) {
    ZIOPortInfoInterface* info = plugin.GetPortInfo();
    EXPECT_EQ(info->table->initialise(info, ZIO_INTERFACE_VERSION, row.information.get()), 0)
        << row.what;
    const CFDictionaryRef list = info->table->getList(info);
    EXPECT_TRUE(list != nullptr && RecordAt(list, 0) == nullptr) << row.what;
    info->table->release(info);
  }
  ZIOPortInfoInterface* info = plugin.GetPortInfo();
  EXPECT_LT(info->table->initialise(info, ZIO_INTERFACE_VERSION, nullptr), 0);
  EXPECT_LT(info->table->initialise(info, 1, kRows[0].information.get()), 0);
  EXPECT_EQ(info->table->getList(info), nullptr);
  info->table->release(info);
}

TEST(ExamplePlugInTest, IsAWholePlugIn) {
  LoadedPlugIn plugin(EXAMPLE_BUNDLE);
  ZIOPortInfoInterface* info = plugin.GetPortInfo();
  EXPECT_EQ(info->table->initialise(info, ZIO_INTERFACE_VERSION, WithPrinters("<array/>").get()),
            0);
  const CFDictionaryRef record = RecordAt(info->table->getList(info), 0);
  EXPECT_EQ(Describe(record), "Example printer|Example|example:1|1");

  ZIOPortInterface* port = plugin.GetPort();
  const ZIOOpenParameter parameter{
      CFCast<CFDataRef>(CFDictionaryGetValue(record, CFSTR(ZIO_INFO_ADDRESS))),
      nullptr,
      nullptr,
      nullptr,
      nullptr,
      EXAMPLE_BUNDLE};
  EXPECT_EQ(port->table->initialise(port, ZIO_INTERFACE_VERSION, &parameter), 0);
  EXPECT_EQ(port->table->open(port), 0);
  char reply[8] = "#######";
  ControlElement block{"ping", 4, reply, 7};
  EXPECT_EQ(port->table->control(port, &block), 0);
  EXPECT_STREQ(reply, "ping###");
  EXPECT_EQ(port->table->close(port), 0);
  EXPECT_EQ(port->table->terminate(port), 0);
  port->table->release(port);
  info->table->terminate(info);
  info->table->release(info);
}

}  // namespace
}  // namespace ZIOP

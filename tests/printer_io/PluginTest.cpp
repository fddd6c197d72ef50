// The plug-in loader and its two wrappers, as the calls that reach the plug-in.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "printer_io/CPluginLoader.h"
#include "printer_io/IOHandler.h"
#include "printer_io/MakeZIOPortInfo.h"
#include "tests/fake_plugin/FakePlugin.h"
#include "util/CFText.h"
#include "util/ZIOLibrary.h"

namespace {

using fake_plugin::script;
using fake_plugin::TakeLog;

const char* const kUnknownId = "00000000-0000-0000-C000-000000000046";

int ErrorCallback(void* /*context*/, int /*code*/, char* /*message*/) {
  return 42;
}

class PluginTest : public testing::Test {
 protected:
  PluginTest() { EXPECT_TRUE(Ravik::CopyText(path_.get(), kCFStringEncodingUTF8, bundle_)); }
  ~PluginTest() override { EXPECT_EQ(fake_plugin::LiveObjects(), 0) << "everything released"; }

  fake_plugin::Session plugin_;
  CFRef<CFStringRef> path_ = ZIOLibrary::GetLibraryPath();
  CFRef<CFDataRef> address_ = fake_plugin::MakeData("abc");
  std::string bundle_;
};

TEST_F(PluginTest, LoaderStaysEmptyWithoutBundleTypeOrInstance) {
  struct Case {
    const char* name;
    const char* path;
    const char* type;
  };
  const Case cases[] = {
      {"no path", nullptr, ZIO_PLUGIN_TYPE_ID},
      {"empty path", "", ZIO_PLUGIN_TYPE_ID},
      {"no type", bundle_.c_str(), nullptr},
      {"empty type", bundle_.c_str(), ""},
      {"no such bundle", "/nonexistent.plugin", ZIO_PLUGIN_TYPE_ID},
      {"a file for a bundle", "/proc/self/exe", ZIO_PLUGIN_TYPE_ID},
      {"a folder for a bundle", "/proc/self", ZIO_PLUGIN_TYPE_ID},
      {"a type that the bundle does not make", bundle_.c_str(), kUnknownId},
  };
  for (const Case& c : cases) {
    CPluginLoader loader(c.path, c.type);
    EXPECT_EQ(loader.GetInterface(ZIO_PORT_INTERFACE_ID), nullptr) << c.name;
    EXPECT_EQ(loader.GetInterface(CFSTR(ZIO_PORT_INTERFACE_ID)), nullptr) << c.name;
  }
  EXPECT_EQ(TakeLog(), "");
  script().factory_fails = true;
  CPluginLoader loader(bundle_.c_str(), ZIO_PLUGIN_TYPE_ID);
  EXPECT_EQ(loader.GetInterface(ZIO_PORT_INTERFACE_ID), nullptr);
  EXPECT_EQ(TakeLog(), "factory");
}

TEST_F(PluginTest, LoaderAsksForInterfaces) {
  CPluginLoader loader(bundle_.c_str(), ZIO_PLUGIN_TYPE_ID);
  EXPECT_NE(loader.GetInterface(kUnknownId), nullptr);
  EXPECT_EQ(TakeLog(), "factory, QueryInterface unknown, Release") << "no AddRef";
  auto* const port = static_cast<ZIOPortInterface*>(loader.GetInterface(ZIO_PORT_INTERFACE_ID));
  ASSERT_NE(port, nullptr);
  port->table->release(port);
  EXPECT_EQ(TakeLog(), "AddRef, QueryInterface port, Release, release");
  EXPECT_EQ(loader.GetInterface(ZIO_PLUGIN_TYPE_ID), nullptr);
  EXPECT_EQ(TakeLog(), "AddRef, QueryInterface other, Release");
  script().results["QueryInterface"] = 1;
  EXPECT_EQ(loader.GetInterface(ZIO_PLUGIN_TYPE_ID), nullptr) << "every code but 0 refuses";
  TakeLog();
  EXPECT_EQ(loader.GetInterface(static_cast<const char*>(nullptr)), nullptr);
  EXPECT_EQ(loader.GetInterface(static_cast<CFStringRef>(nullptr)), nullptr);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(PluginTest, HandlerTearsDownAsFarAsItCame) {
  const std::string query = "factory, AddRef, QueryInterface port, Release, ";
  const std::string start = query + "initialise 2 616263, ";
  const std::string end = "release, Release";
  struct Case {
    std::string fails;
    std::vector<int> results;  // of Open and Close in turn
    std::string log;
  };
  const Case cases[] = {
      {"QueryInterface", {-1, -1}, query + "Release"},
      {"initialise", {-1, -1}, start + end},
      {"", {}, start + "terminate, " + end},
      {"open", {-9, -1}, start + "open, terminate, " + end},
      {"", {0}, start + "open, close, terminate, " + end},
      {"", {0, 0, 0}, start + "open, close, open, close, terminate, " + end},
      {"close", {0, -9, 0, -9}, start + "open, close, open, close, terminate, " + end},
  };
  for (const Case& c : cases) {
    script().results = {{c.fails, -9}};
    {
      IOHandler handler(address_.get(), ErrorCallback, this, path_.get());
      for (std::size_t i = 0; i < c.results.size(); ++i) {
        EXPECT_EQ(i % 2 == 0 ? handler.Open() : handler.Close(), c.results[i]) << c.log;
      }
    }
    EXPECT_EQ(TakeLog(), c.log);
  }
  {
    IOHandler no_path(address_.get(), ErrorCallback, this, nullptr);
    IOHandler no_bundle(address_.get(), ErrorCallback, this, CFSTR("/nonexistent"));
    EXPECT_EQ(no_path.Open(), -1);
    EXPECT_EQ(no_bundle.Cancel(), -1);
  }
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(PluginTest, HandlerGatesItsOperations) {
  char bytes[] = "ab";
  long length = 2;
  char status[ZIO_STATUS_BUFFER_SIZE] = {};
  ControlElement control = {bytes, 2, status, 4};
  ZIOSnmpExchange exchange = {bytes, 2, status, 4};
  struct Case {
    std::string slot;
    std::string call;
    std::function<int(IOHandler&)> operation;
  };
  const Case cases[] = {
      {"cancel", "cancel", [](IOHandler& h) { return h.Cancel(); }},
      {"write", "write 6162", [&](IOHandler& h) { return h.Write(bytes, &length); }},
      {"flush", "flush 7", [](IOHandler& h) { return h.Flush(7); }},
      {"tab", "tab", [](IOHandler& h) { return h.Tab(); }},
      {"read", "read 2", [&](IOHandler& h) { return h.Read(bytes, &length); }},
      {"status", "status", [&](IOHandler& h) { return h.Status(status); }},
      {"getInfo", "getInfo", [](IOHandler& h) { return h.GetInfo(nullptr); }},
      {"ioctl", "ioctl 6 6162 4", [&](IOHandler& h) { return h.IOCTL(6, &exchange); }},
      {"control", "control 6162 4", [&](IOHandler& h) { return h.Control(&control); }},
      {"close", "close", [](IOHandler& h) { return h.Close(); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.slot);
    script().results = {{"initialise", -3}};
    IOHandler dead(address_.get(), ErrorCallback, this, path_.get());
    script().results = {{c.slot, -17}};
    IOHandler handler(address_.get(), ErrorCallback, this, path_.get());
    TakeLog();
    EXPECT_EQ(c.operation(dead), -1);
    EXPECT_EQ(TakeLog(), "");
    const bool needs_open = c.slot != "cancel";
    EXPECT_EQ(c.operation(handler), needs_open ? -1 : -17);
    EXPECT_EQ(TakeLog(), needs_open ? "" : c.call);
    ASSERT_EQ(handler.Open(), 0);
    EXPECT_EQ(c.operation(handler), -17) << "the plug-in's code as it stands";
    EXPECT_EQ(TakeLog(), "open, " + c.call);
  }
}

TEST_F(PluginTest, HandlerPassesItsErrorCallbackAndPath) {
  script().error_in = "open";
  IOHandler handler(address_.get(), ErrorCallback, this, path_.get());
  EXPECT_EQ(fake_plugin::LastPath(), bundle_);
  EXPECT_EQ(fake_plugin::LastContext(), this);
  TakeLog();
  handler.Open();
  EXPECT_EQ(TakeLog(), "open, callback 42");
}

TEST_F(PluginTest, PortInfoListsAndTearsDown) {
  const std::string start = "factory, AddRef, QueryInterface info, Release, info.initialise 2, ";
  const std::string end = "info.terminate, info.release, Release";
  const auto list = fake_plugin::MakeList({});
  script().list = list;
  const auto empty = fake_plugin::MakeDictionary({});
  EXPECT_EQ(MakeZIOPortInfo(path_.get(), empty.get()).GetList(), list.get());
  EXPECT_EQ(TakeLog(), start + "info.getList, " + end);
  script().results["info.initialise"] = -1;
  EXPECT_EQ(MakeZIOPortInfo(path_.get(), empty.get()).GetList(), nullptr);
  EXPECT_EQ(TakeLog(), start + end) << "terminated although it never became ready";
}

TEST_F(PluginTest, PortInfoTakesItsPathFromTheDictionary) {
  const auto empty = fake_plugin::MakeDictionary({});
  const auto with_path = fake_plugin::MakeDictionary({{ZIO_INFO_PLUGIN_PATH, path_}});
  const auto with_data = fake_plugin::MakeDictionary({{ZIO_INFO_PLUGIN_PATH, address_}});
  struct Case {
    const char* name;
    CFStringRef path;
    CFDictionaryRef information;
    bool loads;
  };
  const Case cases[] = {
      {"in the dictionary", nullptr, with_path.get(), true},
      {"given first", CFSTR("/nonexistent"), with_path.get(), false},
      {"nowhere", nullptr, empty.get(), false},
      {"no text", nullptr, with_data.get(), false},
      {"no dictionary", path_.get(), nullptr, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeZIOPortInfo(c.path, c.information).GetList(), nullptr);
    EXPECT_EQ(!TakeLog().empty(), c.loads) << c.name;
  }
}

}  // namespace

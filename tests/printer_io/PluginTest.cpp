// The plug-in loader and its two wrappers, as the calls that reach the plug-in.
#include <gmock/gmock.h>
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

using fake_plugin::LiveObjects;
using fake_plugin::script;
using fake_plugin::TakeCalls;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const char* const kUnknownId = "00000000-0000-0000-C000-000000000046";

int ErrorCallback(void* /*context*/, int /*code*/, char* /*message*/) {
  return 42;
}

class PluginTest : public testing::Test {
 protected:
  ~PluginTest() override { EXPECT_EQ(LiveObjects(), 0) << "everything was released"; }

  std::string BundlePath() const {
    std::string text;
    EXPECT_TRUE(Ravik::CopyText(path_.get(), kCFStringEncodingUTF8, text));
    return text;
  }

  fake_plugin::Session plugin_;
  CFRef<CFStringRef> path_ = ZIOLibrary::GetLibraryPath();
  CFRef<CFDataRef> address_ = fake_plugin::MakeData("abc");
};

TEST_F(PluginTest, LoaderMakesOneInstanceByEachForm) {
  const CFRef<CFURLRef> url(
      CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path_.get(), kCFURLPOSIXPathStyle, true));
  const CFStringRef type = CFSTR(ZIO_PLUGIN_TYPE_ID);
  { const CPluginLoader loader(BundlePath().c_str(), ZIO_PLUGIN_TYPE_ID); }
  EXPECT_THAT(TakeCalls(), ElementsAre("factory", "Release"));
  { const CPluginLoader loader(path_.get(), type); }
  EXPECT_THAT(TakeCalls(), ElementsAre("factory", "Release"));
  { const CPluginLoader loader(url.get(), type); }
  EXPECT_THAT(TakeCalls(), ElementsAre("factory", "Release"));
}

TEST_F(PluginTest, LoaderStaysEmptyWithoutBundleTypeOrInstance) {
  const std::string bundle = BundlePath();
  struct Case {
    const char* name;
    const char* path;
    const char* type;
  };
  const Case cases[] = {
      {"no path", nullptr, ZIO_PLUGIN_TYPE_ID},
      {"empty path", "", ZIO_PLUGIN_TYPE_ID},
      {"no type", bundle.c_str(), nullptr},
      {"empty type", bundle.c_str(), ""},
      {"no such bundle", "/nonexistent.plugin", ZIO_PLUGIN_TYPE_ID},
      {"a file for a bundle", "/proc/self/exe", ZIO_PLUGIN_TYPE_ID},
      {"a folder for a bundle", "/proc/self", ZIO_PLUGIN_TYPE_ID},
      {"a type that the bundle does not make", bundle.c_str(), kUnknownId},
  };
  for (const Case& c : cases) {
    CPluginLoader loader(c.path, c.type);
    EXPECT_EQ(loader.GetInterface(ZIO_PORT_INTERFACE_ID), nullptr) << c.name;
    EXPECT_EQ(loader.GetInterface(CFSTR(ZIO_PORT_INTERFACE_ID)), nullptr) << c.name;
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());

  script().factory_fails = true;
  CPluginLoader loader(bundle.c_str(), ZIO_PLUGIN_TYPE_ID);
  EXPECT_EQ(loader.GetInterface(ZIO_PORT_INTERFACE_ID), nullptr);
  EXPECT_THAT(TakeCalls(), ElementsAre("factory"));
}

TEST_F(PluginTest, LoaderAsksForInterfaces) {
  CPluginLoader loader(path_.get(), CFSTR(ZIO_PLUGIN_TYPE_ID));
  TakeCalls();

  EXPECT_NE(loader.GetInterface(kUnknownId), nullptr);
  EXPECT_THAT(TakeCalls(), ElementsAre("QueryInterface unknown", "Release")) << "no AddRef";

  auto* const port = static_cast<ZIOPortInterface*>(loader.GetInterface(ZIO_PORT_INTERFACE_ID));
  ASSERT_NE(port, nullptr);
  port->table->release(port);
  EXPECT_THAT(TakeCalls(), ElementsAre("AddRef", "QueryInterface port", "Release", "release"));

  EXPECT_EQ(loader.GetInterface(ZIO_PLUGIN_TYPE_ID), nullptr);
  EXPECT_THAT(TakeCalls(), ElementsAre("AddRef", "QueryInterface other", "Release"));

  script().results["QueryInterface"] = 1;
  EXPECT_EQ(loader.GetInterface(ZIO_PORT_INTERFACE_ID), nullptr) << "every code but 0 refuses";
  TakeCalls();

  EXPECT_EQ(loader.GetInterface(static_cast<const char*>(nullptr)), nullptr);
  EXPECT_EQ(loader.GetInterface(static_cast<CFStringRef>(nullptr)), nullptr);
  EXPECT_EQ(loader.GetInterface(""), nullptr);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

const std::vector<std::string> kHandlerStart = {"factory", "AddRef", "QueryInterface port",
                                                "Release", "initialise 2 616263"};

std::vector<std::string> Started(std::vector<std::string> calls) {
  calls.insert(calls.begin(), kHandlerStart.begin(), kHandlerStart.end());
  return calls;
}

TEST_F(PluginTest, HandlerTearsDownAsFarAsItCame) {
  struct Case {
    const char* name;
    std::string fails;
    std::vector<int (*)(IOHandler&)> operations;
    std::vector<std::string> calls;
  };
  const auto open = [](IOHandler& handler) { return handler.Open(); };
  const auto close = [](IOHandler& handler) { return handler.Close(); };
  const Case cases[] = {
      {"not initialised", "initialise", {open}, Started({"release", "Release"})},
      {"initialised", "", {}, Started({"terminate", "release", "Release"})},
      {"failed open", "open", {open}, Started({"open", "terminate", "release", "Release"})},
      {"open", "", {open}, Started({"open", "close", "terminate", "release", "Release"})},
      {"closed", "", {open, close}, Started({"open", "close", "terminate", "release", "Release"})},
      {"failed close",
       "close",
       {open, close},
       Started({"open", "close", "terminate", "release", "Release"})},
      {"no interface",
       "QueryInterface",
       {open},
       {"factory", "AddRef", "QueryInterface port", "Release", "Release"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    script().results = {{c.fails, -9}};
    {
      IOHandler handler(address_.get(), ErrorCallback, this, path_.get());
      for (const auto operation : c.operations) operation(handler);
    }
    EXPECT_THAT(TakeCalls(), ElementsAreArray(c.calls));
  }
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
    bool needs_open;
    std::function<int(IOHandler&)> operation;
  };
  const Case cases[] = {
      {"cancel", "cancel", false, [](IOHandler& h) { return h.Cancel(); }},
      {"write", "write 6162", true, [&](IOHandler& h) { return h.Write(bytes, &length); }},
      {"flush", "flush 7", true, [](IOHandler& h) { return h.Flush(7); }},
      {"tab", "tab", true, [](IOHandler& h) { return h.Tab(); }},
      {"read", "read 2", true, [&](IOHandler& h) { return h.Read(bytes, &length); }},
      {"status", "status", true, [&](IOHandler& h) { return h.Status(status); }},
      {"getInfo", "getInfo", true, [](IOHandler& h) { return h.GetInfo(nullptr); }},
      {"ioctl", "ioctl 6 6162 4", true, [&](IOHandler& h) { return h.IOCTL(6, &exchange); }},
      {"control", "control 6162 4", true, [&](IOHandler& h) { return h.Control(&control); }},
      {"close", "close", true, [](IOHandler& h) { return h.Close(); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.slot);
    script().results = {{"initialise", -3}};
    IOHandler dead(address_.get(), ErrorCallback, this, path_.get());
    script().results = {{c.slot, -17}};
    IOHandler closed(address_.get(), ErrorCallback, this, path_.get());
    IOHandler open(address_.get(), ErrorCallback, this, path_.get());
    ASSERT_EQ(open.Open(), 0);
    TakeCalls();

    EXPECT_EQ(c.operation(dead), -1);
    EXPECT_EQ(dead.Open(), -1);
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_EQ(c.operation(closed), c.needs_open ? -1 : -17);
    EXPECT_EQ(TakeCalls().size(), c.needs_open ? 0U : 1U);
    EXPECT_EQ(c.operation(open), -17) << "the plug-in's code as it stands";
    EXPECT_THAT(TakeCalls(), ElementsAre(c.call));
  }
  TakeCalls();
}

TEST_F(PluginTest, HandlerClosesOnceWhateverTheResult) {
  IOHandler handler(address_.get(), ErrorCallback, this, path_.get());
  script().results = {{"open", 5}};
  EXPECT_EQ(handler.Open(), 5);
  EXPECT_EQ(handler.Close(), -1) << "a failed open leaves nothing to close";
  script().results = {{"close", -8}};
  EXPECT_EQ(handler.Open(), 0);
  EXPECT_EQ(handler.Close(), -8);
  EXPECT_EQ(handler.Close(), -1);
  EXPECT_EQ(handler.Open(), 0) << "a closed port opens again";
}

TEST_F(PluginTest, HandlerPassesItsErrorCallbackAndPath) {
  script().error_in = "open";
  int context = 0;
  IOHandler handler(address_.get(), ErrorCallback, &context, path_.get());
  EXPECT_EQ(fake_plugin::LastPath(), BundlePath());
  EXPECT_EQ(fake_plugin::LastContext(), &context);
  TakeCalls();
  handler.Open();
  EXPECT_THAT(TakeCalls(), ElementsAre("open", "callback 42"));
}

TEST_F(PluginTest, HandlerWithoutAPathOrABundleDoesNothing) {
  IOHandler no_path(address_.get(), ErrorCallback, this, nullptr);
  IOHandler no_bundle(address_.get(), ErrorCallback, this, CFSTR("/nonexistent"));
  EXPECT_EQ(no_path.Open(), -1);
  EXPECT_EQ(no_bundle.Open(), -1);
  EXPECT_EQ(no_bundle.Cancel(), -1);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(PluginTest, PortInfoListsAndTearsDown) {
  const auto list = fake_plugin::MakeList({});
  script().list = list;
  const auto empty = fake_plugin::MakeDictionary({});
  {
    MakeZIOPortInfo info(path_.get(), empty.get());
    EXPECT_EQ(info.GetList(), list.get());
  }
  EXPECT_THAT(TakeCalls(), ElementsAre("factory", "AddRef", "QueryInterface info", "Release",
                                       "info.initialise 2", "info.getList", "info.terminate",
                                       "info.release", "Release"));

  script().results["info.initialise"] = -1;
  {
    MakeZIOPortInfo info(path_.get(), empty.get());
    EXPECT_EQ(info.GetList(), nullptr);
  }
  EXPECT_THAT(TakeCalls(),
              ElementsAre("factory", "AddRef", "QueryInterface info", "Release",
                          "info.initialise 2", "info.terminate", "info.release", "Release"))
      << "terminated although it never became ready";
}

TEST_F(PluginTest, PortInfoTakesItsPathFromTheDictionary) {
  using fake_plugin::MakeDictionary;
  const auto with_path = MakeDictionary({{ZIO_INFO_PLUGIN_PATH, path_}});
  const auto wrong_path = MakeDictionary({{ZIO_INFO_PLUGIN_PATH, fake_plugin::MakeNumber(1)}});
  struct Case {
    const char* name;
    CFStringRef path;
    CFDictionaryRef information;
    bool loads;
  };
  const auto empty = MakeDictionary({});
  const Case cases[] = {
      {"in the dictionary", nullptr, with_path.get(), true},
      {"given first", CFSTR("/nonexistent"), with_path.get(), false},
      {"nowhere", nullptr, empty.get(), false},
      {"no text", nullptr, wrong_path.get(), false},
      {"no dictionary", path_.get(), nullptr, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeZIOPortInfo(c.path, c.information).GetList(), nullptr);
    EXPECT_EQ(!TakeCalls().empty(), c.loads) << c.name;
  }
}

}  // namespace

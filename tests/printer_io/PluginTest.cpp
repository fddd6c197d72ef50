// The plug-in loader and its two wrappers, as the calls that reach the plug-in.
#include <unistd.h>

#include <csignal>

#include "printer_io/CPluginLoader.h"
#include "printer_io/IOHandler.h"
#include "printer_io/MakeZIOPortInfo.h"
#include "tests/fake_plugin/FakePlugin.h"
#include "util/CFText.h"
#include "util/ZIOLibrary.h"

namespace {

using fake_plugin::script;
using fake_plugin::TakeLog;

const char kUnknownId[] = "00000000-0000-0000-C000-000000000046";

class PluginTest : public testing::Test {
 protected:
  PluginTest() { EXPECT_TRUE(Ravik::CopyText(path_.get(), kCFStringEncodingUTF8, bundle_)); }

  IOHandler Handler(CFStringRef path) {
    return {address_.get(), [](void*, int, char*) { return 42; }, this, path};
  }

  fake_plugin::Session plugin_;
  CFRef<CFStringRef> path_ = ZIOLibrary::GetLibraryPath();
  CFRef<CFDataRef> address_ = fake_plugin::MakeData("abc");
  std::string bundle_;
};

TEST_F(PluginTest, LoaderStaysEmptyWithoutBundleTypeOrInstance) {
  const char* const type = ZIO_PLUGIN_TYPE_ID;
  const char* const bundle = bundle_.c_str();
  script().results["factory"] = -1;
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {nullptr, type, ""},      {"", type, ""},           {"/proc/self/exe", type, ""},
      {"/proc/self", type, ""}, {bundle, nullptr, ""},    {bundle, "", ""},
      {bundle, kUnknownId, ""}, {bundle, type, "factory"}};
  for (const auto& [path, type_id, log] : cases) {
    EXPECT_EQ(CPluginLoader(path, type_id).GetInterface(ZIO_PORT_INTERFACE_ID), nullptr);
    EXPECT_EQ(TakeLog(), log);
  }
}

TEST_F(PluginTest, LoaderAsksForInterfaces) {
  CPluginLoader loader(bundle_.c_str(), ZIO_PLUGIN_TYPE_ID);
  EXPECT_NE(loader.GetInterface(kUnknownId), nullptr);
  EXPECT_EQ(TakeLog(), "factory, QueryInterface unknown, Release") << "no AddRef";
  EXPECT_EQ(loader.GetInterface(ZIO_PLUGIN_TYPE_ID), nullptr);
  EXPECT_EQ(TakeLog(), "AddRef, QueryInterface other, Release");
  script().results["QueryInterface"] = 1;
  EXPECT_EQ(loader.GetInterface(ZIO_PLUGIN_TYPE_ID), nullptr) << "every code but 0 refuses";
  EXPECT_EQ(loader.GetInterface(static_cast<const char*>(nullptr)), nullptr);
  EXPECT_EQ(loader.GetInterface(static_cast<CFStringRef>(nullptr)), nullptr);
  EXPECT_EQ(TakeLog(), "AddRef, QueryInterface other, Release");
}

TEST_F(PluginTest, HandlerTearsDownAsFarAsItCame) {
  const std::string query = "factory, AddRef, QueryInterface port, Release, ";
  const std::string start = query + "initialise 2 616263, ";
  const std::string end = "release, Release";
  const struct {
    const char* fails;
    std::vector<int> results;  // of Open and Close in turn
    std::string log;
  } cases[] = {
      {"QueryInterface", {-1, -1}, query + "Release"},
      {"initialise", {-1, -1}, start + end},
      {"", {}, start + "terminate, " + end},
      {"open", {-9, -1}, start + "open, terminate, " + end},
      {"", {0, 0, 0}, start + "open, close, open, close, terminate, " + end},
      {"close", {0, -9, 0, -9}, start + "open, close, open, close, terminate, " + end},
  };
  for (const auto& c : cases) {
    script().results = {{c.fails, -9}};
    {
      IOHandler handler = Handler(path_.get());
      for (std::size_t i = 0; i < c.results.size(); ++i) {
        EXPECT_EQ(i % 2 == 0 ? handler.Open() : handler.Close(), c.results[i]) << c.log;
      }
    }
    EXPECT_EQ(TakeLog(), c.log);
  }
  EXPECT_EQ(fake_plugin::LastPort().path, bundle_);
  EXPECT_EQ(fake_plugin::LastPort().context, this);
  EXPECT_EQ(fake_plugin::LastPort().callback_answer, 42);
  EXPECT_EQ(Handler(nullptr).Open(), -1);
  EXPECT_EQ(Handler(CFSTR("/nonexistent")).Cancel(), -1);
}

// The signal comes during one call, which returns after so many cancellations.
TEST_F(PluginTest, HandlerClosesThePortBeforeASignalEndsTheProcess) {
  const auto use_port = [&](const std::string& call, int cancellations) {
    int left = cancellations;
    script().on_call = [&](const std::string& name) {
      std::cerr << name << '\n';
      left -= name == "cancel" ? 1 : 0;
      if (name == call) std::raise(SIGTERM);
      while (name == call && left > 0 && sleep(20) > 0) continue;
    };
    Ravik::Termination::CatchSignals();
    sigset_t timer;  // is blocked where the host has it so
    sigemptyset(&timer);
    sigaddset(&timer, SIGALRM);
    sigprocmask(SIG_BLOCK, &timer, nullptr);
    IOHandler handler = Handler(path_.get());
    handler.Open();
    handler.Tab();
    handler.Flush(0);
    handler.Close();
  };
  const struct {
    const char* call;
    int cancellations;
    const char* calls;  // from that one on, a regular expression
  } cases[] = {
      {"factory", 0, "factory\nAddRef\nQueryInterface\nRelease\ninitialise\nterminate\n"},
      {"initialise", 0, "initialise\nterminate\nrelease\nRelease\n$"},
      {"open", 1, "open\ncancel\nclose\nterminate\nrelease\nRelease\n$"},
      {"tab", 3, "tab\n(cancel\n){3}close\nterminate\nrelease\nRelease\n$"},
      {"flush", 1, "flush\ncancel\nclose\nterminate\nrelease\nRelease\n$"},
      {"close", 2, "close\n(cancel\n){2}terminate\nrelease\nRelease\n$"},
      {"terminate", 0, "close\nterminate\nrelease\nRelease\n$"},
      {"tab", 1000, "tab\n(cancel\n){18}$"},
  };
  for (const auto& c : cases) {
    EXPECT_EXIT(use_port(c.call, c.cancellations), testing::KilledBySignal(SIGTERM), c.calls)
        << c.call;
  }
  EXPECT_EXIT(Ravik::Termination::CatchSignals();
              std::raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
}

TEST_F(PluginTest, HandlerGatesItsOperations) {
  static char bytes[] = "ab";
  static long length = 2;
  static ZIOSnmpExchange exchange = {bytes, 2, bytes, 2};
  static ControlElement control = {bytes, 2, bytes, 2};
  const std::pair<std::string, int (*)(IOHandler&)> cases[] = {
      {"cancel", [](IOHandler& h) { return h.Cancel(); }},
      {"write 6162", [](IOHandler& h) { return h.Write(bytes, &length); }},
      {"flush 7", [](IOHandler& h) { return h.Flush(7); }},
      {"tab", [](IOHandler& h) { return h.Tab(); }},
      {"read 2", [](IOHandler& h) { return h.Read(bytes, &length); }},
      {"status", [](IOHandler& h) { return h.Status(bytes); }},
      {"getInfo", [](IOHandler& h) { return h.GetInfo(nullptr); }},
      {"ioctl 6 6162 2", [](IOHandler& h) { return h.IOCTL(6, &exchange); }},
      {"control 6162 2", [](IOHandler& h) { return h.Control(&control); }},
  };
  for (const auto& [call, operation] : cases) {
    script().results = {{call.substr(0, call.find(' ')), -17}};
    IOHandler handler = Handler(path_.get());
    TakeLog();
    const bool needs_open = call != "cancel";
    EXPECT_EQ(operation(handler), needs_open ? -1 : -17);
    EXPECT_EQ(TakeLog(), needs_open ? "" : call);
    ASSERT_EQ(handler.Open(), 0);
    EXPECT_EQ(operation(handler), -17) << "the plug-in's code as it stands";
    EXPECT_EQ(TakeLog(), "open, " + call);
  }
}

TEST_F(PluginTest, PortInfoListsAndTearsDown) {
  const std::string start = "factory, AddRef, QueryInterface info, Release, info.initialise 2, ";
  const std::string end = "info.terminate, info.release, Release";
  const std::string listed = start + "info.getList, " + end;
  const auto list = fake_plugin::MakeList({});
  script().list = list;
  const auto empty = fake_plugin::MakeDictionary({});
  const auto with_path = fake_plugin::MakeDictionary({{ZIO_INFO_PLUGIN_PATH, path_}});
  const auto with_data = fake_plugin::MakeDictionary({{ZIO_INFO_PLUGIN_PATH, address_}});
  const struct {
    CFStringRef path;
    CFDictionaryRef information;
    bool loads;
  } cases[] = {{path_.get(), empty.get(), true},
               {nullptr, with_path.get(), true},
               {nullptr, empty.get(), false},
               {nullptr, with_data.get(), false},
               {CFSTR("/nonexistent"), with_path.get(), false},
               {path_.get(), nullptr, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(MakeZIOPortInfo(c.path, c.information).GetList(), c.loads ? list.get() : nullptr);
    EXPECT_EQ(TakeLog(), c.loads ? listed : "") << &c - cases;
  }
  script().results["info.initialise"] = -1;
  EXPECT_EQ(MakeZIOPortInfo(path_.get(), empty.get()).GetList(), nullptr);
  EXPECT_EQ(TakeLog(), start + end) << "terminated although it never became ready";
}

}  // namespace

// The transport: one exchange with one printer by its name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "GantryCore/IPrinterLibrary.h"
#include "printer_control/StatusReply.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace Ravik {
namespace {

using fake_plugin::MakeArray;
using fake_plugin::MakeData;
using fake_plugin::MakeDictionary;
using fake_plugin::MakeNumber;
using fake_plugin::MakeText;
using fake_plugin::script;
using fake_plugin::TakeLog;
using std::string_literals::operator""s;  // NOLINT(misc-unused-using-decls)
using testing::EndsWith;
using testing::StartsWith;

const char* const kStartHex =
    "1B401B28520800005245"
    "4D4F544531";
const char* const kEndHex = "1B000000";

CommandVO Command(const std::string& bytes) {
  return CommandVO(bytes.data(), static_cast<int>(bytes.size()));
}

std::string Text(const CommandVO& command) {
  return {command.bytes().begin(), command.bytes().end()};
}

class TransportTest : public testing::Test {
 protected:
  TransportTest() {
    fake_plugin::StorePrinters({{"local", "D", "L", 1}, {"network", "D", "N", 4}});
  }
  ~TransportTest() override { EXPECT_EQ(fake_plugin::LiveObjects(), 0); }

  // A transport with its port open; what led there is not in the log.
  static std::unique_ptr<IPrinterLibrary> Opened(const std::string& name) {
    auto library = std::make_unique<IPrinterLibrary>();
    EXPECT_TRUE(library->OpenLibrary(name));
    TakeLog();
    return library;
  }

  fake_plugin::Session plugin_;
};

TEST_F(TransportTest, FailsWithoutAnOpenPort) {
  IPrinterLibrary library;
  CommandVO reply = Command("before");
  StatusReply status;
  long length = 1;
  const unsigned char byte = 0;
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(library.SendCommand(Command("XY"), &reply));
    EXPECT_FALSE(library.SendCommandD4(Command("XY"), nullptr));
    EXPECT_FALSE(library.SendSpooler(Command("XY")));
    EXPECT_FALSE(library.GetStatus(status));
    EXPECT_FALSE(library.IsNetworkAccess());
    EXPECT_FALSE(library.CloseLibrary());
    EXPECT_FALSE(library.Write(&byte, &length));
    EXPECT_FALSE(library.Flush());
    library.Terminate();
    library.Terminate();
    EXPECT_FALSE(library.OpenLibrary("local")) << "terminated";
  }
  EXPECT_EQ(Text(reply), "before");
  EXPECT_EQ(TakeLog(), "");
  library.Initialize();
  library.Initialize();
  EXPECT_TRUE(library.OpenLibrary("local"));
}

TEST_F(TransportTest, OpensByTheStoredRecordAndClosesOnTheWayOut) {
  for (const bool network : {false, true}) {
    {
      IPrinterLibrary library;
      EXPECT_TRUE(library.OpenLibrary(network ? "network" : "local"));
      EXPECT_EQ(library.IsNetworkAccess(), network);
      if (network) {
        EXPECT_TRUE(library.CloseLibrary());
        EXPECT_TRUE(library.CloseLibrary()) << "the port object is still there";
      }
    }
    EXPECT_EQ(TakeLog(), "factory, AddRef, QueryInterface port, Release, initialise 2 "s +
                             (network ? "4E" : "4C") +
                             ", open, close, terminate, release, Release");
  }
}

TEST_F(TransportTest, DoesNotOpenWithoutACompleteRecord) {
  using Object = CFRef<CFTypeRef>;
  const Object name = MakeText("P");
  const Object address = MakeData("x");
  const Object type = MakeNumber(1);
  const auto record = [](const Object& target, const Object& bytes, const Object& port) {
    std::map<std::string, CFRef<CFTypeRef>> entries;
    if (target) entries[ZIO_INFO_TARGET_NAME] = target;
    if (bytes) entries[ZIO_INFO_ADDRESS] = bytes;
    if (port) entries[ZIO_INFO_IOX_TYPE] = port;
    return MakeDictionary(entries);
  };
  struct Case {
    const char* name;
    CFRef<CFTypeRef> record;
  };
  const Case cases[] = {
      {"another name", record(MakeText("p"), address, type)},
      {"no type", record(name, address, {})},
      {"type no number", record(name, address, name)},
      {"no address", record(name, {}, type)},
      {"address no data", record(name, name, type)},
      {"name no text", record(type, address, type)},
      {"no record at all", name},
  };
  for (const Case& c : cases) {
    fake_plugin::StoreList(MakeArray({c.record}).get());
    IPrinterLibrary library;
    EXPECT_FALSE(library.OpenLibrary("P")) << c.name;
    EXPECT_FALSE(library.OpenLibrary("P\xFF")) << "a name that is no text";
    EXPECT_FALSE(library.CloseLibrary());
  }
  EXPECT_EQ(TakeLog(), "");

  fake_plugin::StorePrinters({{"P", "D", "x", 1}});
  script().results["open"] = -1;
  IPrinterLibrary library;
  EXPECT_FALSE(library.OpenLibrary("P"));
  EXPECT_EQ(fake_plugin::LiveObjects(), 0) << "a port that did not open is gone";
  EXPECT_FALSE(library.CloseLibrary());
}

TEST_F(TransportTest, SendsEachFramingItsOwnWay) {
  const std::string framed = kStartHex + "5859"s + kEndHex;
  const auto local = Opened("local");
  EXPECT_TRUE(local->SendCommand(Command("XY"), nullptr));
  EXPECT_TRUE(local->SendCommand(Command(""), nullptr));
  EXPECT_TRUE(local->SendSpooler(Command("XY")));
  EXPECT_TRUE(local->SendSpooler(Command("")));
  EXPECT_TRUE(local->SendCommandD4(Command("XY"), nullptr));
  EXPECT_TRUE(local->SendCommandD4(Command(""), nullptr));
  EXPECT_EQ(TakeLog(), "write " + framed + ", flush 0, write " + kStartHex + kEndHex +
                           ", flush 0, write 5859, flush 0, write, flush 0, control 5859 512, "
                           "control  512");
  const auto network = Opened("network");
  EXPECT_TRUE(network->SendCommand(Command("XY"), nullptr));
  EXPECT_TRUE(network->SendSpooler(Command("XY")));
  EXPECT_TRUE(network->SendCommandD4(Command("XY"), nullptr));
  const std::string log = TakeLog();
  EXPECT_THAT(log, StartsWith("ioctl 6 "));
  EXPECT_THAT(log, EndsWith(", write 5859, flush 0, control 5859 512"));
}

TEST_F(TransportTest, AppendsAFullBufferForEveryReply) {
  for (const char* const name : {"local", "network"}) {
    const auto library = Opened(name);
    script().replies = {"one", "two"};
    CommandVO reply = Command("before");
    EXPECT_TRUE(library->SendCommand(Command("XY"), &reply));
    EXPECT_EQ(Text(reply), "before" + "one"s + std::string(509, '\0'));
    EXPECT_TRUE(library->SendCommandD4(Command("XY"), &reply));
    EXPECT_EQ(Text(reply),
              "before" + "one"s + std::string(509, '\0') + "two" + std::string(509, '\0'));

    script().results = {{"ioctl", -2}, {"read", -2}, {"control", -2}};
    EXPECT_FALSE(library->SendCommand(Command("XY"), &reply));
    EXPECT_FALSE(library->SendCommandD4(Command("XY"), &reply));
    EXPECT_FALSE(library->SendCommandD4(Command("XY"), nullptr));
    EXPECT_EQ(reply.bytes().size(), 6U + 1024U) << "untouched by a failure";
    script().results.clear();
  }
}

// The fields of a status reply: status code 4, then a serial number of length bytes.
std::string StatusFields(std::size_t length) {
  return "\x01\x01\x04\x1F"s + static_cast<char>(length) + std::string(length, 'S');
}

TEST_F(TransportTest, StoresTheStatusBehindTheFirstLineEnd) {
  const std::string fields = StatusFields(10);
  const std::string reply = "\x0F\x00"s + fields;
  // 250 bytes of fields with their length word fill the buffer behind "@\r\n" and leave the zero.
  const std::string full = "@\r\n\xFC\x00"s + StatusFields(247);
  struct Case {
    const char* name;
    std::string text;
    bool result;
    int status;  // -1: nothing stored
    std::size_t serial;
  };
  const Case cases[] = {
      {"behind a heading", "@BDC ST2\r\n" + reply, true, 4, 10},
      {"at the start", "\r\n" + reply, true, 4, 10},
      {"the first of two line ends", "\r\n" + reply + "\r\n\x05\x00"s, true, 4, 10},
      {"a lone return first", "\rX\n\r\n" + reply, true, 4, 10},
      {"no line end", "@BDC ST2" + reply, false, -1, 0},
      {"line end behind a zero byte", "@\0\r\n"s + reply, false, -1, 0},
      {"nothing behind it", "@\r\n", true, -1, 0},
      {"empty", "", false, -1, 0},
      {"length word without its fields", "\r\n\xFF\xFF"s, true, -1, 0},
      {"to the end of the buffer", full, true, 4, 247},
      {"length beyond the buffer", "@\r\n\xFF\xFF"s + full.substr(5), true, 4, 247},
      {"no terminating zero", std::string(255, 'x') + "\r\n", true, -1, 0},
      {"one byte of a length word", std::string(254, 'x') + "\r\n\x05"s, true, -1, 0},
      {"length word at the very end", std::string(253, 'x') + "\r\n\x05\x00"s, true, -1, 0},
      {"return without its feed at the end", std::string(256, 'x') + "\r", false, -1, 0},
  };
  const auto library = Opened("local");
  for (const Case& c : cases) {
    script().status = c.text;
    StatusReply status;
    EXPECT_EQ(library->GetStatus(status), c.result) << c.name;
    EXPECT_EQ(status.GetStatus(), c.status) << c.name;
    EXPECT_EQ(status.GetSerialNumber().size(), c.serial) << c.name;
  }
  script().status = "\r\n" + reply;
  script().results["status"] = -1;
  StatusReply status;
  EXPECT_FALSE(library->GetStatus(status));
  EXPECT_EQ(status.GetStatus(), -1);
}

}  // namespace
}  // namespace Ravik

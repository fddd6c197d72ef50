// The transport and its port: what they hand to the plug-in and what they take from it.
#include <gmock/gmock.h>

#include <algorithm>

#include "GantryCore/IPrinterLibrary.h"
#include "printer_control/StatusReply.h"
#include "printer_io/CZIOCommon.h"
#include "tests/fake_plugin/FakePlugin.h"

namespace {

using fake_plugin::script;
using fake_plugin::TakeLog;
using Ravik::CommandVO;
using Ravik::IPrinterLibrary;
using std::string_literals::operator""s;  // NOLINT(misc-unused-using-decls)
using testing::MatchesRegex;

CommandVO Command(const std::string& bytes) {
  return CommandVO(bytes.data(), static_cast<int>(bytes.size()));
}

// An open port.
struct Port : CZIOCommon {
  explicit Port(int type)
      : CZIOCommon(fake_plugin::MakeData("abc").get(), fake_plugin::MakeNumber(type).get()) {
    EXPECT_EQ(OpenPrinterPort(), 0);
    TakeLog();
  }
};

class TransportTest : public testing::Test {
 protected:
  TransportTest() {
    fake_plugin::StorePrinters({{"local", "D", "L", 1}, {"network", "D", "N", 4}});
  }

  // Exchanges "XY" for a reply in a buffer that is exactly as long as its capacity.
  int Exchange(CZIOCommon& port, long capacity = 512) {
    reply_ = std::vector<char>(static_cast<std::size_t>(capacity), '.');
    return port.SendWriteAndReadCommand(bytes_, 2, reply_.data(), capacity);
  }

  fake_plugin::Session plugin_;
  std::vector<char> reply_;
  char bytes_[8] = "XY";
};

TEST_F(TransportTest, PortFailsWithoutItsInformationOrTypeAndForImpossibleLengths) {
  CZIOCommon no_type(fake_plugin::MakeData("abc").get(), nullptr);
  CZIOCommon no_information(nullptr, fake_plugin::MakeNumber(4).get());
  for (CZIOCommon* const port : {&no_type, &no_information}) {
    EXPECT_EQ(port->OpenPrinterPort(), -1);
    EXPECT_EQ(port->GetStatus(bytes_), -1);
    EXPECT_EQ(port->SendWriteCommand(bytes_, 2, 1), -1);
    EXPECT_EQ(Exchange(*port), -1);
    EXPECT_EQ(port->SendReadCommand(bytes_, 2), -1);
    EXPECT_EQ(port->D4_SendWriteAndReadCommand(bytes_, 2, bytes_, 2), -1);
    port->ClosePrinterPort();
  }
  for (const int type : {1, 4}) {
    Port port(type);
    EXPECT_EQ(port.SendWriteCommand(bytes_, -1, 1), -1);
    EXPECT_EQ(port.SendWriteCommand(nullptr, 1, 0), -1);
    EXPECT_EQ(port.SendWriteAndReadCommand(bytes_, 8, bytes_, -1), -1);
    EXPECT_EQ(port.SendWriteAndReadCommand(bytes_, 8, nullptr, 8), -1);
    EXPECT_EQ(port.D4_SendWriteAndReadCommand(nullptr, 8, bytes_, 8), -1);
    EXPECT_EQ(port.SendReadCommand(nullptr, 8), -1);
    EXPECT_EQ(port.GetStatus(nullptr), -1);
    EXPECT_EQ(TakeLog(), "");
  }
}

TEST_F(TransportTest, LocalPortStopsAtTheFirstFailure) {
  Port port(1);
  std::string log;
  for (const std::string call : {"write 5859", "flush 0", "read 512"}) {
    script().results = {{call.substr(0, call.find(' ')), -33}};
    EXPECT_EQ(Exchange(port), -1);
    EXPECT_EQ(TakeLog(), log + call);
    log += call + ", ";
  }
}

TEST_F(TransportTest, NetworkPortSendsOneRequest) {
  Port port(4);
  std::string sent;
  long length = 0;
  script().responder = [&sent](const std::string& bytes) { return sent = bytes; };
  EXPECT_EQ(Exchange(port), 0);
  EXPECT_THAT(TakeLog(), MatchesRegex("ioctl 6 30[0-9A-F]+ 512"));
  ASSERT_EQ(CZIOCommon::CreateSNMPCommand("XY", 2, reply_.data(), &length), 0);
  EXPECT_EQ(sent, std::string(reply_.data(), static_cast<std::size_t>(length)));
  EXPECT_EQ(port.SendWriteCommand(bytes_, 2, 0), 0);
  EXPECT_EQ(TakeLog(), "write 5859, flush 0") << "the spooler's way";
  script().replies = {std::string(513, 'x')};
  EXPECT_EQ(port.SendWriteCommand(bytes_, 2, 1), -50) << "also an answer that is dropped";
  script().results = {{"ioctl", -12}, {"control", -77}, {"status", 3}, {"open", -9}};
  EXPECT_EQ(Exchange(port), -12);
  EXPECT_EQ(port.D4_SendWriteAndReadCommand(bytes_, 2, bytes_, 2), -77);
  EXPECT_EQ(port.GetStatus(bytes_), 3);
  EXPECT_EQ(port.OpenPrinterPort(), -1);
  EXPECT_EQ(fake_plugin::LastPort().callback_answer, -1);
  TakeLog();
  std::string too_long(500, 'x');
  EXPECT_EQ(port.SendWriteCommand(too_long.data(), 500, 1), -1);
  EXPECT_EQ(TakeLog(), "") << "refused before anything is sent";
}

// What a plug-in may make of the exchange block, and what is taken of it.
TEST_F(TransportTest, BoundsTheAnswerOfTheExchange) {
  using Block = ZIOSnmpExchange;
  static std::string own(600, 'o');  // the plug-in's own buffer; the port's has 512 bytes
  const struct {
    long capacity;
    int result;
    std::ptrdiff_t copied;
    void (*change)(Block&);
  } cases[] = {
      {512, 0, 0, [](Block& b) { b.answer = nullptr, b.answerLength = 0; }},
      {512, -1, 0, [](Block& b) { b.answer = nullptr; }},
      {512, -1, 0, [](Block& b) { b.answerLength = INT64_MIN; }},
      {512, -50, 0, [](Block& b) { b.answerLength = INT64_MAX; }},
      {2, -50, 0, [](Block& b) { b.answerLength = 3; }},
      {512, 0, 512, [](Block& b) { b.answer = own.data(); }},
      {512, -50, 0, [](Block& b) { b.answer = own.data(), b.answerLength = 513; }},
      {600, 0, 600, [](Block& b) { b.answer = own.data(), b.answerLength = 600; }},
      {600, -1, 0, [](Block& b) { b.answerLength = 513; }},
      {512, -1, 0, [](Block& b) { b.answer += 500, b.answerLength = 13; }},
      {512, 0, 12, [](Block& b) { b.answer += 500, b.answerLength = 12; }},
  };
  Port port(4);
  script().responder = [](const std::string&) { return std::string(512, 'o'); };
  for (const auto& c : cases) {
    script().on_exchange = c.change;
    EXPECT_EQ(Exchange(port, c.capacity), c.result) << &c - cases;
    EXPECT_EQ(std::count(reply_.begin(), reply_.end(), 'o'), c.copied) << &c - cases;
  }
}

TEST_F(TransportTest, FailsWithoutAnOpenPort) {
  IPrinterLibrary library;
  StatusReply status;
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(library.SendCommand(Command("XY"), nullptr));
    EXPECT_FALSE(library.SendCommandD4(Command("XY"), nullptr));
    EXPECT_FALSE(library.SendSpooler(Command("XY")));
    EXPECT_FALSE(library.GetStatus(status) || library.IsNetworkAccess() || library.CloseLibrary());
    library.Terminate();
    EXPECT_FALSE(library.OpenLibrary("local")) << "terminated";
  }
  EXPECT_EQ(TakeLog(), "");
  library.Initialize();
  script().results["open"] = -1;
  EXPECT_FALSE(library.OpenLibrary("local"));
  EXPECT_EQ(fake_plugin::LiveObjects(), 0) << "a port that did not open is gone";
  EXPECT_FALSE(library.CloseLibrary());
}

TEST_F(TransportTest, SendsEachFramingItsOwnWay) {
  const std::string start = "1B401B285208000052454D4F544531";
  const std::string any = "[0-9A-F]+";
  const std::string exchanges[] = {"write " + start + "1B000000, flush 0, read 512, ",
                                   "ioctl 6 " + any + "03080000" + any + " 512, "};
  const std::string writes[] = {"write " + start + "58591B000000, flush 0, ",
                                "ioctl 6 " + any + "050800025859" + any + " 512, "};
  for (const int network : {0, 1}) {
    {
      IPrinterLibrary library;
      EXPECT_TRUE(library.OpenLibrary(network == 1 ? "network" : "local"));
      EXPECT_EQ(library.IsNetworkAccess(), network == 1);
      library.Initialize();
      script().results.clear();
      script().replies = {"one", "two"};
      CommandVO reply = Command("before");
      EXPECT_TRUE(library.SendCommand(Command(""), &reply));
      EXPECT_TRUE(library.SendCommandD4(Command(""), &reply));
      EXPECT_TRUE(library.SendSpooler(Command("")));
      EXPECT_TRUE(library.SendCommand(Command("XY"), nullptr));
      EXPECT_EQ(std::string(reply.bytes().begin(), reply.bytes().end()),
                "before" + "one"s + std::string(509, '\0') + "two" + std::string(509, '\0'));
      script().results = {{"ioctl", -2}, {"read", -2}, {"control", -2}};
      EXPECT_FALSE(library.SendCommand(Command(""), &reply));
      EXPECT_FALSE(library.SendCommandD4(Command("XY"), nullptr));
      EXPECT_EQ(reply.bytes().size(), 6U + 1024U) << "untouched by a failure";
      EXPECT_TRUE(library.CloseLibrary());
      EXPECT_TRUE(library.CloseLibrary()) << "the port object is still there";
      EXPECT_FALSE(library.Flush() || library.Write(nullptr, nullptr));
    }
    EXPECT_THAT(
        TakeLog(),
        MatchesRegex("factory, AddRef, QueryInterface port, Release, initialise 2 4., "
                     "open, " +
                     exchanges[network] + "control  512, write, flush 0, " + writes[network] +
                     exchanges[network] + "control 5859 512, close, terminate, release, Release"));
  }
}

TEST_F(TransportTest, StoresTheStatusBehindTheFirstLineEnd) {
  // Status code 4, then a serial number.
  const std::string reply = "\x0F\x00\x01\x01\x04\x1F\x0ASSSSSSSSSS"s;
  // 250 bytes of fields with their length word fill the buffer behind "@\r\n" and leave the zero.
  const std::string full = "\x01\x01\x04\x1F\xF7" + std::string(247, 'S');
  const struct {
    std::string text;
    bool result;
    int status = -1;  // nothing stored
    std::size_t serial = 0;
    const char* fails = "";
  } cases[] = {{"@BDC ST2\r\n" + reply, true, 4, 10},
               {"\r\n" + reply + "\r\n\x05\x00"s, true, 4, 10},
               {"\rX\n\r\n" + reply, true, 4, 10},
               {"\x01\x1B[2J\n\x7F\xFF\r\r\n" + reply, true, 4, 10},
               {"@BDC ST2" + reply, false},
               {"@\0\r\n"s + reply, false},
               {"\r\n" + reply, false, -1, 0, "status"},
               {"\r\n\xFF\xFF", true},
               {"@\r\n\xFC\x00"s + full, true, 4, 247},
               {"@\r\n\xFF\xFF" + full, true, 4, 247},
               {std::string(255, 'x') + "\r\n", true},
               {std::string(256, 'x') + "\r", false},
               {std::string(254, 'x') + "\r\n\x05", true}};
  IPrinterLibrary library;
  EXPECT_TRUE(library.OpenLibrary("local"));
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    script().status = c.text;
    script().results = {{c.fails, -1}};
    StatusReply status;
    EXPECT_EQ(library.GetStatus(status), c.result);
    EXPECT_EQ(status.GetStatus(), c.status);
    EXPECT_EQ(status.GetSerialNumber().size(), c.serial);
  }
}

}  // namespace

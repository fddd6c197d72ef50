// The search on the network: addresses, who may answer, requests and answers, sockets.
#include "port_driver/network_search/NetworkSearch.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <net/if.h>

#include <random>

#include "port_driver/DriverError.h"
#include "port_driver/network_search/Inquiry.h"
#include "port_driver/network_search/NameResolver.h"
#include "tests/Loopback6.h"
#include "virtual_printer/SnmpAgent.h"

namespace ZIOP {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

HostAddress At(const std::string& text) {
  const auto soon = Deadline::After(milliseconds(60000));
  return ResolveSearchAddress(SearchAddress::Parse(text), soon).at(0);
}

// Loopback, 127.0.0.0/8, and a point-to-point link.
const std::vector<Network> kLocal = {{htonl(0x7F000000U), htonl(0xFF000000U)},
                                     {htonl(0xC6336400U), htonl(0xFFFFFFFEU)}};

TEST(NetworkSearchTest, ReadsAddresses) {
  const struct {
    const char* text;
    const char* host;  // empty: refused
    uint16_t port;
    bool isNumeric;
  } kCases[] = {
      {"192.0.2.7", "192.0.2.7", 161, true},
      {"192.0.2.255:1161", "192.0.2.255", 1161, true},
      {"printer.example:65535", "printer.example", 65535, false},
      {"192.0.2.256", "192.0.2.256", 161, false},
      {"[fe80::1%lo]:1161", "fe80::1%lo", 1161, true},
      {"fe80::1%none", "fe80::1%none", 161, false},
      {"[::1]", "::1", 161, true},
      {"fe80::1%lo", "fe80::1%lo", 161, true},
      {"", "", 0, false},
      {":161", "", 0, false},
      {"[]:161", "", 0, false},
      {"[::1", "", 0, false},
      {"[::1]161", "", 0, false},
      {"host:", "", 0, false},
      {"host:0", "", 0, false},
      {"host:65536", "", 0, false},
      {"host:16 1", "", 0, false},
      {"two hosts", "", 0, false},
      {"host]:161", "", 0, false},
  };
  for (const auto& each : kCases) {
    try {
      const SearchAddress address = SearchAddress::Parse(each.text);
      EXPECT_EQ(address.host, each.host) << each.text;
      EXPECT_EQ(address.port, each.port) << each.text;
      EXPECT_EQ(address.isNumeric(), each.isNumeric) << each.text;
    } catch (const DriverError&) {
      EXPECT_STREQ(each.host, "") << each.text;
    }
  }
  EXPECT_THROW(SearchAddress::Parse(std::string("a\0b", 3)), DriverError);
  EXPECT_THROW(SearchAddress::Parse(std::string(256, 'a')), DriverError);
}

TEST(NetworkSearchTest, KnowsWhoMayAnswer) {
  const struct {
    const char* asked;
    const char* from;
    bool counts;
  } kCases[] = {
      {"127.0.0.1", "127.0.0.1", true},
      {"127.0.0.1", "127.0.0.2", false},
      {"127.0.0.1", "127.0.0.1:162", false},
      {"127.0.0.1", "[::1]", false},
      {"127.255.255.255", "127.1.2.3", true},  // the loopback network's
      {"127.255.255.255", "127.1.2.3:162", false},
      {"127.255.255.255", "128.0.0.1", false},
      {"127.1.2.255", "127.1.2.3", false},  // a host of that network
      {"255.255.255.255", "127.1.2.3", true},
      {"192.0.2.255", "192.0.2.9", true},  // a network elsewhere
      {"192.0.2.255", "192.0.3.9", false},
      {"198.51.100.1", "198.51.100.1", true},
      {"198.51.100.1", "198.51.100.0", false},  // no broadcast address
      {"[::1]", "[::1]", true},
      {"[::1]", "[::2]", false},
      {"[ff02::1%lo]", "[fe80::1%lo]", true},
      {"[ff02::1%lo]", "[fe80::1%lo]:162", false},
      {"[ff02::1%lo]", "[2001:db8::1]", false},
      {"[fe80::1%lo]", "[fe80::1%lo]", true},
      {"[fe80::1%lo]", "[fe80::2%lo]", false},
  };
  for (const auto& each : kCases) {
    EXPECT_EQ(Respondents(At(each.asked), kLocal).Include(At(each.from)), each.counts)
        << each.asked << " " << each.from;
  }
  HostAddress elsewhere = At("[fe80::1%lo]");
  reinterpret_cast<sockaddr_in6*>(&elsewhere.storage)->sin6_scope_id += 1;
  EXPECT_FALSE(Respondents(At("[fe80::1%lo]"), kLocal).Include(elsewhere));
  EXPECT_FALSE(Respondents(At("[ff02::1%lo]"), kLocal).Include(elsewhere));
}

int32_t NextId() {
  static int32_t id = 0;
  return ++id;
}

// A virtual printer without ports.
class Agent {
 public:
  explicit Agent(const std::vector<std::string>& faults = {}, const std::string& serial = "A7X9") {
    for (const std::string& fault : faults) {
      EXPECT_EQ(faults_.Add(fault), "");
    }
    faults_.Seed(serial);
    setup_ = {"QM-R410 Series", serial, "1.00", ""};
  }

  // Answers what inquiry asks next, all that is in its queue.
  void Answer(Inquiry& inquiry, const HostAddress& from) {
    while (const auto request = inquiry.Next()) {
      AnswerOne(inquiry, from, request->message);
    }
  }

  void AnswerOne(Inquiry& inquiry, const HostAddress& from, const std::string& message) {
    VirtualPrinter::Trace trace(nullptr);
    VirtualPrinter::Printer printer(
        setup_, VirtualPrinter::FactoryRecords(*VirtualPrinter::FindFamily(setup_.model)), faults_,
        trace);
    const auto answer = VirtualPrinter::SnmpAgent(printer, faults_, trace)
                            .Answer(VirtualPrinter::Bytes(message.begin(), message.end()));
    if (answer) {
      inquiry.Take(from, {reinterpret_cast<const char*>(answer->data()), answer->size()});
    }
  }

 private:
  VirtualPrinter::Faults faults_;
  VirtualPrinter::PrinterSetup setup_;
};

std::string TextOf(const FoundPrinter& printer) {
  return printer.uri + "|" + printer.address + "|" + printer.asked + "|" + printer.model + "|" +
         printer.description + "|" + printer.serial + "|" + printer.deviceId;
}

std::vector<std::string> TextsOf(const Inquiry& inquiry) {
  std::vector<std::string> texts;
  for (const FoundPrinter& printer : inquiry.Printers()) {
    texts.push_back(TextOf(printer));
  }
  return texts;
}

constexpr char kDeviceId[] = "MFG:ZARMO;MDL:QM-R410 Series;SN:A7X9;CMD:REMOTE1;CLS:PRINTER;";

TEST(NetworkSearchTest, FindsAPrinterThatLacksObjects) {
  const struct {
    std::vector<std::string> faults;
    std::string texts;
  } kCases[] = {
      {{}, std::string("QM-R410 Series|QM-R410 Series|A7X9|") + kDeviceId},
      {{"lack=hrDeviceDescr", "lack=sysDescr", "lack=prtGeneralSerialNumber"},
       std::string("|||") + kDeviceId},
      {{"lack=ppmPrinterIEEE1284DeviceId", "lack=sysDescr"}, "QM-R410 Series||A7X9|"},
      {{"lack=ppmPrinterIEEE1284DeviceId", "lack=hrDeviceDescr"}, "|QM-R410 Series|A7X9|"},
  };
  for (const auto& each : kCases) {
    Inquiry inquiry(NextId, kLocal);
    inquiry.Ask(At("[fe80::1%lo]:1161"), "link");
    Agent(each.faults).Answer(inquiry, At("[fe80::1%lo]:1161"));
    EXPECT_TRUE(inquiry.isComplete());
    EXPECT_THAT(TextsOf(inquiry),
                ElementsAre("socket://[fe80::1%25lo]?snmp=1161|fe80::1|link|" + each.texts));
  }
}

TEST(NetworkSearchTest, TakesOnlyAnswersToItsRequests) {
  const HostAddress printer = At("127.0.0.1");
  for (const char* fault : {"wrong-id", "wrong-oid", "garbage", "truncate=40", "loss=100"}) {
    Inquiry inquiry(NextId, kLocal);
    inquiry.Ask(printer, "printer");
    Agent({fault}).Answer(inquiry, printer);
    EXPECT_THAT(TextsOf(inquiry), IsEmpty()) << fault;
    inquiry.StartTry();  // it goes on asking
    Agent().Answer(inquiry, printer);
    EXPECT_THAT(TextsOf(inquiry), testing::SizeIs(1)) << fault;
  }
  Inquiry inquiry(NextId, kLocal);
  inquiry.Ask(printer, "printer");
  const std::string request = inquiry.Next()->message;
  Agent().AnswerOne(inquiry, At("127.0.0.2"), request);
  Agent().AnswerOne(inquiry, At("127.0.0.1:162"), request);
  inquiry.Take(printer, request);  // the request itself
  inquiry.Take(printer, "");
  inquiry.Take(printer, std::string(70000, '0'));
  EXPECT_THAT(TextsOf(inquiry), IsEmpty());
}

TEST(NetworkSearchTest, TakesManyFromABroadcastButNotWithoutEnd) {
  Inquiry inquiry(NextId, kLocal);
  inquiry.Ask(At("127.255.255.255"), "all");
  const std::string request = inquiry.Next()->message;
  for (int i = 0; i < 2 * static_cast<int>(kMaximumFromBroadcasts); ++i) {
    HostAddress from = At("127.0.0.1");
    reinterpret_cast<sockaddr_in*>(&from.storage)->sin_addr.s_addr =
        htonl(0x7F000001U + static_cast<uint32_t>(i));
    Agent().AnswerOne(inquiry, from, request);
    Agent().AnswerOne(inquiry, from, request);
  }
  EXPECT_EQ(inquiry.Printers().size(), kMaximumFromBroadcasts);
  EXPECT_EQ(inquiry.Printers()[1].uri, "socket://127.0.0.2");
  EXPECT_EQ(inquiry.Printers()[1].asked, "all");
  EXPECT_FALSE(inquiry.isComplete());  // others may still answer
}

// What a search with its tries finds among 100 printers, each of which loses every fifth request.
TEST(NetworkSearchTest, LossHidesNoPrinter) {
  Inquiry inquiry(NextId, kLocal);
  std::map<std::string, Agent> agents;
  for (int i = 1; i <= 100; ++i) {
    const std::string address = "127.0.0." + std::to_string(i);
    agents.emplace(address, Agent({"loss=20"}, "S" + std::to_string(i)));
    inquiry.Ask(At(address), address);
  }
  int requests = 0;
  for (int i = 0; i < kSearchTries; ++i) {
    inquiry.StartTry();
    while (const auto request = inquiry.Next()) {
      char address[INET_ADDRSTRLEN];
      inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(request->to.get())->sin_addr,
                address, sizeof address);
      agents.at(address).AnswerOne(inquiry, request->to, request->message);
      ++requests;
    }
  }
  EXPECT_TRUE(inquiry.isComplete());
  EXPECT_EQ(inquiry.Printers().size(), 100U);
  // Who has answered is left alone: 6 objects, and a quarter more for what was lost.
  EXPECT_LT(requests, 100 * 6 * 3 / 2);
}

TEST(NetworkSearchTest, ListensToTheEndOfItsTime) {
  const auto start = Deadline::Clock::now();
  std::vector<FoundPrinter> found;
  testing::internal::CaptureStderr();
  SearchNetwork({"127.0.0.1:9", HasLoopback6() ? "[::1]:9" : "127.0.0.2:9", "no host"},
                Deadline::After(milliseconds(300)), found);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZIOP: not asked: no address to ask: \"no host\"\n");
  EXPECT_THAT(found, IsEmpty());
  EXPECT_GE(Deadline::Clock::now() - start, milliseconds(300));
  EXPECT_LT(Deadline::Clock::now() - start, milliseconds(3000));
  if (!HasLoopback6()) {
    GTEST_SKIP() << kNoLoopback6;
  }
}

}  // namespace
}  // namespace ZIOP

// The SNMP agent: messages taken apart and put together, objects and faults.
#include <gtest/gtest.h>

#include <random>

#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/SnmpAgent.h"

namespace VirtualPrinter {
namespace {

struct TestAgent : TestPrinter {
  using TestPrinter::TestPrinter;
  // The answer in hexadecimal digits, "" for none.
  std::string Get(const std::string& request) {
    const auto answer = agent.Answer(Hex(request));
    return answer ? ToHex(*answer) : "";
  }
  SnmpAgent agent{printer, faults, trace};
};

std::string Element(const std::string& tag, const std::string& contents) {
  const std::size_t size = contents.size() / 2;
  const auto low = ToHex(static_cast<std::uint8_t>(size & 0xFF));
  if (size < 128) return tag + low + contents;
  if (size < 256) return tag + "81" + low + contents;
  return tag + "82" + ToHex(static_cast<std::uint8_t>(size >> 8)) + low + contents;
}

const std::string kOrchid = "04066F7263686964";
const std::string kPublic = "04067075626C6963";
const std::string kNoError = "020100020100";  // error-status and error-index
const std::string kSysDescr = "06082B06010201010100";
const std::string kStatus = "060E2B06010401951E0102021E010101";
const std::string kModel = "040E" + ToHex(ToBytes(kPlain));

// A GetRequest (tag A0) or GetResponse (A2).
std::string Message(const std::string& tag, const std::string& bindings,
                    const std::string& state = kNoError, const std::string& community = kOrchid,
                    const std::string& request_id = "020102") {
  const std::string pdu = request_id + state + Element("30", bindings);
  return Element("30", "020100" + community + Element(tag, pdu));
}

std::string Request(const std::string& identifier, const std::string& community = kOrchid) {
  return Message("A0", Element("30", identifier + "0500"), kNoError, community);
}

std::string CommandObject(const std::string& payload) {
  return Element("06", "2B06010401951E01020228010102" + payload);
}

// The identifier that carries `command`.
std::string CommandObject(const Bytes& command) {
  const std::size_t size = command.size();
  std::vector<std::size_t> payload = {(size + 3) % 256, 8, size / 256, size % 256};
  payload.insert(payload.end(), command.begin(), command.end());
  std::string digits;
  for (const std::size_t byte : payload) {
    digits += (byte < 0x80 ? "" : "81") + ToHex(static_cast<std::uint8_t>(byte & 0x7F));
  }
  return CommandObject(digits);
}

// The read of slot 3 in layout 0.
const std::string kIdentifier = "061E2B06010401951E010202280101020F08000C45580800010000001B370300";
const std::string kRequest =
    "303C02010004066F7263686964A02F02010202010002010030243022" + kIdentifier + "0500";

TEST(SnmpAgent, AnswersACommand) {
  TestAgent agent;
  const std::string reply = ToHex(ToBytes(agent.Ask(Read("370300"))));
  EXPECT_EQ(agent.Get(kRequest),
            "3081B102010004066F7263686964A281A3020102020100020100308197308194" + kIdentifier +
                "0472" + reply);
  EXPECT_EQ(Request(CommandObject(Read("370300"))), kRequest);
}

// Cut short, extended, or changed at random: an answer to the last is fine, a bad access is not.
TEST(SnmpAgent, SurvivesDamagedRequests) {
  TestAgent agent;
  for (std::size_t size = 0; size < kRequest.size(); size += 2) {
    EXPECT_EQ(agent.Get(kRequest.substr(0, size)), "") << size;
  }
  EXPECT_EQ(agent.Get(kRequest + "00"), "");
  std::mt19937 random(1);
  const Bytes request = Hex(kRequest);
  for (int round = 0; round < 20000; ++round) {
    Bytes damaged = request;
    for (auto changes = random() % 3 + 1; changes > 0; --changes) {
      damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
    }
    if (random() % 4 == 0) damaged.resize(random() % damaged.size());
    agent.agent.Answer(damaged);
  }
}

TEST(SnmpAgent, IgnoresWhatIsNoRequest) {
  const std::string pdu = "A019020102020100020100300E300C" + kSysDescr + "0500";
  ASSERT_EQ("3026020100" + kOrchid + pdu, Request(kSysDescr));
  const std::pair<const char*, std::string> kCases[] = {
      {"version 2", "3026020101" + kOrchid + pdu},
      {"a SetRequest", "3026020100" + kOrchid + "A3" + pdu.substr(2)},
      {"another community", Request(kSysDescr, "04066F7263686965")},
      {"indefinite length", "3080020100" + kOrchid + pdu + "0000"},
      {"length of five octets", "30850000000026020100" + kOrchid + pdu},
      {"huge length", "3084FFFFFFFF020100" + kOrchid + pdu},
      {"integer of five octets", "302A02050000000000" + kOrchid + pdu},
      {"integer without octets", "30250200" + kOrchid + pdu},
      {"sub-identifier past 32 bits", Request("06062B9080808000")},
      {"sub-identifier with a leading 80", Request("06032B8001")},
      {"sub-identifier without its end", Request("06022B81")},
      {"empty identifier", Request("0600")},
      {"no value", Message("A0", Element("30", kSysDescr))},
      {"two values", Message("A0", Element("30", kSysDescr + "05000500"))},
      {"high tag number", "3F26020100" + kOrchid + pdu},
  };
  TestAgent agent;
  for (const auto& [what, datagram] : kCases) EXPECT_EQ(agent.Get(datagram), "") << what;
  // Longer forms of lengths are allowed.
  EXPECT_EQ(agent.Get("308400000026020100" + kOrchid + pdu), agent.Get(Request(kSysDescr)));
}

TEST(SnmpAgent, KnowsItsObjects) {
  const std::string id = "MFG:ZARMO;MDL:QM-R410 Series;SN:VP00000001;CMD:REMOTE1;CLS:PRINTER;";
  const std::string long_command = CommandObject(MakeCommand("XX", Repeat("80", 500)));
  const struct {
    std::string community;
    std::string identifier;
    std::string value;  // encoded; none if there is no such name
  } kCases[] = {
      {kOrchid, kSysDescr, kModel},
      {kPublic, "060B2B06010201190302010201", "06092B0601020119030105"},
      {kPublic, "060B2B06010201190302010301", kModel},
      {kPublic, "060F2B06010401950B0102010201010301", Element("04", ToHex(ToBytes(id)))},
      {kPublic, kStatus, ""},
      {kPublic, "06082B06010201010200", ""},
      {kOrchid, long_command, "040658583A4E413B"},
      {kOrchid, CommandObject("03080000"), "04034E413B"},
      {kOrchid, CommandObject("0708000453560000"), "040653563A4F4B3B"},
      {kPublic, CommandObject("0708000453560000"), ""},
      {kOrchid, CommandObject(""), ""},
      {kOrchid, CommandObject("070800"), ""},
      {kOrchid, CommandObject("0808000453560000"), ""},    // wrong check
      {kOrchid, CommandObject("0709000453560000"), ""},    // wrong mark
      {kOrchid, CommandObject("0708000353560000"), ""},    // wrong size
      {kOrchid, CommandObject("0708040053560000"), ""},    // size in the high byte
      {kOrchid, CommandObject("070800045356008200"), ""},  // sub-identifier of 256
  };
  TestAgent agent;
  for (const auto& [community, identifier, value] : kCases) {
    const std::string state = value.empty() ? "020102020101" : kNoError;
    const std::string binding = Element("30", identifier + (value.empty() ? "0500" : value));
    EXPECT_EQ(agent.Get(Request(identifier, community)), Message("A2", binding, state, community))
        << identifier;
  }
}

TEST(SnmpAgent, AnswersAllObjectsOrNone) {
  const std::string write =
      Element("30", CommandObject(Write("370300" + Repeat("11", 16))) + "0500");
  const std::string none = Element("30", CommandObject("00") + "0500");
  TestAgent agent({"oversize"});
  EXPECT_EQ(agent.Get(Message("A0", write + none)), Message("A2", write + none, "020102020102"));
  EXPECT_EQ(agent.Ask(Read("370300")), TestPrinter({"oversize"}).Ask(Read("370300")));
  const std::string many = Repeat(Element("30", kStatus + "0500"), 40);
  EXPECT_EQ(agent.Get(Message("A0", many)), Message("A2", many, "020101020100")) << "too big";
}

TEST(SnmpAgent, EchoesTheRequestId) {
  TestAgent agent;
  const std::string asked = Element("30", kSysDescr + "0500");
  const std::string answered = Element("30", kSysDescr + kModel);
  for (const char* id : {"02017F", "02020080", "0201FF", "0202FF7F", "020480000000"}) {
    EXPECT_EQ(agent.Get(Message("A0", asked, kNoError, kPublic, id)),
              Message("A2", answered, kNoError, kPublic, id));
  }
}

}  // namespace
}  // namespace VirtualPrinter

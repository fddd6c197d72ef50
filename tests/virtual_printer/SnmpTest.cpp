// The SNMP agent: messages taken apart and put together, objects and faults.
#include <gtest/gtest.h>

#include <random>

#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/SnmpAgent.h"

namespace VirtualPrinter {
namespace {

// Version 1, community "orchid", GetRequest 2 for the read of slot 3 in layout 0.
const std::string kRequest =
    "303C0201000406"
    "6F7263686964"
    "A02F020102020100020100"
    "30243022"
    "061E2B06010401951E010202280101020F08000C45580800010000001B370300"
    "0500";
const std::string kIdentifier = kRequest.substr(56, 64);

struct TestAgent : TestPrinter {
  explicit TestAgent(const std::vector<std::string>& fault_texts = {})
      : TestPrinter("QM-R410 Series", fault_texts) {}
  /// The answer in hexadecimal digits, "" for none.
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

/// A GetRequest for identifiers that are encoded already.
std::string Request(const std::vector<std::string>& identifiers,
                    const std::string& community = "6F7263686964") {
  std::string bindings;
  for (const auto& identifier : identifiers) bindings += Element("30", identifier + "0500");
  const std::string pdu = "020102020100020100" + Element("30", bindings);
  return Element("30", "020100" + Element("04", community) + Element("A0", pdu));
}

std::string CommandObject(const std::string& payload) {
  return Element("06", "2B06010401951E01020228010102" + payload);
}

/// The identifier that carries `command`.
std::string CommandObject(const Bytes& command) {
  const std::size_t size = command.size();
  std::string payload;
  const auto add = [&payload](std::size_t byte) {
    payload += (byte < 0x80 ? "" : "81") + ToHex(static_cast<std::uint8_t>(byte & 0x7F));
  };
  for (const std::size_t byte : {(size + 3) % 256, std::size_t{8}, size / 256, size % 256}) {
    add(byte);
  }
  for (const auto byte : command) add(byte);
  return CommandObject(payload);
}

const std::string kSysDescr = "06082B06010201010100";
const std::string kPublic = "7075626C6963";

TEST(SnmpAgent, AnswersACommand) {
  ASSERT_EQ(Request({kIdentifier}), kRequest);
  TestAgent agent;
  const std::string reply = ToHex(ToBytes(agent.Ex(kRead + "370300")));
  EXPECT_EQ(agent.Get(kRequest),
            "3081B10201000406"
            "6F7263686964"
            "A281A3020102020100020100"
            "308197308194" +
                kIdentifier + "0472" + reply);
}

TEST(SnmpAgent, IgnoresEveryPartAndEveryExtension) {
  TestAgent agent;
  for (std::size_t size = 0; size < kRequest.size(); size += 2) {
    EXPECT_EQ(agent.Get(kRequest.substr(0, size)), "") << size;
  }
  EXPECT_EQ(agent.Get(kRequest + "00"), "");
}

// The bytes of the request are changed at random. An answer is fine, a bad access is not.
TEST(SnmpAgent, SurvivesDamagedRequests) {
  TestAgent agent;
  std::mt19937 random(1);
  const Bytes request = Hex(kRequest);
  int ignored = 0;
  for (int round = 0; round < 20000; ++round) {
    Bytes damaged = request;
    for (auto changes = random() % 3 + 1; changes > 0; --changes) {
      damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
    }
    if (random() % 4 == 0) damaged.resize(random() % damaged.size());
    ignored += agent.agent.Answer(damaged) ? 0 : 1;
  }
  EXPECT_GT(ignored, 5000);
}

TEST(SnmpAgent, IgnoresWhatIsNoRequest) {
  struct IgnoredCase {
    const char* what;
    std::string datagram;
  };
  const std::string community = "04066F7263686964";
  const std::string pdu = "A019020102020100020100300E300C" + kSysDescr + "0500";
  ASSERT_EQ("3026020100" + community + pdu, Request({kSysDescr}));
  const auto identified = [](const std::string& identifier) { return Request({identifier}); };
  const IgnoredCase cases[] = {
      {"version 2", "3026020101" + community + pdu},
      {"a SetRequest", "3026020100" + community + "A3" + pdu.substr(2)},
      {"another community", Request({kSysDescr}, "6F7263686965")},
      {"indefinite length", "3080020100" + community + pdu + "0000"},
      {"length of five octets", "30850000000026020100" + community + pdu},
      {"huge length", "3084FFFFFFFF020100" + community + pdu},
      {"integer of five octets", "302A02050000000000" + community + pdu},
      {"integer without octets", "30250200" + community + pdu},
      {"sub-identifier past 32 bits", identified("06062B9080808000")},
      {"sub-identifier with a leading 80", identified("06032B8001")},
      {"sub-identifier without its end", identified("06022B81")},
      {"empty identifier", identified("0600")},
      {"no value", Element("30", "020100" + community +
                                     Element("A0", "020102020100020100" +
                                                       Element("30", Element("30", kSysDescr))))},
      {"high tag number", "3F26020100" + community + pdu},
  };
  TestAgent agent;
  for (const auto& row : cases) EXPECT_EQ(agent.Get(row.datagram), "") << row.what;
  // Longer forms of lengths are allowed.
  EXPECT_EQ(agent.Get("308400000026020100" + community + pdu), agent.Get(Request({kSysDescr})));
}

/// A GetResponse; `state` is error-status and error-index.
std::string Response(const std::string& community, const std::string& state,
                     const std::string& bindings) {
  const std::string pdu = "020102" + state + Element("30", bindings);
  return Element("30", "020100" + Element("04", community) + Element("A2", pdu));
}

struct ObjectCase {
  const char* what;
  std::string identifier;
  std::string community;
  std::string value;  // encoded
};
constexpr char kNoSuchName[] = "no such name";

std::string ExpectedAnswer(const ObjectCase& row) {
  if (row.value == kNoSuchName) {
    return Response(row.community, "020102020101", Element("30", row.identifier + "0500"));
  }
  return Response(row.community, "020100020100", Element("30", row.identifier + row.value));
}

TEST(SnmpAgent, KnowsItsObjects) {
  TestAgent agent;
  const std::string orchid = "6F7263686964";
  const std::string status = "060E2B06010401951E0102021E010101";
  const std::string model = "040E" + ToHex(ToBytes("QM-R410 Series"));
  const std::string id = "MFG:ZARMO;MDL:QM-R410 Series;SN:VP00000001;CMD:REMOTE1;CLS:PRINTER;";
  const ObjectCase cases[] = {
      {"sysDescr", kSysDescr, orchid, model},
      {"sysDescr", kSysDescr, kPublic, model},
      {"hrDeviceType", "060B2B06010201190302010201", kPublic, "06092B0601020119030105"},
      {"hrDeviceDescr", "060B2B06010201190302010301", kPublic, model},
      {"device id", "060F2B06010401950B0102010201010301", kPublic,
       Element("04", ToHex(ToBytes(id)))},
      {"status", status, orchid, Element("04", ToHex(agent.printer.StatusText()))},
      {"status", status, kPublic, kNoSuchName},
      {"command", CommandObject("0708000453560000"), orchid, "040653563A4F4B3B"},
      {"command", CommandObject("0708000453560000"), kPublic, kNoSuchName},
      {"empty command", CommandObject("03080000"), orchid, "04034E413B"},
      {"without a payload", CommandObject(""), orchid, kNoSuchName},
      {"short payload", CommandObject("070800"), orchid, kNoSuchName},
      {"wrong check", CommandObject("0808000453560000"), orchid, kNoSuchName},
      {"wrong mark", CommandObject("0709000453560000"), orchid, kNoSuchName},
      {"wrong size", CommandObject("0708000353560000"), orchid, kNoSuchName},
      {"size in the high byte", CommandObject("0708040053560000"), orchid, kNoSuchName},
      {"sub-identifier of 256", CommandObject("070800045356008200"), orchid, kNoSuchName},
      {"another object", "06082B06010201010200", orchid, kNoSuchName},
      {"another object", "06082B06010201010200", kPublic, kNoSuchName},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(agent.Get(Request({row.identifier}, row.community)), ExpectedAnswer(row)) << row.what;
  }
}

// The command's length needs both bytes, its head's check wraps at 256.
TEST(SnmpAgent, TakesALongCommand) {
  TestAgent agent;
  const std::string block = Repeat("7F80FF00", 56);
  const std::string write = CommandObject(MakeCommand("EX", kWrite + "370580" + block));
  EXPECT_NE(agent.Get(Request({write})).find("040E" + ToHex(ToBytes("EX:0000001BOK;"))),
            std::string::npos);
  EXPECT_EQ(agent.Ex(kRead + "370580"), "EX:0000001B" + Text(Hex("370580" + block)) + ";");
  const std::string unknown = CommandObject(MakeCommand("XX", Repeat("58", 500)));
  EXPECT_NE(agent.Get(Request({unknown})).find("0406" + ToHex(ToBytes("XX:NA;"))),
            std::string::npos);
}

TEST(SnmpAgent, CarriesNothingOutIfOneObjectDoesNotExist) {
  TestAgent agent;
  const std::string write =
      CommandObject(MakeCommand("EX", kWrite + "370300" + Repeat("11", 16) + "41"));
  const std::string read = CommandObject(MakeCommand("EX", kRead + "370300"));
  const std::string before = agent.Ex(kRead + "370300");
  EXPECT_EQ(agent.Get(Request({write, CommandObject("00")})),
            Response("6F7263686964", "020102020102",
                     Element("30", write + "0500") + Element("30", CommandObject("00") + "0500")));
  EXPECT_EQ(agent.Ex(kRead + "370300"), before);
  const std::string both = agent.Get(Request({write, read}));
  const std::string after = agent.Ex(kRead + "370300");
  EXPECT_NE(after, before);
  EXPECT_NE(both.find(ToHex(ToBytes(after))), std::string::npos) << "in the order of the objects";
}

TEST(SnmpAgent, TellsWhenTheAnswerIsTooBig) {
  TestAgent agent({"oversize"});
  const std::vector<std::string> objects(40, "060E2B06010401951E0102021E010101");
  const std::string answer = agent.Get(Request(objects));
  EXPECT_EQ(answer, Response("6F7263686964", "020101020100",
                             Repeat(Element("30", objects[0] + "0500"), objects.size())));
}

TEST(SnmpAgent, EchoesTheRequestId) {
  struct IdCase {
    const char* asked;
    const char* answered;
    const char* next;  // by the fault
  };
  const IdCase cases[] = {
      {"020100", "020100", "020101"},
      {"02017F", "02017F", "02020080"},
      {"02020080", "02020080", "02020081"},
      {"02020002", "020102", "020103"},  // not in its shortest form
      {"0201FF", "0201FF", "020100"},
      {"020180", "020180", "020181"},
      {"0202FF7F", "0202FF7F", "020180"},
      {"02047FFFFFFF", "02047FFFFFFF", "020480000000"},
      {"020480000000", "020480000000", "020480000001"},
  };
  const std::string binding = Element("30", kSysDescr + "040E" + ToHex(ToBytes("QM-R410 Series")));
  for (const auto& row : cases) {
    const std::string pdu =
        std::string(row.asked) + "020100020100" + Element("30", Element("30", kSysDescr + "0500"));
    const std::string head = "020100" + Element("04", kPublic);
    TestAgent agent({"wrong-id=1"});
    for (const auto* id : {row.next, row.answered}) {
      const std::string answer = id + std::string("020100020100") + Element("30", binding);
      EXPECT_EQ(agent.Get(Element("30", head + Element("A0", pdu))),
                Element("30", head + Element("A2", answer)))
          << row.asked;
    }
  }
}

TEST(SnmpAgent, PlaysFaults) {
  struct FaultCase {
    std::vector<std::string> faults;
    std::vector<std::string> answers;  // to the same request again and again
  };
  const std::string request = Request({kSysDescr});
  const std::string good = TestAgent().Get(request);
  const std::string wrong_id = std::string(good).replace(good.find("020102"), 6, "020103");
  const std::string wrong_oid =
      std::string(good).replace(good.find(kSysDescr), 20, "06082B06010201010101");
  const FaultCase cases[] = {
      {{"drop=2"}, {"", "", good, good}},
      {{"loss=0"}, {good, good}},
      {{"loss=100"}, {"", ""}},
      {{"truncate=7"}, {good.substr(0, 14), good.substr(0, 14)}},
      {{"truncate=700"}, {good}},
      {{"wrong-id=1"}, {wrong_id, good}},
      {{"wrong-id"}, {wrong_id, wrong_id}},
      {{"wrong-oid=2"}, {wrong_oid, wrong_oid, good}},
      {{"drop=1", "wrong-id=1", "truncate=4"}, {"", wrong_id.substr(0, 8), good.substr(0, 8)}},
  };
  for (const auto& row : cases) {
    TestAgent agent(row.faults);
    for (const auto& answer : row.answers) EXPECT_EQ(agent.Get(request), answer) << row.faults[0];
  }
  TestAgent garbage({"garbage=1"});
  const std::string answer = garbage.Get(request);
  EXPECT_EQ(answer.size(), good.size());
  EXPECT_NE(answer, good);
  EXPECT_EQ(garbage.Get(request), good);
}

TEST(SnmpAgent, PlaysFaultsOfCommands) {
  TestAgent oversize({"oversize=1"});
  const std::string answer = oversize.Get(kRequest);
  EXPECT_NE(answer.find("04820258" + ToHex(ToBytes("EX:0000001B"))), std::string::npos);
  EXPECT_GT(answer.size(), 2 * 600U);
  EXPECT_LT(oversize.Get(kRequest).size(), 2 * 512U);

  TestAgent refusing({"na=1"});
  EXPECT_EQ(refusing.Ex(kWrite + "370300" + Repeat("11", 16)), "EX:0000001BNA;");
  EXPECT_EQ(refusing.Ex(kRead + "370300"), TestAgent().Ex(kRead + "370300"));

  TestAgent forgetful({"forget"});
  EXPECT_EQ(forgetful.Ex(kWrite + "370300" + Repeat("11", 16)), "EX:0000001BOK;");
  EXPECT_EQ(forgetful.Ex(kRead + "370300"), TestAgent().Ex(kRead + "370300"));

  TestAgent status({"status-text=0D0A00FF"});
  EXPECT_NE(status.Get(Request({"060E2B06010401951E0102021E010101"})).find("04040D0A00FF"),
            std::string::npos);
}

TEST(Faults, LosesTheShareThatWasAskedFor) {
  Faults faults = MakeFaults({"loss=30"});
  int lost = 0;
  for (int i = 0; i < 1000; ++i) lost += faults.LosesRequest() ? 1 : 0;
  EXPECT_GT(lost, 250);
  EXPECT_LT(lost, 350);
}

}  // namespace
}  // namespace VirtualPrinter

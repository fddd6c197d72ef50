// The SNMP agent: messages taken apart and put together, objects and faults.
#include <gtest/gtest.h>

#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/Ber.h"
#include "virtual_printer/SnmpAgent.h"

namespace VirtualPrinter {
namespace {

struct TestAgent : TestPrinter {
  // The answer in hexadecimal digits, "" for none.
  std::string Get(const std::string& request) {
    const auto answer = SnmpAgent(printer, faults, trace).Answer(Hex(request));
    return answer ? ToHex(*answer) : "";
  }
};

std::string Element(std::uint8_t tag, const std::string& contents) {
  return ToHex(BerElement(tag, Hex(contents)));
}

const std::string kOrchid = "04066F7263686964";
const std::string kPublic = "04067075626C6963";
const std::string kNoError = "020100020100";  // error-status and error-index
const std::string kSysDescr = "06082B06010201010100";
const std::string kStatus = "060E2B06010401951E0102021E010101";

// A GetRequest (tag A0) or GetResponse (A2).
std::string Message(std::uint8_t tag, const std::string& bindings,
                    const std::string& state = kNoError, const std::string& community = kOrchid,
                    const std::string& request_id = "020102") {
  const std::string pdu = request_id + state + Element(0x30, bindings);
  return Element(0x30, "020100" + community + Element(tag, pdu));
}

std::string Request(const std::string& identifier) {
  return Message(0xA0, Element(0x30, identifier + "0500"));
}

std::string CommandObject(const std::string& payload) {
  return Element(0x06, "2B06010401951E01020228010102" + payload);
}

TEST(SnmpAgent, IgnoresWhatIsNoRequest) {
  const std::string pdu = "A019020102020100020100300E300C" + kSysDescr + "0500";
  const std::string request = "3026020100" + kOrchid + pdu;
  const std::pair<const char*, std::string> kCases[] = {
      {"version 2", "3026020101" + kOrchid + pdu},
      {"a SetRequest", "3026020100" + kOrchid + "A3" + pdu.substr(2)},
      {"another community", "302602010004066F7263686965" + pdu},
      {"indefinite length", "3080020100" + kOrchid + pdu + "0000"},
      {"length of five octets", "30850000000026020100" + kOrchid + pdu},
      {"huge length", "3084FFFFFFFF020100" + kOrchid + pdu},
      {"length of 2 GiB", "308480000000020100" + kOrchid + pdu},
      {"integer past the end", "302902847FFFFFFF00" + kOrchid + pdu},
      {"integer of five octets", "302A02050000000000" + kOrchid + pdu},
      {"integer without octets", "30250200" + kOrchid + pdu},
      {"sub-identifier past 32 bits", Request("06062B9080808000")},
      {"sub-identifier with a leading 80", Request("06032B8001")},
      {"sub-identifier without its end", Request("06022B81")},
      {"empty identifier", Request("0600")},
      {"no value", Message(0xA0, Element(0x30, kSysDescr))},
      {"a second binding cut off",
       Message(0xA0, Element(0x30, kSysDescr + "0500") + "300C06082B06")},
      {"two values", Message(0xA0, Element(0x30, kSysDescr + "05000500"))},
      {"high tag number", "3F26020100" + kOrchid + pdu},
      {"a byte more", request + "00"},
  };
  TestAgent agent;
  for (const auto& [what, datagram] : kCases) EXPECT_EQ(agent.Get(datagram), "") << what;
  for (std::size_t size = 0; size < request.size(); size += 2) {
    EXPECT_EQ(agent.Get(request.substr(0, size)), "") << size;
  }
  // Longer forms of lengths are allowed.
  EXPECT_EQ(agent.Get("308400000026020100" + kOrchid + pdu), agent.Get(request));
}

TEST(SnmpAgent, KnowsItsObjects) {
  const std::string model = "040E514D2D5234313020536572696573";
  const std::string id = "MFG:ZARMO;MDL:QM-R410 Series;SN:VP00000001;CMD:REMOTE1;CLS:PRINTER;";
  const struct {
    std::string community;
    std::string identifier;
    std::string value;  // encoded; none if there is no such name
    const char* request_id = "02017F";
  } kCases[] = {
      {kOrchid, kSysDescr, model},
      {kPublic, "060B2B06010201190302010201", "06092B0601020119030105", "02020080"},
      {kPublic, "060B2B06010201190302010301", model, "0201FF"},
      {kPublic, "060F2B06010401950B0102010201010301", Element(0x04, ToHex(ToBytes(id)))},
      {kPublic, "060B2B060102012B0501011101", "040A56503030303030303031"},
      {kPublic, kStatus, "", "0202FF7F"},
      {kPublic, "06082B06010201010200", "", "020480000000"},
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
      // A check and a size of two bytes, and bytes of two octets.
      {kOrchid, CommandObject("0708020458580002" + Repeat("8100", 512)), "040658583A4E413B"},
  };
  TestAgent agent;
  for (const auto& [community, identifier, value, request_id] : kCases) {
    const std::string asked = Element(0x30, identifier + "0500");
    const std::string state = value.empty() ? "020102020101" : kNoError;
    const std::string answered = value.empty() ? asked : Element(0x30, identifier + value);
    EXPECT_EQ(agent.Get(Message(0xA0, asked, kNoError, community, request_id)),
              Message(0xA2, answered, state, community, request_id))
        << identifier;
  }
}

TEST(SnmpAgent, LacksWhatItIsToldTo) {
  TestAgent agent;
  EXPECT_EQ(agent.faults.Add("lack=sysDescr"), "");
  const std::string asked = Element(0x30, kSysDescr + "0500");
  EXPECT_EQ(agent.Get(Message(0xA0, asked)), Message(0xA2, asked, "020102020101"));
  EXPECT_EQ(agent.Get(Request(kStatus)).find("020102020101"), std::string::npos);
}

TEST(SnmpAgent, AnswersAllObjectsOrNone) {
  const std::string command = ToHex(Write("370300" + Repeat("11", 16)));
  const std::string write = Element(0x30, CommandObject("1F08001C" + command) + "0500");
  const std::string none = Element(0x30, CommandObject("00") + "0500");
  TestAgent agent;
  EXPECT_EQ(agent.Get(Message(0xA0, write + none)), Message(0xA2, write + none, "020102020102"));
  EXPECT_EQ(agent.Ask(Read("370300")), TestPrinter().Ask(Read("370300")));
  const std::string many = Repeat(Element(0x30, kStatus + "0500"), 400);
  EXPECT_EQ(agent.Get(Message(0xA0, many)), Message(0xA2, many, "020101020100")) << "too big";
}

}  // namespace
}  // namespace VirtualPrinter

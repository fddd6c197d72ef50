// What a host is told when the printer or the network misbehaves: the code of the failure or the
// right value, and never anything else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"
#include "tests/port_driver/Peer.h"

namespace {

// The answer, without the command's name, of a worker whose printer has the fault, if it is one.
std::string Ask(const std::string& fault, const std::string& uriOptions, const std::string& command,
                const std::string& parameter, Link link = Link::kNetwork) {
  std::vector<std::string> options{"--serial", "SN00000042"};
  if (!fault.empty()) options.insert(options.end(), {"--fault", fault});
  const std::string answer =
      Studio("QM-R310 Series", options, uriOptions, link).Ask(command, parameter);
  const std::string head = "{\"" + command + "\":";
  EXPECT_EQ(answer.substr(0, head.size()), head);
  return answer.substr(head.size());
}

TEST(Fault, StatusGivesTheRightValueOrTheCode) {
  const std::string right = R"(0,"Reply":{"SerialNumber":"SN00000042"}})";
  const struct {
    const char* fault;
    const char* uriOptions;
    std::string answer;
  } kCases[] = {
      {"", "timeout=1000", right},
      {"drop=2", "timeout=100&retries=3", right},
      {"drop=2", "timeout=100&retries=1", "-6}"},
      {"loss=20", "timeout=50&retries=20", right},
      {"loss=100", "timeout=50&retries=2", "-6}"},
      // The answer to the first try comes while the third is waited for, and counts.
      {"delay=250", "timeout=100&retries=10", right},
      {"delay=60000", "timeout=100&retries=1", "-6}"},
      {"duplicate", "timeout=1000", right},
      {"garbage", "timeout=100&retries=1", "-6}"},
      {"truncate=30", "timeout=100&retries=1", "-6}"},
      {"wrong-id", "timeout=100&retries=1", "-6}"},
      {"wrong-oid", "timeout=100&retries=1", "-6}"},
      {"wrong-oid", "timeout=1000&match=id", right},
      // Status texts: no line end; nothing behind it; lengths beyond what is there; the whole.
      {"status-text=", "", "-6}"},
      {"status-text=41000D0A0300010104", "", "-6}"},
      {"status-text=0D0A", "", "0}"},
      {"status-text=0D0A010001", "", "0}"},
      {"status-text=0D0AFFFF010104", "", R"(0,"Reply":{"StatusCode":4}})"},
      {"status-text=0D0AFFFF02FF01", "", R"(0,"Reply":{"ErrorCode":1}})"},
      {"status-text=410D0A0A00020155010104040200FF", "",
       R"(0,"Reply":{"ErrorCode":85,"StatusCode":4,"WarningCode":[0,255]}})"},
  };
  for (const auto& c : kCases) {
    const bool isText = std::string(c.fault).rfind("status-text", 0) == 0;
    EXPECT_EQ(Ask(c.fault, c.uriOptions, "GetStatusReply",
                  isText ? R"(["StatusCode","ErrorCode","WarningCode","SerialNumber"])"
                         : R"(["SerialNumber"])"),
              c.answer)
        << c.fault << ' ' << c.uriOptions;
  }
}

TEST(Fault, RecordsAreNeverTakenForReadOrWrittenWhenTheyAreNot) {
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":9})";
  const std::string text = R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":"9"})";
  const std::string slot = R"({"InitializeCustomMedia":1})";
  const std::string block =
      R"({"CustomMediaNo":1,"CommandVersion":128,"SettingAll":")" + std::string(448, '7') + "\"}";
  // The reply is followed by zeros, so a refusal is not at its end, and its letters are the values.
  const std::string refusal =
      R"(0,"Reply":{"AdditionalDryer":0,"AfterHeater":0,"AfterHeaterFeed":0,"CommandVersion":0,)"
      R"("CustomMediaName":")" +
      std::string(32, '\0') +
      R"(","CustomMediaNo":0,"DeviceID":0,"DryingTimePerPass":0,"FeedSpeed":0,"HeadMovement":0,)"
      R"("MediaSuction":0,"MediaTension":-128,"MultiStrikePrinting":"Off","PlatenGap":0,)"
      R"("PlatenHeater":0,"PreHeater":0,"RegistrationFlag":0,"RollType":"PrintableSideOut",)"
      R"("TensionMeasure":0}})";
  const struct {
    const char* fault;
    const char* command;
    const std::string& parameter;
    std::vector<std::string> answers;  // any of them
  } kCases[] = {
      {"oversize", "GetCustomMediaInfo", record, {"-6}"}},
      {"na", "GetCustomMediaInfo", record, {refusal}},
      {"loss=20", "SetCustomMediaInfo", record, {"0}"}},
      {"loss=100", "SetCustomMediaInfo", record, {"-1}"}},
      {"loss=100", "SetMediaInitialize", slot, {"-1}"}},
      {"", "SetCustomMediaInfo", text, {"-6}"}},
      {"duplicate", "SetCustomMediaInfo", record, {"0}"}},
      {"duplicate", "SetCustomMediaInfo", block, {"0}"}},
      {"forget", "SetCustomMediaInfo", record, {"-6}"}},
      {"forget", "SetCustomMediaInfo", block, {"-6}"}},
      {"reset", "SetCustomMediaInfo", block, {"-1}", "-6}"}},
  };
  for (const auto& c : kCases) {
    EXPECT_THAT(c.answers,
                testing::Contains(Ask(c.fault, "timeout=100&retries=20", c.command, c.parameter)))
        << c.fault;
  }
}

// Over a local port, where a reply may stay for the next who asks, each answers its own command
// alone.
TEST(Fault, LateAndSpoiltRepliesOfALocalPort) {
  const std::string right = R"(0,"Reply":{"SerialNumber":"SN00000042"}})";
  const struct {
    const char* fault;
    const char* uriOptions;
    bool recovers;  // after the first record, which may be lost
    std::string status;
  } kCases[] = {
      {"duplicate", "timeout=400", true, right},
      {"oversize", "timeout=400", true, right},
      {"drop=1", "timeout=400", true, right},
      {"garbage=1", "timeout=400", true, right},
      // Later than the worker waits for it; then later than the driver waits to drop it.
      {"delay=600", "timeout=400", false, "-6}"},
      {"delay=1500", "timeout=400", false, "-6}"},
      {"truncate=10", "timeout=400", false, "0}"},
  };
  for (const auto& c : kCases) {
    const Studio studio("QM-T44 Series", {"--serial", "SN00000042", "--fault", c.fault},
                        c.uriOptions, Link::kLocal);
    for (int slot = 1; slot <= 2; ++slot) {
      SCOPED_TRACE(c.fault + std::string(" slot ") + std::to_string(slot));
      const std::string number = R"("CustomMediaNo":)" + std::to_string(slot);
      const std::string record =
          studio.Ask("GetCustomMediaInfo", '{' + number + R"(,"CommandVersion":0})");
      const bool isRight = record.rfind(R"({"GetCustomMediaInfo":0,)", 0) == 0;
      EXPECT_TRUE(!isRight || record.find(number + ',') != std::string::npos) << record;
      EXPECT_TRUE(isRight == c.recovers || slot == 1) << record;
      EXPECT_EQ(studio.Ask("GetStatusReply", R"(["SerialNumber"])"),
                R"({"GetStatusReply":)" + c.status);
    }
  }
}

TEST(Fault, WritesOverALocalPortAreConfirmedOrFail) {
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":9})";
  const std::string slot = R"({"InitializeCustomMedia":1})";
  const struct {
    const char* fault;
    const char* command;
    const std::string& parameter;
    const char* answer;
  } kCases[] = {
      {"", "SetCustomMediaInfo", record, "0}"},
      {"duplicate", "SetCustomMediaInfo", record, "0}"},
      {"drop=1", "SetCustomMediaInfo", record, "-6}"},
      {"forget", "SetCustomMediaInfo", record, "-6}"},
      {"loss=100", "SetMediaInitialize", slot, "-6}"},
      {"na=1", "SetCustomMediaInfo", record, "-6}"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Ask(c.fault, "timeout=400", c.command, c.parameter, Link::kLocal), c.answer)
        << c.fault;
  }
}

// The bounds of docs/protocol.md, for an own time of 100 ms.
TEST(Fault, NoRequestTakesLongerThanItsBound) {
  using std::chrono::milliseconds;
  const ZIOP::Peer agent(SOCK_DGRAM), data(SOCK_STREAM);  // take everything and answer nothing
  const int agentPort = agent.port(), dataPort = data.port();
  const int nobody = ZIOP::Peer(SOCK_STREAM).port();
  const auto uri = [](const std::string& host, int raw, int snmp) {
    return "socket://" + host + ":" + std::to_string(raw) +
           "?timeout=50&retries=1&snmp=" + std::to_string(snmp);
  };
  const char* device = "QM-V5 Series";
  const char* withBlocks = "QM-R310 Series";
  const WorkerFolder folder({{"silent", device, uri("localhost", dataPort, agentPort)},
                             {"off", device, uri("127.0.0.1", nobody, nobody)},
                             {"dataOnly", device, uri("127.0.0.1", dataPort, nobody)},
                             {"unknown", device, uri(std::string(64, 'n'), 1, 1)}});
  const Process worker = folder.Start();
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0})";
  const std::string block =
      R"({"CommandVersion":128,"SettingAll":")" + std::string(448, '7') + "\"}";
  const std::string slot = R"({"InitializeCustomMedia":1})";
  const struct {
    const char *printer, *device, *command;
    std::string parameter;
    int code, least;  // milliseconds
  } kCases[] = {
      {"silent", device, "GetStatusReply", "[]", -6, 100},
      {"silent", device, "GetCustomMediaName", R"({"CustomMediaNo":1})", -6, 100},
      {"silent", device, "GetCustomMediaInfo", record, -6, 100},
      {"silent", device, "GetFWVersion", "", -6, 100},
      {"silent", device, "SetCustomMediaInfo", record, -1, 100},
      {"silent", device, "SetMediaInitialize", slot, -1, 100},
      // Closing waits for the printer to close its side, and the first reading fails.
      {"silent", withBlocks, "SetCustomMediaInfo", block, -6, 100 + 30 + 100},
      {"dataOnly", withBlocks, "SetCustomMediaInfo", block, -6, 100 + 30 + 100},
      // Off, or just starting: SNMP requests are sent again, data is not.
      {"off", device, "GetStatusReply", "[]", -6, 100},
      {"off", device, "GetCustomMediaInfo", record, -6, 100},
      {"off", device, "SetCustomMediaInfo", record, -1, 100},
      {"off", withBlocks, "SetCustomMediaInfo", block, -1, 0},
      {"unknown", device, "GetStatusReply", "[]", -4, 0},
      {"unknown", device, "SetMediaInitialize", slot, -4, 0},
  };
  EXPECT_THAT(Ask(worker, kList), testing::StartsWith(R"({"GetPrinterList":0,)"));
  for (const auto& c : kCases) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Ask(worker, Request(c.command, c.printer, c.device, c.parameter)),
              "{\"" + std::string(c.command) + "\":" + std::to_string(c.code) + "}");
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_TRUE(time >= milliseconds(c.least) && time < milliseconds(4000))
        << c.printer << ' ' << c.command << ' ' << time.count() / 1000000 << " ms";
  }
}

}  // namespace

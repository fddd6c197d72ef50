// What a host is told when the printer or the network misbehaves: the prescribed code or the right
// value, and never anything else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

constexpr char kDevice[] = "QM-R310 Series";
constexpr char kList[] = R"({"Command":"GetPrinterList"})";

// A worker with one printer that misbehaves.
class Faulty {
 public:
  Faulty(const std::vector<std::string>& options, const std::string& uriOptions)
      : printer_(kDevice, options),
        folder_({{"p", kDevice, printer_.Uri(uriOptions)}}),
        worker_(folder_) {
    worker_.Ask(kList);
  }

  std::string Ask(const std::string& command, const std::string& parameter) {
    return worker_.Ask(Request(command, "p", kDevice, parameter));
  }

 private:
  VirtualPrinter printer_;
  WorkerFolder folder_;
  KeptWorker worker_;
};

std::vector<std::string> Options(const std::vector<std::string>& faults) {
  std::vector<std::string> options{"--serial", "SN00000042"};
  for (const std::string& fault : faults) options.insert(options.end(), {"--fault", fault});
  return options;
}

TEST(Fault, ReadsGiveTheRightValueOrTheCode) {
  const std::string right = R"({"GetStatusReply":0,"Reply":{"SerialNumber":"SN00000042"}})";
  const std::string failed = R"({"GetStatusReply":-6})";
  const struct {
    std::vector<std::string> faults;
    const char* uriOptions;
    const std::string& answer;
  } kCases[] = {
      {{}, "timeout=1000", right},
      {{"drop=2"}, "timeout=100&retries=3", right},
      {{"drop=2"}, "timeout=100&retries=1", failed},
      {{"loss=20"}, "timeout=50&retries=20", right},
      {{"loss=100"}, "timeout=50&retries=2", failed},
      // The answer to the first try comes while the third is waited for, and counts.
      {{"delay=250"}, "timeout=100&retries=10", right},
      {{"delay=60000"}, "timeout=100&retries=1", failed},
      {{"duplicate"}, "timeout=1000", right},
      {{"garbage"}, "timeout=100&retries=1", failed},
      {{"truncate=30"}, "timeout=100&retries=1", failed},
      {{"wrong-id"}, "timeout=100&retries=1", failed},
      {{"wrong-oid"}, "timeout=100&retries=1", failed},
      {{"wrong-oid"}, "timeout=1000&match=id", right},
  };
  for (const auto& c : kCases) {
    Faulty faulty(Options(c.faults), c.uriOptions);
    EXPECT_EQ(faulty.Ask("GetStatusReply", R"(["SerialNumber"])"), c.answer)
        << testing::PrintToString(c.faults) << ' ' << c.uriOptions;
  }
}

TEST(Fault, AnAnswerLargerThanTheWorkersBufferIsRefused) {
  Faulty faulty(Options({"oversize"}), "timeout=1000");
  EXPECT_EQ(faulty.Ask("GetCustomMediaInfo", R"({"CommandVersion":0})"),
            R"({"GetCustomMediaInfo":-6})");
}

// The reply is followed by zeros, so a refusal is not at its end, and its letters are the values.
TEST(Fault, ARefusedReadShowsTheRefusalsBytes) {
  Faulty faulty(Options({"na"}), "timeout=1000");
  EXPECT_EQ(faulty.Ask("GetCustomMediaInfo", R"({"CommandVersion":0})"),
            R"({"GetCustomMediaInfo":0,"Reply":{"AdditionalDryer":0,"AfterHeater":0,)"
            R"("AfterHeaterFeed":0,"CommandVersion":0,"CustomMediaName":")" +
                std::string(32, '\0') +
                R"(","CustomMediaNo":0,"DeviceID":0,"DryingTimePerPass":0,"FeedSpeed":0,)"
                R"("HeadMovement":0,"MediaSuction":0,"MediaTension":-128,)"
                R"("MultiStrikePrinting":"Off","PlatenGap":0,"PlatenHeater":0,"PreHeater":0,)"
                R"("RegistrationFlag":0,"RollType":"PrintableSideOut","TensionMeasure":0}})");
}

TEST(Fault, StatusTextsAreReadWithinTheirBounds) {
  const struct {
    const char* text;  // hexadecimal
    const char* answer;
  } kCases[] = {
      {"", R"({"GetStatusReply":-6})"},
      {"0D", R"({"GetStatusReply":-6})"},
      // The search for CR LF ends at a zero byte.
      {"41000D0A0300010104", R"({"GetStatusReply":-6})"},
      {"0D0A", R"({"GetStatusReply":0})"},
      {"0D0A0000", R"({"GetStatusReply":0})"},
      {"0D0A0300010104", R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})"},
      {"410D0A0600020155010104", R"({"GetStatusReply":0,"Reply":{"ErrorCode":85,"StatusCode":4}})"},
      // Lengths beyond what is there.
      {"0D0AFFFF010104", R"({"GetStatusReply":0,"Reply":{"StatusCode":4}})"},
      {"0D0AFFFF02FF01", R"({"GetStatusReply":0,"Reply":{"ErrorCode":1}})"},
      {"0D0A010001", R"({"GetStatusReply":0})"},
      {"0D0A02000100", R"({"GetStatusReply":0})"},
      {"0D0A0400040200FF", R"({"GetStatusReply":0,"Reply":{"WarningCode":[0,255]}})"},
  };
  for (const auto& c : kCases) {
    Faulty faulty(Options({std::string("status-text=") + c.text}), "timeout=1000");
    EXPECT_EQ(
        faulty.Ask("GetStatusReply", R"(["StatusCode","ErrorCode","WarningCode","SerialNumber"])"),
        c.answer)
        << c.text;
  }
}

TEST(Fault, WritesAreNeverTakenForDoneWhenTheyAreNot) {
  const std::string record = R"({"CustomMediaNo":1,"CommandVersion":0,"MediaSuction":9})";
  const std::string block =
      R"({"CustomMediaNo":1,"CommandVersion":128,"SettingAll":")" + std::string(448, '7') + "\"}";
  const struct {
    std::vector<std::string> faults;
    const std::string& parameter;
    std::vector<std::string> answers;  // any of them
  } kCases[] = {
      {{"loss=20"}, record, {R"({"SetCustomMediaInfo":0})"}},
      {{"duplicate"}, record, {R"({"SetCustomMediaInfo":0})"}},
      {{"duplicate"}, block, {R"({"SetCustomMediaInfo":0})"}},
      {{"forget"}, record, {R"({"SetCustomMediaInfo":-6})"}},
      {{"forget"}, block, {R"({"SetCustomMediaInfo":-6})"}},
      {{"reset"}, block, {R"({"SetCustomMediaInfo":-1})", R"({"SetCustomMediaInfo":-6})"}},
  };
  for (const auto& c : kCases) {
    Faulty faulty(Options(c.faults), "timeout=100&retries=20");
    EXPECT_THAT(c.answers, testing::Contains(faulty.Ask("SetCustomMediaInfo", c.parameter)))
        << testing::PrintToString(c.faults);
  }
}

}  // namespace

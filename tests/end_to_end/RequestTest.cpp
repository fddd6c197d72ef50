// Every command, family and record layout: from a host's request through the shipped worker and
// driver and real sockets to a virtual printer, and back.
#include <gtest/gtest.h>
#include <picojson.h>

#include <map>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

const std::string kPlain =
    R"("PlatenGap":"2.5","PreHeater":45,"PlatenHeater":"Off","AfterHeater":50,"RollType":)"
    R"("PrintableSideIn","DryingTimePerPass":10,"AfterHeaterFeed":"Mode1","AdditionalDryer":"On",)"
    R"("MediaSuction":4,"HeadMovement":"DataWidth","MultiStrikePrinting":3,)"
    R"("TensionMeasure":"EveryPage","RegistrationFlag":1,)";
const std::string kPlainFirst = kPlain + R"("MediaTension":-5,"FeedSpeed":"Auto")";
const std::string kPlainSecond = kPlain + R"("MediaTensionATC":-128,"FeedSpeedATC":"Lv1",)" +
                                 R"("MediaTensionMTC":120,"FeedSpeedMTC":"Lv2")";
const std::string kWithStabilisers =
    R"("PlatenGap":"1.5","PreHeater":"Off","PlatenHeater":40,"AfterHeater":"Off",)"
    R"("DryingTimePerPass":0,"PrintDryFeed":"On","AdditionalDryer":"Off","MediaSuction":9,)"
    R"("HeadMovement":"PrinterFullWidth","MultiStrikePrinting":"Off","FeedingTension":"Auto",)"
    R"("FeedSpeed":"Lv2","TensionMeasure":"Off","RollType":"PrintableSideOut",)"
    R"("TakeupTension":-1,"BlankAreaFeed":"Mode0","PreventSticking":"On","RegistrationFlag":1)";

const std::string kTypeD =
    R"("ReferenceMediaType":7,"PlatenGapD":"Narrow","PaperThickness":30,)"
    R"("PaperFeedAdjustmentValue":-3,"DryingTimePerPass":20,"MediaSuctionD":2,)"
    R"("MediaTensionD":"ExtraHigh","Removeskew":"Off","RegistrationFlag":1)";

const std::string kTypeI =
    R"("ReferenceMediaType":1,"PlatenGapI":4,"PaperThickness":200,)"
    R"("PaperFeedAdjustmentValue":101,"DryingTimePerPass":254,"MediaSuctionI":1,)"
    R"("RollBackTensionI":0,"Removeskew":"On","PaperFeedStabilizer":1,"FeedLateralAdjust":5,)"
    R"("UsePaperEjectRoller":1,"RollPaperMargin":3,"MarginPerPage":15,"RegistrationFlag":1)";

struct Family {
  std::vector<std::string> devices;
  int deviceId;
  std::map<int, std::string> layouts;    // members of the JSON object to write
  std::vector<std::string> notReadBack;  // what the printer's reply does not hold
  bool tellsFirmware;
};

std::vector<Family> Families() {
  std::string block;
  for (unsigned int i = 0; i < 448; ++i) block += "0123456789ABCDEF"[(i * 7 + i / 16) % 16];
  const std::string opaque = R"("SettingAll":")" + block + '"';
  return {
      {{"ZARMO QM-R410 Series Comm Driver", "QM-R410 Series", "ZARMO QM-R210 Series Comm Driver",
        "QM-R210 Series", "ZARMO QM-R310 Series Comm Driver", "QM-R310 Series"},
       0x37,
       {{0, kPlainFirst}, {1, kPlainSecond}, {128, opaque}},
       {},
       false},
      {{"ZARMO QM-T84 Series Comm Driver", "QM-T84 Series", "ZARMO QM-T64 Series Comm Driver",
        "QM-T64 Series"},
       0x37,
       {{0, kWithStabilisers}, {128, opaque}},
       {"PreHeater", "PlatenHeater"},
       false},
      {{"ZARMO QM-T44 Series Comm Driver", "QM-T44 Series"}, 0x38, {{0, kTypeD}}, {}, false},
      {{"ZARMO QM-V5 Series", "QM-V5 Series", "ZARMO QM-V7 Series", "QM-V7 Series",
        "ZARMO QM-V5PS Series", "ZARMO QM-V7PS Series"},
       0x46,
       {{0, kTypeI}},
       {},
       true},
  };
}

picojson::value Parsed(const std::string& json) {
  picojson::value parsed;
  EXPECT_EQ(picojson::parse(parsed, json), "") << json;
  return parsed;
}

void WriteAndReadBack(const Studio& studio, const Family& family, int layout) {
  const std::string address = R"("CustomMediaNo":3,"CommandVersion":)" + std::to_string(layout);
  const std::string name = layout == 128 ? "" : R"(,"CustomMediaName":"Matte \/ \"A\"")";
  const std::string written = '{' + address + ',' + family.layouts.at(layout) + name + '}';
  EXPECT_EQ(studio.Ask("SetCustomMediaInfo", written), R"({"SetCustomMediaInfo":0})") << written;

  picojson::object expected = Parsed(written).get<picojson::object>();
  for (const std::string& key : family.notReadBack) expected.erase(key);
  expected["DeviceID"] = picojson::value(static_cast<double>(family.deviceId));
  const picojson::value answer = Parsed(studio.Ask("GetCustomMediaInfo", '{' + address + '}'));
  EXPECT_EQ(answer.get("Reply").serialize(), picojson::value(expected).serialize());
}

void NamesAndInitialise(const Studio& studio) {
  EXPECT_EQ(studio.Ask("GetCustomMediaName", R"({"CustomMediaNo":2})"),
            R"({"GetCustomMediaName":0,"Reply":[)"
            R"({"CustomMediaName":"","CustomMediaNo":2,"RegistrationFlag":0},)"
            R"({"CustomMediaName":"Matte \/ \"A\"","CustomMediaNo":3,"RegistrationFlag":1},)"
            R"({"CustomMediaName":"","CustomMediaNo":4,"RegistrationFlag":0}]})");
  for (const char* records : {"3", "\"All\""}) {
    EXPECT_EQ(studio.Ask("SetMediaInitialize",
                         std::string(R"({"InitializeCustomMedia":)") + records + '}'),
              R"({"SetMediaInitialize":0})");
  }
  const picojson::value answer =
      Parsed(studio.Ask("GetCustomMediaInfo", R"({"CustomMediaNo":3,"CommandVersion":0})"));
  EXPECT_EQ(answer.get("Reply").get("RegistrationFlag").to_str(), "0");
  EXPECT_EQ(answer.get("Reply").get("CustomMediaName").to_str(), "");
}

void RunEveryCommand(const Family& family, const std::string& device, Link link) {
  SCOPED_TRACE(device);
  const Studio studio(device, {"--serial", "SN00012345", "--firmware", "2.31"}, "timeout=600",
                      link);
  EXPECT_EQ(studio.Ask("GetStatusReply", R"(["SerialNumber","StatusCode",1,"Unknown"])"),
            R"({"GetStatusReply":0,"Reply":{"SerialNumber":"SN00012345","StatusCode":4}})");
  for (const auto& [layout, settings] : family.layouts) WriteAndReadBack(studio, family, layout);
  NamesAndInitialise(studio);
  if (family.tellsFirmware) {
    EXPECT_EQ(studio.Ask("GetFWVersion", ""),
              R"({"GetFWVersion":0,"Reply":{"FirmwareVersion":"2.31"}})");
  }
}

TEST(Request, EveryCommandFamilyAndLayout) {
  std::size_t devices = 0;
  for (const Family& family : Families()) {
    for (const std::string& device : family.devices) {
      RunEveryCommand(family, device, Link::kNetwork);
      ++devices;
    }
  }
  EXPECT_EQ(devices, 18U);
}

TEST(Request, EveryCommandFamilyAndLayoutOverALocalPort) {
  for (const Family& family : Families()) {
    RunEveryCommand(family, family.devices.front(), Link::kLocal);
  }
}

class WrittenRecords : public testing::TestWithParam<Link> {};

INSTANTIATE_TEST_SUITE_P(Links, WrittenRecords, testing::Values(Link::kNetwork, Link::kLocal));

// What a write leaves out stays as it was, and only what was made permanent outlives the printer.
TEST_P(WrittenRecords, OutliveThePrinter) {
  const std::string device = "QM-T44 Series";
  const WorkerFolder folder({});
  const std::string address = R"({"CustomMediaNo":30,"CommandVersion":0)";
  const std::string read = Line(Request("GetCustomMediaInfo", "Studio", device, address + '}'));
  const auto run = [&](const std::string& requests) {
    VirtualPrinter printer(device, {"--state", folder.path() / "records"}, GetParam());
    folder.List({{"Studio", device, printer.Uri()}});
    folder.Run(Line(kList));
    std::string output = folder.Run(requests).output;
    EXPECT_TRUE(printer.Stop());
    return output;
  };
  const std::string before =
      run(Line(Request("SetCustomMediaInfo", "Studio", device,
                       address + R"(,"CustomMediaName":"Film",)" + kTypeD + '}')) +
          Line(Request("SetCustomMediaInfo", "Studio", device,
                       address + R"(,"MediaSuctionD":8,"ReferenceMediaType":7})")) +
          read);
  for (const char* setting :
       {R"("CustomMediaName":"Film")", R"("MediaSuctionD":8,"MediaTensionD":"ExtraHigh")"}) {
    EXPECT_NE(before.find(setting), std::string::npos) << before;
  }
  EXPECT_EQ(R"({"SetCustomMediaInfo":0}{"SetCustomMediaInfo":0})" + run(read), before);
}

}  // namespace

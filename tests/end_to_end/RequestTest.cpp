// Every command, family and record layout: from a host's request through the shipped worker and
// driver and real sockets to a virtual printer, and back.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/end_to_end/Rig.h"

namespace {

constexpr char kPlainSettings[] =
    R"("PlatenGap":"2.5","PreHeater":45,"PlatenHeater":"Off","AfterHeater":50,)"
    R"("DryingTimePerPass":10,"AfterHeaterFeed":"Mode1","AdditionalDryer":"On","MediaSuction":4,)"
    R"("HeadMovement":"DataWidth","MultiStrikePrinting":3,"TensionMeasure":"EveryPage",)"
    R"("RollType":"PrintableSideIn",)";

const std::string kPlain =
    kPlainSettings + std::string(R"("MediaTension":-5,"FeedSpeed":"Auto","RegistrationFlag":1)");

const std::string kPlainSecond =
    kPlainSettings + std::string(R"("MediaTensionATC":-128,"FeedSpeedATC":"Lv1",)"
                                 R"("MediaTensionMTC":120,"FeedSpeedMTC":"Lv2",)"
                                 R"("RegistrationFlag":1)");

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

struct Layout {
  int version;
  std::string settings;                  // members of the JSON object to write
  std::vector<std::string> notReadBack;  // what the printer's reply does not hold
};

struct Family {
  std::vector<std::string> devices;
  int deviceId;
  std::vector<Layout> layouts;
  bool tellsFirmware;
};

std::string Block() {
  std::string block;
  for (int i = 0; i < 224; ++i) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const int byte = (i * 37 + 11) % 256;
    block += {kDigits[byte / 16], kDigits[byte % 16]};
  }
  return block;
}

std::vector<Family> Families() {
  const Layout opaque{128, R"("SettingAll":")" + Block() + '"', {}};
  const std::vector<Layout> plain{{0, kPlain, {}}, {1, kPlainSecond, {}}, opaque};
  return {
      {{"ZARMO QM-R410 Series Comm Driver", "QM-R410 Series"}, 0x37, plain, false},
      {{"ZARMO QM-R210 Series Comm Driver", "QM-R210 Series"}, 0x37, plain, false},
      {{"ZARMO QM-R310 Series Comm Driver", "QM-R310 Series"}, 0x37, plain, false},
      {{"ZARMO QM-T84 Series Comm Driver", "QM-T84 Series", "ZARMO QM-T64 Series Comm Driver",
        "QM-T64 Series"},
       0x37,
       {{0, kWithStabilisers, {"PreHeater", "PlatenHeater"}}, opaque},
       false},
      {{"ZARMO QM-T44 Series Comm Driver", "QM-T44 Series"}, 0x38, {{0, kTypeD, {}}}, false},
      {{"ZARMO QM-V5 Series", "QM-V5 Series", "ZARMO QM-V7 Series", "QM-V7 Series",
        "ZARMO QM-V5PS Series", "ZARMO QM-V7PS Series"},
       0x46,
       {{0, kTypeI, {}}},
       true},
  };
}

picojson::value Parsed(const std::string& json) {
  picojson::value parsed;
  EXPECT_EQ(picojson::parse(parsed, json), "") << json;
  return parsed;
}

// One device, every request, through one kept worker.
class Exchange {
 public:
  Exchange(const Family& family, const std::string& device)
      : family_(family),
        device_(device),
        printer_(device, {"--serial", "SN00012345", "--firmware", "2.31"}),
        folder_({{"Studio", device, printer_.Uri()}}),
        worker_(folder_) {}

  void Run() {
    EXPECT_EQ(worker_.Ask(R"({"Command":"GetPrinterList"})"),
              R"({"GetPrinterList":0,"Reply":{"DeviceName":")" + device_ +
                  R"(","PrinterName":"Studio"}})");
    EXPECT_EQ(Ask("GetStatusReply", R"(["SerialNumber","StatusCode",1,"Unknown"])"),
              R"({"GetStatusReply":0,"Reply":{"SerialNumber":"SN00012345","StatusCode":4}})");
    for (const Layout& layout : family_.layouts) WriteAndReadBack(layout);
    NamesAndInitialise();
    if (family_.tellsFirmware) {
      EXPECT_EQ(Ask("GetFWVersion", ""),
                R"({"GetFWVersion":0,"Reply":{"FirmwareVersion":"2.31"}})");
    }
    EXPECT_TRUE(printer_.Stop());
  }

 private:
  std::string Ask(const std::string& command, const std::string& parameter) {
    return worker_.Ask(Request(command, "Studio", device_, parameter));
  }

  void WriteAndReadBack(const Layout& layout) {
    const std::string address =
        R"("CustomMediaNo":3,"CommandVersion":)" + std::to_string(layout.version);
    const std::string name = layout.version == 128 ? "" : R"(,"CustomMediaName":"Matte \/ \"A\"")";
    const std::string written = '{' + address + ',' + layout.settings + name + '}';
    EXPECT_EQ(Ask("SetCustomMediaInfo", written), R"({"SetCustomMediaInfo":0})") << written;

    picojson::object expected = Parsed(written).get<picojson::object>();
    for (const std::string& key : layout.notReadBack) expected.erase(key);
    expected["DeviceID"] = picojson::value(static_cast<double>(family_.deviceId));
    const picojson::value answer = Parsed(Ask("GetCustomMediaInfo", '{' + address + '}'));
    EXPECT_EQ(answer.get("GetCustomMediaInfo").to_str(), "0");
    EXPECT_EQ(answer.get("Reply").serialize(), picojson::value(expected).serialize());
  }

  void NamesAndInitialise() {
    EXPECT_EQ(Ask("GetCustomMediaName", R"({"CustomMediaNo":2})"),
              R"({"GetCustomMediaName":0,"Reply":[)"
              R"({"CustomMediaName":"","CustomMediaNo":2,"RegistrationFlag":0},)"
              R"({"CustomMediaName":"Matte \/ \"A\"","CustomMediaNo":3,"RegistrationFlag":1},)"
              R"({"CustomMediaName":"","CustomMediaNo":4,"RegistrationFlag":0}]})");
    EXPECT_EQ(Ask("SetMediaInitialize", R"({"InitializeCustomMedia":3})"),
              R"({"SetMediaInitialize":0})");
    EXPECT_EQ(Ask("SetMediaInitialize", R"({"InitializeCustomMedia":"All"})"),
              R"({"SetMediaInitialize":0})");
    const picojson::value answer =
        Parsed(Ask("GetCustomMediaInfo", R"({"CustomMediaNo":3,"CommandVersion":0})"));
    EXPECT_EQ(answer.get("Reply").get("RegistrationFlag").to_str(), "0");
    EXPECT_EQ(answer.get("Reply").get("CustomMediaName").to_str(), "");
  }

  const Family& family_;
  const std::string device_;
  VirtualPrinter printer_;
  WorkerFolder folder_;
  KeptWorker worker_;
};

TEST(Request, EveryCommandFamilyAndLayout) {
  std::size_t devices = 0;
  for (const Family& family : Families()) {
    for (const std::string& device : family.devices) {
      SCOPED_TRACE(device);
      Exchange(family, device).Run();
      ++devices;
    }
  }
  EXPECT_EQ(devices, 18U);
}

// What a write leaves out stays as it was, and only what was made permanent outlives the printer.
TEST(Request, WrittenRecordsOutliveThePrinter) {
  const TemporaryFolder state;
  const std::vector<std::string> options{"--state", (state.path() / "records").string()};
  const std::string read = Request("GetCustomMediaInfo", "Studio", "QM-T44 Series",
                                   R"({"CustomMediaNo":30,"CommandVersion":0})");
  const WorkerFolder folder({});
  std::string before;
  {
    VirtualPrinter printer("QM-T44 Series", options);
    folder.List({{"Studio", "QM-T44 Series", printer.Uri()}});
    const std::string whole =
        R"({"CustomMediaNo":30,"CommandVersion":0,"CustomMediaName":"Film",)" + kTypeD + '}';
    const Outcome outcome =
        folder.Run({R"({"Command":"GetPrinterList"})",
                    Request("SetCustomMediaInfo", "Studio", "QM-T44 Series", whole),
                    Request("SetCustomMediaInfo", "Studio", "QM-T44 Series",
                            R"({"CustomMediaNo":30,"CommandVersion":0,"MediaSuctionD":8,)"
                            R"("ReferenceMediaType":7})"),
                    read});
    EXPECT_EQ(WEXITSTATUS(outcome.status), 0);
    before = outcome.output.substr(outcome.output.rfind("{\"GetCustomMediaInfo"));
    EXPECT_NE(before.find(R"("CustomMediaName":"Film")"), std::string::npos) << before;
    EXPECT_NE(before.find(R"("MediaSuctionD":8,"MediaTensionD":"ExtraHigh")"), std::string::npos)
        << before;
    ASSERT_TRUE(printer.Stop());
  }
  VirtualPrinter printer("QM-T44 Series", options);
  folder.List({{"Studio", "QM-T44 Series", printer.Uri()}});
  EXPECT_EQ(
      folder.Run({R"({"Command":"GetPrinterList"})", read}).output,
      R"({"GetPrinterList":0,"Reply":{"DeviceName":"QM-T44 Series","PrinterName":"Studio"}})" +
          before);
}

// Several printers are listed in their order, and each is opened by its own name, also by a worker
// started later.
TEST(Request, PrintersAreToldApartByName) {
  VirtualPrinter first("QM-T44 Series", {"--serial", "FIRST00001"});
  VirtualPrinter second("QM-V7 Series", {"--serial", "SECOND0002"});
  const WorkerFolder folder({{"b", "QM-T44 Series", first.Uri()},
                             {"a", "QM-V7 Series", second.Uri()},
                             {"broken", "QM-V7 Series", "socket://:0?x"},
                             {"b", "QM-V7 Series", second.Uri()}});
  const Outcome listed = folder.Run({R"({"Command":"GetPrinterList"})"});
  EXPECT_EQ(listed.output,
            R"({"GetPrinterList":0,"Reply":[{"DeviceName":"QM-T44 Series","PrinterName":"b"},)"
            R"({"DeviceName":"QM-V7 Series","PrinterName":"a"},)"
            R"({"DeviceName":"QM-V7 Series","PrinterName":"b"}]})");
  EXPECT_NE(listed.errors.find("broken"), std::string::npos) << listed.errors;
  const Outcome opened =
      folder.Run({Request("GetStatusReply", "a", "QM-V7 Series", R"(["SerialNumber"])"),
                  Request("GetStatusReply", "b", "QM-T44 Series", R"(["SerialNumber"])"),
                  Request("GetStatusReply", "B", "QM-T44 Series", R"(["SerialNumber"])")});
  EXPECT_EQ(opened.output, R"({"GetStatusReply":0,"Reply":{"SerialNumber":"SECOND0002"}})"
                           R"({"GetStatusReply":0,"Reply":{"SerialNumber":"FIRST00001"}})"
                           R"({"GetStatusReply":-4})");
  EXPECT_EQ(WEXITSTATUS(opened.status), 0xFC);
}

TEST(Request, TheCommandOnTheWireIsWhatTheTablesSay) {
  VirtualPrinter printer("QM-T44 Series", {"--trace"});
  const WorkerFolder folder({{"Studio", "QM-T44 Series", printer.Uri()}});
  folder.Run({R"({"Command":"GetPrinterList"})",
              Request("SetCustomMediaInfo", "Studio", "QM-T44 Series",
                      R"({"CustomMediaNo":3,"CommandVersion":0,"CustomMediaName":"Film"})"),
              Request("GetCustomMediaName", "Studio", "QM-T44 Series", "{}")});
  EXPECT_TRUE(printer.Stop());
  const std::string trace = printer.Trace();
  const std::string write =
      "45581C00"                        // "EX", 28 bytes follow
      "000000001B"                      // write a record
      "38030000"                        // device code, number, version, reference media type
      "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"  // settings that stay as they are
      "46696C6D";                       // the name
  for (const std::string& command :
       {write, std::string("53560000"), std::string("45580700010000001D0100")}) {
    EXPECT_NE(trace.find(command), std::string::npos) << command << " is not in\n" << trace;
  }
}

}  // namespace

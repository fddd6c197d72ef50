// What is made of the searches' findings.
#include "port_driver/PrinterCatalogue.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace ZIOP {
namespace {

using testing::ElementsAre;

const std::vector<std::string> kSupported = {"ZARMO QM-R410 Series Comm Driver", "QM-R410 Series",
                                             "QM-R210 Series", "ZARMO QM-V5PS Series"};
constexpr char kModel[] = "QM-R410 Series";

FoundPrinter At(const std::string& uri, const std::string& name, const std::string& model) {
  FoundPrinter printer;
  printer.uri = uri;
  printer.name = name;
  printer.model = model;
  return printer;
}

FoundPrinter Queue(const std::string& name, const std::string& uri) {
  return At(uri, name, "ZARMO QM-R410 Series Comm Driver");
}

FoundPrinter Network(const std::string& host, const std::string& serial,
                     const std::string& model = kModel, const std::string& uuid = "") {
  FoundPrinter printer = At("socket://" + host, "", model);
  printer.serial = serial;
  printer.uuid = uuid;
  return printer;
}

FoundPrinter Named(const std::string& name, const std::string& serial) {
  FoundPrinter printer = Network("192.0.2.1", serial);
  printer.name = name;
  return printer;
}

FoundPrinter Local(const std::string& node, const std::string& id) {
  FoundPrinter printer = At("file:///dev/" + node, "", "");
  printer.deviceId = id;
  return printer;
}

struct Findings {
  std::vector<ListedPrinter> configured;
  std::vector<FoundPrinter> queues;
  std::vector<FoundPrinter> network;
  std::vector<FoundPrinter> local;
};

// Names and URIs of what is listed.
std::vector<std::string> List(const Findings& findings) {
  PrinterCatalogue catalogue(SupportedModels(kSupported),
                             {{"studio.example", {"2001:db8::7", "192.0.2.7"}}});
  for (const ListedPrinter& printer : findings.configured) {
    catalogue.AddConfigured(printer);
  }
  catalogue.AddFound(PrinterSource::kQueues, findings.queues);
  catalogue.AddFound(PrinterSource::kNetwork, findings.network);
  catalogue.AddFound(PrinterSource::kLocal, findings.local);
  std::vector<std::string> lines;
  for (const ListedPrinter& printer : catalogue.List()) {
    EXPECT_THAT(kSupported, testing::Contains(printer.model));
    lines.push_back(printer.name + " " + printer.uri);
  }
  return lines;
}

TEST(PrinterCatalogueTest, ListsEveryPrinterOnce) {
  const std::string uuid = "urn:uuid:12345678-9ABC-def0-1234-56789abcdef0";
  const struct {
    const char* about;
    Findings findings;
    std::vector<std::string> list;
  } kRows[] = {
      {"sources in their order, each sorted with numbers by value",
       {{},
        {Queue("Z", "socket://q2"), Queue("A", "socket://q1")},
        {Network("192.0.2.10", ""), Network("192.0.2.9", ""), Network("192.0.2.8", "SN0010")},
        {Local("usb/lp10", "MDL:QM-R410 Series"), Local("usb/lp9", "MDL:QM-R410 Series")}},
       {"A socket://q1", "Z socket://q2", "QM-R410 Series (SN0010) socket://192.0.2.8",
        "QM-R410 Series (192.0.2.9) socket://192.0.2.9",
        "QM-R410 Series (192.0.2.10) socket://192.0.2.10",
        "QM-R410 Series (/dev/usb/lp9) file:///dev/usb/lp9",
        "QM-R410 Series (/dev/usb/lp10) file:///dev/usb/lp10"}},
      {"the queue is at the network printer's address, the cable at its serial number",
       {{},
        {Queue("Hall", "socket://studio.example")},
        {Network("192.0.2.7", "SN0042")},
        {Local("usb/lp0", "MFG:ZARMO;MDL:ZARMO QM-R410 Series;SN:sn0042;")}},
       {"Hall socket://studio.example"}},
      {"the configured printer is found at each of its addresses and by its own name",
       {{{"Mine", "Model", "socket://STUDIO.example"},
         {"Mine 2", "Model", "socket://studio.example"},
         {"Node", "Model", "file:///dev/usb/lp0"}},
        {Queue("Same name", "socket://studio.EXAMPLE")},
        {Network("[2001:db8::7]", ""), Network("[::ffff:192.0.2.7]", ""), Network("192.0.2.8", "")},
        {Local("usb/lp%30", "MDL:QM-R410 Series")}},
       {"QM-R410 Series (192.0.2.8) socket://192.0.2.8"}},
      {"the last source tells that what was found before is configured, and that two are one",
       {{{"Mine", "Model", "file:///dev/usb/lp0"}},
        {Queue("Hall", "socket://192.0.2.5"), Queue("Yard", "socket://192.0.2.6")},
        {Network("192.0.2.1", "SN0042"), Network("192.0.2.2", "SN0043"),
         Network("192.0.2.6", "SN0044")},
        {Local("usb/lp0", "MDL:QM-R410 Series;SN:SN0042;"),
         Local("usb/lp1", "MDL:QM-R410 Series;SN:SN0043;"),
         Local("usb/lp2", "MDL:QM-R410 Series;SN:SN0045;"),
         Local("usb/lp2", "MDL:QM-R410 Series;SN:SN0044;")}},
       {"Hall socket://192.0.2.5", "Yard socket://192.0.2.6",
        "QM-R410 Series (SN0043) socket://192.0.2.2"}},
      {"serial numbers that tell nothing",
       {{},
        {},
        {Network("192.0.2.1", "0"), Network("192.0.2.2", "0"), Network("192.0.2.3", "000000"),
         Network("192.0.2.4", "000000"), Network("192.0.2.5", "UNKNOWN"),
         Network("192.0.2.6", "UNKNOWN"), Network("192.0.2.7", "4567890"),
         Network("192.0.2.8", "4567890"), Network("192.0.2.9", std::string(65, 'S') + "12"),
         Network("192.0.2.10", std::string(65, 'S') + "12")},
        {}},
       {"QM-R410 Series (192.0.2.1) socket://192.0.2.1",
        "QM-R410 Series (192.0.2.2) socket://192.0.2.2",
        "QM-R410 Series (192.0.2.3) socket://192.0.2.3",
        "QM-R410 Series (192.0.2.4) socket://192.0.2.4",
        "QM-R410 Series (192.0.2.5) socket://192.0.2.5",
        "QM-R410 Series (192.0.2.6) socket://192.0.2.6",
        "QM-R410 Series (192.0.2.7) socket://192.0.2.7",
        "QM-R410 Series (192.0.2.8) socket://192.0.2.8",
        "QM-R410 Series (192.0.2.9) socket://192.0.2.9",
        "QM-R410 Series (192.0.2.10) socket://192.0.2.10"}},
      {"one device at two addresses, one number on two models, one address with two devices",
       {{},
        {},
        {Network("192.0.2.2", "SN0042"), Network("192.0.2.1", " SN0042 "),
         Network("192.0.2.3", "SN0042", "QM-R210 Series"), Network("192.0.2.4:9101", ""),
         Network("192.0.2.4:9102", ""), Network("[fe80::1%25a]", ""), Network("[fe80::1%25b]", "")},
        {}},
       {"QM-R210 Series (SN0042) socket://192.0.2.3", "QM-R410 Series (SN0042) socket://192.0.2.1",
        "QM-R410 Series (192.0.2.4:9101) socket://192.0.2.4:9101",
        "QM-R410 Series (192.0.2.4:9102) socket://192.0.2.4:9102",
        "QM-R410 Series (fe80::1%a) socket://[fe80::1%25a]",
        "QM-R410 Series (fe80::1%b) socket://[fe80::1%25b]"}},
      {"one agent with and without the raw port, and two agents",
       {{{"Mine", "Model", "socket://192.0.2.1:9101?snmp=1161"}},
        {Queue("Q", "socket://192.0.2.1:9101")},
        {Network("192.0.2.1?snmp=1161", ""), Network("192.0.2.1?snmp=1162", ""),
         Network("192.0.2.1", "")},
        {}},
       {"QM-R410 Series (192.0.2.1) socket://192.0.2.1",
        "QM-R410 Series (192.0.2.1?snmp=1162) socket://192.0.2.1?snmp=1162"}},
      {"UUIDs in two spellings, and two that tell nothing",
       {{},
        {},
        {Network("192.0.2.1", "", kModel, uuid),
         Network("192.0.2.2", "0", kModel, "{123456789abcdef0123456789ABCDEF0}"),
         Network("192.0.2.3", "", kModel, std::string(32, '0')),
         Network("192.0.2.4", "", kModel, std::string(32, '0'))},
        {}},
       {"QM-R410 Series (123456789abcdef0123456789abcdef0) socket://192.0.2.1",
        "QM-R410 Series (192.0.2.3) socket://192.0.2.3",
        "QM-R410 Series (192.0.2.4) socket://192.0.2.4"}},
  };
  for (const auto& row : kRows) {
    Findings findings = row.findings;
    EXPECT_EQ(List(findings), row.list) << row.about;
    for (auto* const found : {&findings.queues, &findings.network, &findings.local}) {
      std::reverse(found->begin(), found->end());
    }
    EXPECT_EQ(List(findings), row.list) << row.about << ", the other way round";
  }
}

TEST(PrinterCatalogueTest, NamesAreFreeReadableAndShort) {
  const struct {
    std::vector<FoundPrinter> queues, network;
    std::vector<std::string> list;
  } kRows[] = {
      {{Queue("Mine", "socket://192.0.2.2")}, {}, {"Mine (192.0.2.2) socket://192.0.2.2"}},
      {{Queue("", "socket://192.0.2.2")},
       {},
       {"ZARMO QM-R410 Series Comm Driver (192.0.2.2) socket://192.0.2.2"}},
      {{Queue(" B\xC3\xBCro\n\xFF\xED\xA0\x80\xC2\x85 \xE2\x80\xA8"
              "1\x7F\xE2\x80\xA9",
              "socket://h")},
       {},
       {"B\xC3\xBCro \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD 1 socket://h"}},
      {{Queue(std::string(126, 'n') + "\xC3\xBC", "socket://h")},
       {},
       {std::string(126, 'n') + " socket://h"}},
      {{}, {Named("Hall", "SN0042")}, {"Hall (SN0042) socket://192.0.2.1"}},
      {{},
       {Named(std::string(200, 'n'), "SN0042")},
       {std::string(118, 'n') + " (SN0042) socket://192.0.2.1"}},
      {{Queue("QM-R410 Series (SN0042)", "socket://h")},
       {Network("192.0.2.1", "SN0042")},
       {"QM-R410 Series (SN0042) socket://h"}},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(List({{{"Mine", "Model", "socket://192.0.2.9"}}, row.queues, row.network, {}}),
              row.list);
  }
}

TEST(PrinterCatalogueTest, ListsOnlySupportedModels) {
  const struct {
    const char *maker, *model, *description, *id;
    const char* name;  // none: it is left out
  } kRows[] = {
      {"", "ZARMO QM-R410 Series Comm Driver", "", "", "ZARMO QM-R410 Series Comm Driver"},
      {"", "ZARMO QM-R410 Series", "", "", kModel},
      {"", " ZARMO  zarmo\tQM-R410 Series ", "", "", kModel},
      {"", "", "", "MFG:ZARMO;MDL:QM-V5PS Series", "ZARMO QM-V5PS Series"},
      {"ZARMO", "QM-V5PS Series", "", "", "ZARMO QM-V5PS Series"},
      {"", "Zarmo QM-V5PS Series", "", "", "ZARMO QM-V5PS Series"},
      {"", "Agent 1.0", "", "DES:QM-R410 Series", kModel},
      {"", "Agent 1.0", "ZARMO QM-R410 Series", "MFG:ZARMO;MDL:X", kModel},
      {"", "qm-r410 series", "", "", ""},
      {"ZARMO", "Other QM-R410 Series", "", "", ""},
      {"", "QM-R410 Series 2", "", "", ""},
      {"", "", "", "", ""},
  };
  for (const auto& row : kRows) {
    FoundPrinter printer = At("socket://h", "", row.model);
    printer.maker = row.maker;
    printer.description = row.description;
    EXPECT_EQ(SupportedModels(kSupported).NameOf(printer, DeviceId::Parse(row.id)), row.name)
        << row.model << row.id;
  }
}

TEST(PrinterCatalogueTest, SaysWhatIsLeftOut) {
  testing::internal::CaptureStderr();
  EXPECT_THAT(List({{},
                    {Queue("a", "socket://h"), Queue("a", "socket://h2"), Queue("b", "ipp://h3"),
                     Queue("a (h2)", "socket://h4")},
                    {Network("192.0.2.1", "", "B"), Network("192.0.2.2", "", "A\n"),
                     Network("192.0.2.3", "", "B")},
                    {}}),
              ElementsAre("a socket://h", "a (h2) socket://h2", "a (h2) (h4) socket://h4"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZIOP: printing system: left out: \"ZARMO QM-R410 Series Comm Driver\": device URI: no "
            "port for scheme \"ipp\"\n"
            "ZIOP: network: left out: SupportedPrinters lacks \"A\" \"B\"\n");
}

}  // namespace
}  // namespace ZIOP

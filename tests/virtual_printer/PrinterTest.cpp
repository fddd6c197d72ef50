// The command language and the media slots of every family.
#include "virtual_printer/Printer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

constexpr char kPlain[] = "QM-R410 Series";
const std::string kBlankName = Repeat("20", kNameSize);
const std::string kOk = "EX:0000001BOK;";
const std::string kNa = "EX:0000001BNA;";

// "ABC" as a name of 32 bytes.
const std::string kAbc = "414243" + Repeat("20", kNameSize - 3);

struct LayoutCase {
  const char* model;
  const char* code;      // device code
  const char* version;   // layout
  std::size_t settings;  // setting bytes; 0: the layout is not known, kBlock: a block
};
constexpr std::size_t kBlock = 224;

constexpr LayoutCase kLayoutCases[] = {
    {"ZARMO QM-R410 Series Comm Driver", "37", "00", 15},
    {"QM-R410 Series", "37", "01", 17},
    {"QM-R410 Series", "37", "80", kBlock},
    {"QM-R410 Series", "37", "02", 0},
    {"ZARMO QM-R210 Series Comm Driver", "37", "00", 15},
    {"QM-R210 Series", "37", "01", 17},
    {"QM-R210 Series", "37", "80", kBlock},
    {"ZARMO QM-R310 Series Comm Driver", "37", "00", 15},
    {"QM-R310 Series", "37", "01", 17},
    {"QM-R310 Series", "37", "80", kBlock},
    {"ZARMO QM-T84 Series Comm Driver", "37", "00", 18},
    {"QM-T84 Series", "37", "01", 0},
    {"QM-T84 Series", "37", "80", kBlock},
    {"ZARMO QM-T64 Series Comm Driver", "37", "00", 18},
    {"QM-T64 Series", "37", "80", kBlock},
    {"ZARMO QM-T44 Series Comm Driver", "38", "00", 15},
    {"QM-T44 Series", "38", "00", 15},
    {"QM-T44 Series", "38", "01", 0},
    {"QM-T44 Series", "38", "80", 0},
    {"ZARMO QM-V5 Series", "46", "00", 15},
    {"QM-V5 Series", "46", "01", 0},
    {"ZARMO QM-V7 Series", "46", "00", 15},
    {"QM-V7 Series", "46", "80", 0},
    {"ZARMO QM-V5PS Series", "46", "00", 15},
    {"ZARMO QM-V7PS Series", "46", "00", 15},
};

void TestUnknownLayout(const LayoutCase& row, TestPrinter& printer) {
  const std::string head = std::string(row.code) + "03" + row.version;
  EXPECT_EQ(printer.Ex(kRead + head), kNa);
  EXPECT_EQ(printer.Ex(kWrite + head + Repeat("11", 16)), kNa);
  EXPECT_EQ(printer.Ex(kWrite + head + Repeat("11", kBlock)), kNa);
}

// A block is written and read as it stands, FF bytes included, and only as a whole.
void TestBlockLayout(const LayoutCase& row, TestPrinter& printer) {
  const std::string head = std::string(row.code) + "03" + row.version;
  const std::string block = "FF00" + Repeat("1B3B", kBlock / 2 - 1);
  EXPECT_EQ(printer.Ex(kWrite + head + block), kOk);
  EXPECT_EQ(printer.Ex(kRead + head), "EX:0000001B" + Text(Hex(head + block)) + ";");
  EXPECT_EQ(printer.Ex(kWrite + head + block + "00"), kNa);
  EXPECT_EQ(printer.Ex(kWrite + head + block.substr(2)), kNa);
}

void TestSettingsLayout(const LayoutCase& row, TestPrinter& printer) {
  const std::string head = std::string(row.code) + "03" + row.version;
  const std::string settings = Repeat("12", row.settings);
  EXPECT_EQ(printer.Ex(kWrite + head + settings + "01" + "414243"), kOk);
  EXPECT_EQ(printer.Ex(kRead + head), "EX:0000001B" + head + settings + "01" + kAbc + ";");
  // All integer fields must be there, and nothing behind the name.
  EXPECT_EQ(printer.Ex(kWrite + head + settings), kNa);
  EXPECT_EQ(printer.Ex(kWrite + head + settings + "01" + kAbc + "20"), kNa);
  EXPECT_EQ(printer.Ex(kWrite + head + settings + "01" + kAbc), kOk);
}

TEST(Printer, KnowsTheLayoutsOfItsFamily) {
  for (const auto& row : kLayoutCases) {
    SCOPED_TRACE(std::string(row.model) + " layout " + row.version);
    TestPrinter printer(row.model);
    if (row.settings == 0) {
      TestUnknownLayout(row, printer);
    } else if (row.settings == kBlock) {
      TestBlockLayout(row, printer);
    } else {
      TestSettingsLayout(row, printer);
    }
  }
}

TEST(Printer, PlaysEveryDeviceName) {
  EXPECT_EQ(DeviceNames().size(), 18U);
  for (const auto name : DeviceNames()) EXPECT_NE(FindFamily(name), nullptr) << name;
  for (const auto* name : {"", "QM-V5PS Series", "QM-V5 Series ", "qm-v5 series", "QM-R410"}) {
    EXPECT_EQ(FindFamily(name), nullptr) << name;
  }
}

struct RefusalCase {
  Bytes command;
  const char* reply;
};

TEST(Printer, RefusesWhatHardwareWouldRefuse) {
  const RefusalCase cases[] = {
      {{}, "NA;"},
      {Hex("45"), "NA;"},
      {Hex("0001"), "NA;"},
      {Hex("4558"), "EX:NA;"},
      {Hex("45580800"), "EX:NA;"},
      {MakeCommand("XX", kRead + "370300"), "XX:NA;"},
      {MakeCommand("EX", "010000001C370300"), "EX:NA;"},  // no such sub-command
      {MakeCommand("EX", "020000001B370300"), "EX:NA;"},
      {Hex("45580700010000001B370300"), "EX:0000001BNA;"},      // length field too small
      {Hex("45580900010000001B370300"), "EX:0000001BNA;"},      // too large
      {Hex("45580008010000001B370300"), "EX:0000001BNA;"},      // big-endian
      {MakeCommand("EX", kRead + "380300"), "EX:0000001BNA;"},  // another family's code
      {MakeCommand("EX", kRead + "370000"), "EX:0000001BNA;"},  // slot 0
      {MakeCommand("EX", kRead + "371F00"), "EX:0000001BNA;"},  // slot 31
      {MakeCommand("EX", kRead + "3703"), "EX:0000001BNA;"},
      {MakeCommand("EX", kRead + "37030000"), "EX:0000001BNA;"},
      {MakeCommand("EX", kWrite + "380300" + Repeat("01", 16)), "EX:0000001BNA;"},
      {MakeCommand("EX", kWrite + "370000" + Repeat("01", 16)), "EX:0000001BNA;"},
      {MakeCommand("EX", kWrite + "371F00" + Repeat("01", 16)), "EX:0000001BNA;"},
      {MakeCommand("EX", kWrite), "EX:0000001BNA;"},
      {MakeCommand("EX", kNames + "0000"), "EX:0000001DNA;"},
      {MakeCommand("EX", kNames + "1F00"), "EX:0000001DNA;"},
      {MakeCommand("EX", kNames + "01"), "EX:0000001DNA;"},
      {MakeCommand("EX", kNames + "010000"), "EX:0000001DNA;"},
      {MakeCommand("EX", kInitialize + "3880"), "EX:0000001ENA;"},
      {MakeCommand("EX", kInitialize + "3703"), "EX:0000001ENA;"},  // without the 80
      {MakeCommand("EX", kInitialize + "379F"), "EX:0000001ENA;"},
      {MakeCommand("EX", kInitialize + "37FF"), "EX:0000001ENA;"},
      {MakeCommand("EX", kInitialize + "37"), "EX:0000001ENA;"},
      {MakeCommand("SV", "00"), "SV:NA;"},
      {MakeCommand("VI", "0100"), "VI:NA;"},  // only another family tells it
      {MakeCommand("ST", "010000"), "ST:NA;"},
  };
  TestPrinter printer(kPlain);
  const std::string untouched = printer.Ex(kRead + "370301");
  for (const auto& row : cases) {
    EXPECT_EQ(printer.Ask(row.command), row.reply) << ToHex(row.command);
  }
  EXPECT_EQ(printer.Ex(kRead + "370301"), untouched);
}

TEST(Printer, KeepsWhatAWriteLeavesOpen) {
  struct WriteCase {
    const char* what;
    std::string written;  // settings, flag and name of layout 0
    std::string expected;
  };
  const std::string first = "010203040506070809101112131415";
  const WriteCase cases[] = {
      {"everything", first + "01" + "414243", first + "01" + kAbc},
      {"FF leaves every setting", Repeat("FF", 16), first + "01" + kAbc},
      {"one setting", "FFFF77" + Repeat("FF", 13), "010277" + first.substr(6) + "01" + kAbc},
      {"flag alone", Repeat("FF", 15) + "00", "010277" + first.substr(6) + "00" + kAbc},
      {"a shorter name", Repeat("FF", 16) + "5A",
       "010277" + first.substr(6) + "005A" + Repeat("20", 31)},
      {"FF is no blank of a name", Repeat("FF", 16) + "FF",
       "010277" + first.substr(6) + "00FF" + Repeat("20", 31)},
  };
  TestPrinter printer(kPlain);
  for (const auto& row : cases) {
    EXPECT_EQ(printer.Ex(kWrite + "370100" + row.written), kOk) << row.what;
    EXPECT_EQ(printer.Ex(kRead + "370100"), "EX:0000001B370100" + row.expected + ";") << row.what;
  }
}

TEST(Printer, ShowsOneRecordInLayouts0And1) {
  TestPrinter printer(kPlain);
  const std::string settings = "0102030405060708091011121314151617";
  EXPECT_EQ(printer.Ex(kWrite + "371E01" + settings + "01414243"), kOk);
  EXPECT_EQ(printer.Ex(kRead + "371E00"),
            "EX:0000001B371E00" + settings.substr(0, 30) + "01" + kAbc + ";");
  EXPECT_EQ(printer.Ex(kWrite + "371E00" + "55" + Repeat("FF", 15)), kOk);
  EXPECT_EQ(printer.Ex(kRead + "371E01"),
            "EX:0000001B371E0155" + settings.substr(2) + "01" + kAbc + ";");
  // The block and the neighbouring slot are apart from it.
  EXPECT_EQ(printer.Ex(kRead + "371E80"),
            "EX:0000001B" + Text(Hex("371E80" + Repeat("00", kBlock))) + ";");
  EXPECT_NE(printer.Ex(kRead + "371D01").substr(17), printer.Ex(kRead + "371E01").substr(17));
}

TEST(Printer, ListsThreeNames) {
  TestPrinter printer("QM-T44 Series");
  printer.Ex(kWrite + "381E00" + Repeat("FF", 15) + "01414243");
  EXPECT_EQ(printer.Ex(kNames + "0100"),
            "EX:0000001D0001" + kBlankName + "0002" + kBlankName + "0003" + kBlankName + ";");
  EXPECT_EQ(printer.Ex(kNames + "1C00"),
            "EX:0000001D001C" + kBlankName + "001D" + kBlankName + "011E" + kAbc + ";");
  EXPECT_EQ(printer.Ex(kNames + "1E00"),
            "EX:0000001D011E" + kAbc + "0000" + kBlankName + "0000" + kBlankName + ";");
}

TEST(Printer, Initializes) {
  TestPrinter printer(kPlain);
  std::vector<std::string> factory;
  for (const std::string head : {"370100", "370180", "370200", "370280", "371E00", "371E80"}) {
    factory.push_back(printer.Ex(kRead + head));
    const bool is_block = head.substr(4) == "80";
    printer.Ex(kWrite + head + Repeat("33", is_block ? kBlock : 16 + kNameSize));
  }
  EXPECT_EQ(factory[0].substr(47), "00" + kBlankName + ";");  // not registered, no name
  EXPECT_EQ(printer.Ex(kInitialize + "379E"), "EX:0000001EOK;");
  EXPECT_EQ(printer.Ex(kRead + "371E00"), factory[4]);
  EXPECT_EQ(printer.Ex(kRead + "371E80"), factory[5]);
  EXPECT_NE(printer.Ex(kRead + "370100"), factory[0]);
  EXPECT_EQ(printer.Ex(kInitialize + "3780"), "EX:0000001EOK;");
  EXPECT_EQ(printer.Ex(kRead + "370100"), factory[0]);
  EXPECT_EQ(printer.Ex(kRead + "370280"), factory[3]);
}

TEST(Printer, TellsItsFirmware) {
  for (const auto& [firmware, told] :
       {std::pair("1.00", "1.00"), {"2", "2   "}, {"12345", "1234"}}) {
    PrinterSetup setup = MakeSetup("QM-V7 Series");
    setup.firmware = firmware;
    TestPrinter printer(setup);
    EXPECT_EQ(printer.Ask(MakeCommand("VI", "0100")), std::string("VI:00000") + told + ";");
    EXPECT_EQ(printer.Ask(MakeCommand("VI", "01")), "VI:NA;");
    EXPECT_EQ(printer.Ask(MakeCommand("VI", "0200")), "VI:NA;");
  }
}

TEST(Printer, TellsItsStatus) {
  PrinterSetup setup = MakeSetup(kPlain);
  for (const auto& [serial, told] :
       {std::pair("ABC", "ABC       "), {"12345678901", "1234567890"}}) {
    setup.serial = serial;
    TestPrinter printer(setup);
    const std::string text = printer.Ask(MakeCommand("ST", "010001"));
    EXPECT_LE(text.size(), 256U);
    const auto fields = text.find("\r\n") + 4;
    const auto size = static_cast<unsigned char>(text[fields - 2]) +
                      256 * static_cast<unsigned char>(text[fields - 1]);
    EXPECT_EQ(fields + static_cast<std::size_t>(size), text.size());
    std::map<int, std::string> found;
    for (auto at = fields; at < text.size(); at += 2 + static_cast<unsigned char>(text[at + 1])) {
      found[text[at]] += text.substr(at + 2, static_cast<unsigned char>(text[at + 1]));
    }
    EXPECT_EQ(found[0x01], "\x04");
    EXPECT_EQ(found[0x1F], told);
    for (const int id : {0x02, 0x04, 0x0D, 0x0F, 0x28, 0x2E}) EXPECT_NE(found[id], "") << id;
    EXPECT_EQ(found.size(), 8U);
  }
}

TEST(Printer, TracesCommandsAndReplies) {
  struct TraceCase {
    Bytes command;
    std::string text;
  };
  const TraceCase cases[] = {
      {MakeCommand("EX", kRead + "370301"),
       "read-record name=EX length=8 format=010000001B device=37 slot=3 layout=1"},
      {MakeCommand("EX", kWrite + "370301" + Repeat("FF", 10) + "7E" + Repeat("FF", 5) + "0501" +
                             "4122431F"),
       "write-record name=EX length=30 format=000000001B device=37 slot=3 layout=1 "
       "MediaTensionATC=7E Reserved=05 flag=01 media_name=\"A.C.\""},
      {MakeCommand("EX", kWrite + "370300AB"),
       "write-record name=EX length=9 format=000000001B device=37 slot=3 layout=0 data=AB"},
      {MakeCommand("EX", kWrite + "37"),
       "write-record name=EX length=6 format=000000001B "
       "variable=37"},
      {MakeCommand("EX", kInitialize + "3780"),
       "initialize name=EX length=7 format=000000001E variable=3780"},
      {kSave, "save name=SV length=0 format= variable="},
      {Hex("4558"), "unknown"},
  };
  for (const auto& row : cases) {
    std::ostringstream out;
    Trace trace(&out);
    Faults faults;
    Printer printer(MakeSetup(kPlain), FactoryRecords(*FindFamily(kPlain)), faults, trace);
    const Bytes reply = printer.Execute(Port::kSnmp, row.command);
    std::istringstream lines(out.str());
    std::string command_line;
    std::string reply_line;
    std::getline(lines, command_line);
    std::getline(lines, reply_line);
    EXPECT_THAT(command_line, testing::MatchesRegex("....-..-..T..:..:..[.]...Z .*"));
    EXPECT_EQ(command_line.substr(25), "snmp command " + ToHex(row.command) + ' ' + row.text);
    EXPECT_EQ(reply_line.substr(25), "snmp reply " + ToHex(reply));
    EXPECT_EQ(lines.get(), EOF);
  }
}

class State : public testing::Test {
 protected:
  State() {
    char name[] = "/tmp/virtual-printer-XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~State() override {
    unlink(Path().c_str());
    EXPECT_EQ(rmdir(directory_.c_str()), 0) << "something is left in " << directory_;
  }
  std::string Path() const { return directory_ + "/state"; }

  std::string directory_;
};

TEST_F(State, KeepsWhatWasMadePermanentOnly) {
  const PrinterSetup setup = MakeSetup(kPlain, Path());
  const std::string block = Repeat("A5", kBlock);
  {
    TestPrinter printer(setup);
    printer.Ex(kWrite + "370201" + Repeat("21", 17) + "01414243");
    printer.Ex(kWrite + "370280" + block);
    EXPECT_EQ(printer.Ask(kSave), "SV:OK;");
    printer.Ex(kWrite + "370201" + Repeat("42", 17) + "005A");
    printer.Ex(kInitialize + "3782");
    EXPECT_EQ(printer.printer.SaveState(), "");
  }
  TestPrinter restarted(setup);
  EXPECT_EQ(restarted.Ex(kRead + "370201"),
            "EX:0000001B370201" + Repeat("21", 17) + "01" + kAbc + ";");
  EXPECT_EQ(restarted.Ex(kRead + "370280"), "EX:0000001B" + Text(Hex("370280" + block)) + ";");
}

TEST_F(State, RefusesToSaveWhereItCannot) {
  const std::string place = directory_ + "/later";
  const PrinterSetup setup = MakeSetup(kPlain, place + "/state");
  TestPrinter printer(setup);
  printer.Ex(kWrite + "370200" + Repeat("21", 16));
  testing::internal::CaptureStderr();
  EXPECT_EQ(printer.Ask(kSave), "SV:NA;");
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  // What could not be saved then is not permanent later.
  ASSERT_EQ(mkdir(place.c_str(), 0700), 0);
  EXPECT_EQ(printer.printer.SaveState(), "");
  EXPECT_EQ(TestPrinter(setup).Ex(kRead + "370200"), TestPrinter(kPlain).Ex(kRead + "370200"));
  EXPECT_EQ(unlink(setup.state_path.c_str()), 0);
  EXPECT_EQ(rmdir(place.c_str()), 0);
}

TEST_F(State, IsReadWholeOrNotAtAll) {
  const Family& family = *FindFamily(kPlain);
  RecordTable records = FactoryRecords(family);
  records[4].flag = 7;
  ASSERT_EQ(SaveState(Path(), family, records), "");
  std::string good;
  std::getline(std::ifstream(Path()), good, '\0');
  std::vector<std::string> damaged = {
      "", "x", "[]", "{}", R"({"family":1,"slots":[]})", R"({"family":"Ostrel","slots":[]})"};
  const auto replaced = [&good](const std::string& from, const std::string& to) {
    std::string text = good;
    return text.replace(text.rfind(from), from.size(), to);
  };
  damaged.push_back(replaced("\"flag\": 0", "\"flag\": 256"));
  damaged.push_back(replaced("\"flag\": 0", "\"flag\": -1"));
  damaged.push_back(replaced("\"flag\": 0", "\"flag\": \"0\""));
  damaged.push_back(replaced("2020", "20"));
  damaged.push_back(replaced("2020", "20G0"));
  damaged.push_back(replaced("\"settings\"", "\"setting\""));
  damaged.push_back(replaced("Ostrel", "Lunde"));
  damaged.push_back(good.substr(0, good.size() - 4));
  for (const auto& text : damaged) {
    std::ofstream(Path()) << text;
    RecordTable read = FactoryRecords(family);
    EXPECT_NE(LoadState(Path(), family, read), "") << text;
    EXPECT_EQ(read[4].flag, 0) << text;
  }
  std::ofstream(Path()) << good;
  EXPECT_EQ(LoadState(Path(), family, records), "");
}

}  // namespace
}  // namespace VirtualPrinter

// The command language and the media slots, where the worker's own commands do not reach.
#include "virtual_printer/Printer.h"

#include <gtest/gtest.h>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

const std::string kOk = "EX:0000001BOK;";

// "ABC" as a name of 32 bytes.
const std::string kAbc = "414243" + Repeat("20", kNameSize - 3);
const std::string kBlankName = Repeat("20", kNameSize);

Bytes Initialize(const std::string& variable) {
  return MakeCommand("EX", "000000001E" + variable);
}

TEST(Printer, RefusesWhatHardwareWouldRefuse) {
  const std::string settings = Repeat("01", 16);
  const std::string block = Repeat("11", kBlockSize);
  const std::pair<const char*, std::vector<Bytes>> kCases[] = {
      {"NA;", {{}, Hex("45"), Hex("0001")}},
      {"XX:NA;", {MakeCommand("XX", "010000001B370300")}},
      {"EX:NA;", {Hex("4558"), Hex("45580800"), MakeCommand("EX", "010000001C370300")}},
      {"EX:0000001BNA;",
       {// The length field: too small, too large, big-endian.
        Hex("45580700010000001B370300"), Hex("45580900010000001B370300"),
        Hex("45580008010000001B370300"),
        // Another family's code, slots 0 and 31, an unknown layout, other sizes.
        Read("380300"), Read("370000"), Read("371F00"), Read("370302"), Read("3703"),
        Read("37030000"), Write("380300" + settings), Write("370000" + settings),
        Write("371F00" + settings), Write("370302" + settings), Write(""),
        Write("370300" + settings.substr(2)), Write("370300" + settings + kAbc + "20"),
        Write("370380" + block + "00"), Write("370380" + block.substr(2))}},
      {"EX:0000001DNA;",
       {MakeCommand("EX", "010000001D0000"), MakeCommand("EX", "010000001D1F00"),
        MakeCommand("EX", "010000001D01"), MakeCommand("EX", "010000001D010000")}},
      {"EX:0000001ENA;",
       {Initialize("3880"), Initialize("3703"), Initialize("379F"), Initialize("37FF"),
        Initialize("37")}},
      {"SV:NA;", {MakeCommand("SV", "00")}},
      {"VI:NA;", {MakeCommand("VI", "0100")}},  // only another family tells it
      {"ST:NA;", {MakeCommand("ST", "010000")}},
  };
  TestPrinter printer;
  const std::string untouched = printer.Ask(Read("370301"));
  for (const auto& [reply, commands] : kCases) {
    for (const Bytes& command : commands) {
      EXPECT_EQ(printer.Ask(command), reply) << ToHex(command);
    }
  }
  EXPECT_EQ(printer.Ask(Read("370301")), untouched);
}

TEST(Printer, KeepsWhatAWriteLeavesOpen) {
  const std::string tail = "0405060708091011121314150";
  const struct {
    const char* what;
    std::string written;  // settings, flag and name of layout 0
    std::string expected;
  } kCases[] = {
      {"everything", "010203" + tail + "1" + "414243", "010203" + tail + "1" + kAbc},
      {"FF leaves every setting", Repeat("FF", 16), "010203" + tail + "1" + kAbc},
      {"one setting", "FFFF77" + Repeat("FF", 13), "010277" + tail + "1" + kAbc},
      {"flag alone", Repeat("FF", 15) + "00", "010277" + tail + "0" + kAbc},
      {"FF is no blank of a name", Repeat("FF", 16) + "FF",
       "010277" + tail + "0" + "FF" + Repeat("20", 31)},
  };
  TestPrinter printer;
  for (const auto& row : kCases) {
    EXPECT_EQ(printer.Ask(Write("370100" + row.written)), kOk) << row.what;
    EXPECT_EQ(printer.Ask(Read("370100")), "EX:0000001B370100" + row.expected + ";") << row.what;
  }
}

TEST(Printer, ShowsOneRecordInLayouts0And1) {
  TestPrinter printer;
  const std::string settings = "02030405060708091011121314151617";
  EXPECT_EQ(printer.Ask(Write("371E01"
                              "01" +
                              settings + "01414243")),
            kOk);
  EXPECT_EQ(printer.Ask(Read("371E00")),
            "EX:0000001B371E00"
            "01" +
                settings.substr(0, 28) + "01" + kAbc + ";");
  EXPECT_EQ(printer.Ask(Write("371E00"
                              "55" +
                              Repeat("FF", 15))),
            kOk);
  EXPECT_EQ(printer.Ask(Read("371E01")),
            "EX:0000001B371E01"
            "55" +
                settings + "01" + kAbc + ";");
  // The block is apart from it, and keeps FF bytes.
  const std::string block = "FF" + Repeat("00", kBlockSize - 1);
  EXPECT_EQ(printer.Ask(Write("371E80" + block)), kOk);
  EXPECT_EQ(printer.Ask(Read("371E80")), "EX:0000001B" + Text(Hex("371E80" + block)) + ";");
  EXPECT_EQ(printer.Ask(MakeCommand("EX", "010000001D1E00")),
            "EX:0000001D011E" + kAbc + "0000" + kBlankName + "0000" + kBlankName + ";");
}

TEST(Printer, Initializes) {
  TestPrinter printer;
  const auto first = [&] { return printer.Ask(Read("370100")) + printer.Ask(Read("370180")); };
  const auto last = [&] { return printer.Ask(Read("371E00")) + printer.Ask(Read("371E80")); };
  const std::string factory_first = first();
  const std::string factory_last = last();
  for (const std::string slot : {"3701", "371E"}) {
    EXPECT_EQ(printer.Ask(Write(slot + "00" + Repeat("33", 48))), kOk);
    EXPECT_EQ(printer.Ask(Write(slot + "80" + Repeat("33", kBlockSize))), kOk);
  }
  EXPECT_EQ(printer.Ask(Initialize("379E")), "EX:0000001EOK;");
  EXPECT_EQ(last(), factory_last);
  EXPECT_NE(first(), factory_first);
  EXPECT_EQ(printer.Ask(Initialize("3780")), "EX:0000001EOK;");
  EXPECT_EQ(first(), factory_first);
}

TEST(Printer, DescribesCommands) {
  const std::pair<Bytes, std::string> kCases[] = {
      {Write("370301" + Repeat("FF", 10) + "7E" + Repeat("FF", 5) + "0501" + "4122431F"),
       "write-record name=EX length=30 format=000000001B device=37 slot=3 layout=1 "
       "MediaTensionATC=7E Reserved=05 flag=01 media_name=\"A.C.\""},
      {Write("370300AB"),
       "write-record name=EX length=9 format=000000001B device=37 slot=3 layout=0 data=AB"},
      {Write("37"), "write-record name=EX length=6 format=000000001B variable=37"},
      {Hex("4558"), "unknown"},
  };
  for (const auto& [command, text] : kCases) {
    EXPECT_EQ(DescribeCommand(*FindFamily(kPlain), command), text);
  }
}

}  // namespace
}  // namespace VirtualPrinter

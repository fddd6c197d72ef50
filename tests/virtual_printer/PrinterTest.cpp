// The printer without its ports, where the worker's own commands do not reach: byte streams, the
// command language, the media slots and what outlives the printer.
#include "virtual_printer/Printer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/virtual_printer/TestPrinter.h"
#include "virtual_printer/RemoteStream.h"
#include "virtual_printer/StateFile.h"

namespace VirtualPrinter {
namespace {

Bytes Names(const std::string& variable) {
  return MakeCommand("EX", "010000001D" + variable);
}

Bytes Initialize(const std::string& variable) {
  return MakeCommand("EX", "000000001E" + variable);
}

TEST(RemoteStream, TakesTheCommandsHoweverTheBytesAreSplit) {
  const std::string enter = "1B401B285208000052454D4F544531";
  const std::string leave = "1B000000";
  const std::string one = "45580800010000001B370300";
  const std::string two = "53560000";
  const std::string three = "45581300" + enter + leave;
  const std::string four = "5858FFFF" + Repeat("1B", 65535);
  const std::pair<std::string, std::string> kCases[] = {
      {one + enter + two + one + leave + one + enter + two, two + one + two},
      {"00001B401B40" + enter.substr(0, 28) + enter + two, two},
      {"1B401B285208000052454D4F544532" + one, ""},  // another start
      {enter + one + enter + two, one + two},
      {enter + one + "1B40" + two, one},  // left by a reset
      {enter + leave + one, ""},
      {enter + three + two, three + two},
      {enter + two + one.substr(2), two},
      {enter + four + two, four + two},
  };
  for (const auto& [text, expected] : kCases) {
    const Bytes bytes = Hex(text);
    for (std::size_t piece = 1; piece <= 80; ++piece) {
      RemoteStream stream;
      std::string commands;
      for (std::size_t at = 0; at < bytes.size(); at += piece) {
        const std::size_t size = std::min(piece, bytes.size() - at);
        for (const auto& command : stream.Feed(bytes.data() + at, size)) commands += ToHex(command);
      }
      EXPECT_EQ(commands, expected) << text << " in pieces of " << piece;
    }
  }
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
        Read("37030000"), Write("380300" + settings), Write("371F00" + settings), Write(""),
        Write("370300" + settings.substr(2)), Write("370300" + settings + Repeat("20", 33)),
        Write("370380" + block + "00"), Write("370380" + block.substr(2))}},
      {"EX:0000001DNA;", {Names("0000"), Names("1F00"), Names("01"), Names("010000")}},
      {"EX:0000001ENA;",
       {Initialize("3880"), Initialize("3703"), Initialize("379F"), Initialize("37")}},
      {"SV:NA;", {MakeCommand("SV", "00")}},
      {"VI:NA;", {MakeCommand("VI", "0100")}},  // only another family tells it
      {"ST:NA;", {MakeCommand("ST", "00"), MakeCommand("ST", "010001")}},
  };
  TestPrinter printer;
  for (const auto& [reply, commands] : kCases) {
    for (const Bytes& command : commands) {
      EXPECT_EQ(printer.Ask(command), reply) << ToHex(command);
    }
  }
  EXPECT_EQ(printer.Ask(Read("370301")), TestPrinter().Ask(Read("370301")));
}

// The layouts 0 and 1 show one record, the block is apart from it; FF leaves a setting as it is.
TEST(Printer, KeepsWhatAWriteLeavesOpen) {
  const std::string ok = "EX:0000001BOK;";
  const std::string layout0 = "EX:0000001B371E00";
  const std::string layout1 = "EX:0000001B371E01";
  const std::string block = "EX:0000001B7\x1E\x80";
  const std::string middle = "0405060708091011121314";
  const std::string keep = Repeat("FF", 15);
  const std::string abc = "414243" + Repeat("20", kNameSize - 3);
  const std::string none = "0000" + Repeat("20", kNameSize);
  const std::string factory = TestPrinter().Ask(Read("371E00"));
  const std::pair<Bytes, std::string> kConversation[] = {
      {Write("371E00010203" + middle + "1501414243"), ok},
      {Write("371E00" + keep + "FF"), ok},
      {Read("371E00"), layout0 + "010203" + middle + "1501" + abc + ';'},
      {Write("371E00FFFF77" + keep.substr(6) + "00FF"), ok},
      {Read("371E00"), layout0 + "010277" + middle + "1500FF" + Repeat("20", 31) + ';'},
      {Write("371E01030201" + middle + "15161701414243"), ok},
      {Read("371E00"), layout0 + "030201" + middle + "1501" + abc + ';'},
      {Write("371E0055" + keep), ok},
      {Write("371E80" + Repeat("FF", kBlockSize)), ok},
      {Write("370100" + Repeat("33", 48)), ok},
      {Read("371E01"), layout1 + "550201" + middle + "15161701" + abc + ';'},
      {Read("371E80"), block + std::string(kBlockSize, '\xFF') + ';'},
      {Names("1E00"), "EX:0000001D011E" + abc + none + none + ';'},
      {Initialize("379E"), "EX:0000001EOK;"},
      {Read("371E00"), factory},
      {Read("371E80"), block + std::string(kBlockSize, '\0') + ';'},
      {Read("370100"), "EX:0000001B370100" + Repeat("33", 48) + ';'},
      {Initialize("3780"), "EX:0000001EOK;"},
      {Read("370100"), TestPrinter().Ask(Read("370100"))},
  };
  TestPrinter printer;
  for (const auto& [command, reply] : kConversation) {
    EXPECT_EQ(printer.Ask(command), reply) << ToHex(command);
  }
}

TEST(StateFile, HoldsWhatWasMadePermanentOnly) {
  const std::string folder = testing::TempDir() + "virtual-printer-" + std::to_string(getpid());
  const std::string path = folder + "/state";
  const Family& family = *FindFamily(kPlain);
  RecordTable records = FactoryRecords(family);
  TestPrinter printer{path};
  printer.Ask(Write("370101" + Repeat("21", 18) + "414243"));
  EXPECT_EQ(printer.Ask(kSave), "SV:NA;") << "the folder is not there";
  ASSERT_TRUE(std::filesystem::create_directory(folder));
  EXPECT_EQ(printer.printer.SaveState(), "");
  EXPECT_EQ(LoadState(path, family, records), "");
  EXPECT_EQ(records[0].flag, 0) << "what could not be saved is not permanent later";
  EXPECT_EQ(printer.Ask(kSave), "SV:OK;");
  printer.Ask(Write("370101" + Repeat("42", 18)));
  EXPECT_EQ(printer.printer.SaveState(), "");
  EXPECT_EQ(LoadState(path, family, records), "");
  EXPECT_EQ(records[0].settings, Bytes(17, 0x21));
  EXPECT_EQ(records[0].name[2], 'C');

  std::string good;
  std::getline(std::ifstream(path), good, '\0');
  std::ofstream(path + ".new-AbC012") << "what a killed printer left";
  EXPECT_EQ(LoadState(path, family, records), "");
  EXPECT_FALSE(std::filesystem::exists(path + ".new-AbC012"));
  const std::pair<std::string, std::string> kDamages[] = {
      {good, ""},
      {good, "[]"},
      {good, Repeat(R"({"":)", 1000000)},
      {good, R"({"family":1,"slots":[]})"},
      {good, R"({"family":"Ostrel","slots":[]})"},
      {"\"flag\": 0", "\"flag\": 256"},
      {"\"flag\": 0", "\"flag\": -1"},
      {"\"flag\": 0", "\"flag\": 1e999"},
      {"\"flag\": 0", "\"flag\": \"\""},
      {"2020", "20"},
      {"2020", "202020"},
      {"2020", "20G0"},
      {"\"settings\"", "\"setting\""},
      {"Ostrel", "Lunde"},
      {"\n}", ""},
  };
  records = FactoryRecords(family);
  for (const auto& [from, to] : kDamages) {
    std::ofstream(path) << std::string(good).replace(good.rfind(from), from.size(), to);
    EXPECT_NE(LoadState(path, family, records), "") << to;
    EXPECT_EQ(records[0].flag, 0) << to;
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace VirtualPrinter

// Commands cut out of a byte stream.
#include "virtual_printer/RemoteStream.h"

#include <gtest/gtest.h>

#include "tests/virtual_printer/TestPrinter.h"

namespace VirtualPrinter {
namespace {

const std::string kEnter = "1B401B285208000052454D4F544531";
const std::string kLeave = "1B000000";
const std::string kOne = "45580800010000001B370300";
const std::string kTwo = "53560000";
const std::string kLong = "5858FFFF" + Repeat("1B", 65535);

TEST(RemoteStream, TakesTheCommandsHoweverTheBytesAreSplit) {
  const struct {
    const char* what;
    std::string stream;
    std::string commands;
  } kCases[] = {
      {"several", kEnter + kOne + kTwo + kOne + kLeave, kOne + " " + kTwo + " " + kOne + " "},
      {"two remote modes", kEnter + kOne + kLeave + kEnter + kTwo, kOne + " " + kTwo + " "},
      {"outside", kOne + kEnter + kTwo + kLeave + kOne, kTwo + " "},
      {"print data before", "00001B401B40" + kEnter + kTwo, kTwo + " "},
      {"a start cut short", kEnter.substr(0, 28) + kEnter + kTwo, kTwo + " "},
      {"another start", "1B401B285208000052454D4F544532" + kOne, ""},
      {"entered again", kEnter + kOne + kEnter + kTwo, kOne + " " + kTwo + " "},
      {"left by a reset", kEnter + kOne + "1B40" + kTwo, kOne + " "},
      {"empty remote mode", kEnter + kLeave + kOne, ""},
      {"start and leave inside a command", kEnter + "45581300" + kEnter + kLeave + kTwo,
       "45581300" + kEnter + kLeave + " " + kTwo + " "},
      {"incomplete", kEnter + kTwo + "455808000100", kTwo + " "},
      {"longest", kEnter + kLong + kTwo, kLong + " " + kTwo + " "},
  };
  for (const auto& row : kCases) {
    const Bytes bytes = Hex(row.stream);
    for (std::size_t piece = 1; piece <= bytes.size(); piece = piece < 60 ? piece + 1 : 2 * piece) {
      RemoteStream stream;
      std::string commands;
      for (std::size_t at = 0; at < bytes.size(); at += piece) {
        for (const auto& command :
             stream.Feed(bytes.data() + at, std::min(piece, bytes.size() - at))) {
          commands += ToHex(command) + ' ';
        }
      }
      EXPECT_EQ(commands, row.commands) << row.what << " in pieces of " << piece;
    }
  }
}

}  // namespace
}  // namespace VirtualPrinter

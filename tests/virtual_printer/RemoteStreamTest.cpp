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

std::string Joined(const std::vector<Bytes>& commands) {
  std::string text;
  for (const auto& command : commands) text += ToHex(command) + ' ';
  return text;
}

struct StreamCase {
  const char* what;
  std::string stream;
  std::string commands;
};

const StreamCase kCases[] = {
    {"one", kEnter + kOne + kLeave, kOne + " "},
    {"several", kEnter + kOne + kTwo + kOne + kLeave, kOne + " " + kTwo + " " + kOne + " "},
    {"two remote modes", kEnter + kOne + kLeave + kEnter + kTwo + kLeave, kOne + " " + kTwo + " "},
    {"outside", kOne + kEnter + kTwo + kLeave + kOne, kTwo + " "},
    {"print data before", "00001B401B40" + kEnter + kTwo, kTwo + " "},
    {"a start cut short", kEnter.substr(0, 28) + kEnter + kTwo, kTwo + " "},
    {"another start", "1B401B285208000052454D4F544532" + kOne, ""},
    {"not left", kEnter + kOne, kOne + " "},
    {"entered again", kEnter + kOne + kEnter + kTwo, kOne + " " + kTwo + " "},
    {"left by a reset", kEnter + kOne + "1B40" + kTwo, kOne + " "},
    {"empty remote mode", kEnter + kLeave + kOne, ""},
    {"start and leave inside a command", kEnter + "45581300" + kEnter + kLeave + kTwo,
     "45581300" + kEnter + kLeave + " " + kTwo + " "},
    {"incomplete", kEnter + kTwo + "455808000100", kTwo + " "},
    {"longest", kEnter + "5858FFFF" + Repeat("1B", 65535) + kTwo,
     "5858FFFF" + Repeat("1B", 65535) + " " + kTwo + " "},
};

TEST(RemoteStream, TakesTheCommands) {
  for (const auto& row : kCases) {
    RemoteStream stream;
    const Bytes bytes = Hex(row.stream);
    EXPECT_EQ(Joined(stream.Feed(bytes.data(), bytes.size())), row.commands) << row.what;
  }
}

TEST(RemoteStream, TakesThemHoweverTheBytesAreSplit) {
  for (const auto& row : kCases) {
    const Bytes bytes = Hex(row.stream);
    for (std::size_t split = 0; split <= bytes.size() && split < 200; ++split) {
      RemoteStream stream;
      const std::string before = Joined(stream.Feed(bytes.data(), split));
      const std::string after = Joined(stream.Feed(bytes.data() + split, bytes.size() - split));
      EXPECT_EQ(before + after, row.commands) << row.what << " split at " << split;
    }
    RemoteStream stream;
    std::string commands;
    for (const auto& byte : bytes) commands += Joined(stream.Feed(&byte, 1));
    EXPECT_EQ(commands, row.commands) << row.what << " byte by byte";
  }
}

}  // namespace
}  // namespace VirtualPrinter

// What is no named value, and user scales at their ends. The rows themselves are checked against
// docs/parameters.md.
#include "GantryCore/CommandConvertTable.h"

#include <gtest/gtest.h>

#include <string>

namespace Ravik {
namespace {

using Table = CCommandConvertTable;

TEST(CommandConvertTable, UnknownNamesLeaveTheResultAlone) {
  unsigned int byte = 77;
  EXPECT_FALSE(Table::StringToBinary("FeedSpeed", "auto", byte));
  EXPECT_FALSE(Table::StringToBinary("PlatenGap", "Standard", byte));
  EXPECT_FALSE(Table::StringToBinary("PlatenGap", "5", byte));
  EXPECT_EQ(byte, 77U);
  std::string text = "kept";
  EXPECT_FALSE(Table::BinaryToString("feedspeed", 254, text));
  EXPECT_FALSE(Table::BinaryToString("FeedSpeed", 254 + 256, text));
  EXPECT_FALSE(Table::BinaryToString("RollType", 2, text));
  EXPECT_EQ(text, "kept");
}

TEST(CommandConvertTable, UserScalesWrapAround) {
  const struct {
    const char* name;
    unsigned int printer;
    int user;
  } kCases[] = {
      {"PaperFeedAdjustmentValue", 98, -3},
      {"PlatenGap", 0xFFFFFFFF, -1},
      {"MultiStrikePrinting", 0x7FFFFFFF, -0x7FFFFFFF - 1},
      {"MediaTension", 0x80000000, 0x7FFFFF80},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Table::CorrectValue(c.name, c.printer), c.user) << c.name;
    EXPECT_EQ(Table::InverseCorrectValue(c.name, static_cast<unsigned int>(c.user)),
              static_cast<int>(c.printer));
  }
}

}  // namespace
}  // namespace Ravik

// Named values and user scales: the rows where printers are irregular.
#include "GantryCore/CommandConvertTable.h"

#include <gtest/gtest.h>

#include <string>

namespace Ravik {
namespace {

using Table = CCommandConvertTable;

TEST(CommandConvertTable, NamedValues) {
  const struct {
    const char* name;
    const char* text;
    unsigned int byte;
  } kCases[] = {
      {"PlatenGap", "2.0", 1},
      {"PlatenGap", "1.5", 2},
      {"PlatenGap", "2.5", 5},
      {"Heater", "Off", 1},
      {"MultiStrikePrinting", "Off", 0},

      {"FeedSpeedATC", "Auto", 254},
      {"TensionMeasure", "Off", 2},
      {"RollType", "PrintableSideOut", 0},
      {"InitializeCustomMedia", "All", 128},
      {"BlankAreaFeed", "Mode0", 15},
      {"PlatenGapD", "Standard", 3},
      {"Removeskew", "On", 1},
  };
  for (const auto& c : kCases) {
    unsigned int byte = 0;
    std::string text;
    EXPECT_TRUE(Table::StringToBinary(c.name, c.text, byte)) << c.name << ' ' << c.text;
    EXPECT_EQ(byte, c.byte) << c.name << ' ' << c.text;
    EXPECT_TRUE(Table::BinaryToString(c.name, c.byte, text)) << c.name << ' ' << c.byte;
    EXPECT_EQ(text, c.text);
  }
}

TEST(CommandConvertTable, FeedSpeedsAreNumberedBackwards) {
  for (const char* name : {"FeedSpeed", "FeedSpeedATC", "FeedSpeedMTC"}) {
    unsigned int level_1 = 0;
    unsigned int level_2 = 0;
    EXPECT_TRUE(Table::StringToBinary(name, "Lv1", level_1));
    EXPECT_TRUE(Table::StringToBinary(name, "Lv2", level_2));
    EXPECT_EQ(level_1, 2U) << name;
    EXPECT_EQ(level_2, 1U) << name;
  }
}

TEST(CommandConvertTable, UnknownNamesLeaveTheResultAlone) {
  unsigned int byte = 77;
  EXPECT_FALSE(Table::StringToBinary("FeedSpeed", "auto", byte));
  EXPECT_FALSE(Table::StringToBinary("PlatenGap", "Standard", byte));
  EXPECT_FALSE(Table::StringToBinary("PlatenGap", "5", byte));
  EXPECT_FALSE(Table::StringToBinary("", "", byte));
  EXPECT_EQ(byte, 77U);
  std::string text = "kept";
  EXPECT_FALSE(Table::BinaryToString("RollType", 2, text));
  EXPECT_FALSE(Table::BinaryToString("FeedSpeed", 254 + 256, text));
  EXPECT_FALSE(Table::BinaryToString("feedspeed", 254, text));
  EXPECT_EQ(text, "kept");
}

TEST(CommandConvertTable, UserScalesAndBack) {
  const struct {
    const char* name;
    unsigned int printer;
    int user;
  } kCases[] = {
      {"MultiStrikePrinting", 1, 2},
      {"MediaTension", 123, -5},
      {"MediaTensionATC", 128, 0},
      {"MediaTensionMTC", 0, -128},
      {"FeedingTension", 255, 127},
      {"TakeupTension", 129, 1},
      {"InitializeCustomMedia", 129, 1},
      {"PaperFeedAdjustmentValue", 98, -3},
      {"PlatenGap", 7, 7},
      {"PlatenGap", 0xFFFFFFFF, -1},
      {"MultiStrikePrinting", 0x7FFFFFFF, -0x7FFFFFFF - 1},
      {"MediaTension", 0x80000000, 0x7FFFFF80},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Table::CorrectValue(c.name, c.printer), c.user) << c.name;
    EXPECT_EQ(Table::InverseCorrectValue(c.name, static_cast<unsigned int>(c.user)),
              static_cast<int>(c.printer))
        << c.name;
  }
}

}  // namespace
}  // namespace Ravik

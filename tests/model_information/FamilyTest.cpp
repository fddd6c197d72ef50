// Which family a device name selects, which operations it does not answer, and what a slip in a row
// of its tables would break.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ReadClass.h"

namespace Ravik {
namespace {

using Fields = std::map<int, std::size_t>;          // number of fields by command key
using Ends = std::map<unsigned int, unsigned int>;  // of fields, by their positions

struct FamilyCase {
  std::string name;                       // the family's source unit
  std::vector<const char*> device_names;  // each selects the family
  unsigned int device_code;
  Fields command_fields;
  Fields reply_fields;
  int command_line;  // of the assertion for an unanswered command key
  int reply_line;
};

std::vector<FamilyCase> Families() {
  const Fields c{{4, 3}, {5, 3}, {6, 3}, {7, 2}, {10, 20}, {11, 22}, {12, 4}, {13, 2}};
  const Fields r{{4, 19}, {5, 21}, {6, 4}, {7, 9}};
  const Fields d_c{{4, 3}, {7, 2}, {10, 20}, {13, 2}};
  const Fields d_r{{4, 13}, {7, 9}};
  const Fields i_c{{4, 3}, {7, 2}, {9, 1}, {10, 20}, {13, 2}};
  const Fields i_r{{4, 18}, {7, 9}, {9, 1}};
  const Fields st_c{{4, 3}, {6, 3}, {7, 2}, {10, 23}, {12, 4}, {13, 2}};
  const Fields st_r{{4, 20}, {6, 4}, {7, 9}};
  using Names = std::vector<const char*>;
  const Names r410{"QM-R410 Series", "ZARMO QM-R410 Series Comm Driver"};
  const Names r210{"QM-R210 Series", "ZARMO QM-R210 Series Comm Driver"};
  const Names r310{"QM-R310 Series", "ZARMO QM-R310 Series Comm Driver"};
  const Names t44{"QM-T44 Series", "ZARMO QM-T44 Series Comm Driver"};
  const Names t84{"QM-T84 Series", "ZARMO QM-T84 Series Comm Driver", "QM-T64 Series",
                  "ZARMO QM-T64 Series Comm Driver"};
  const Names v5{"QM-V5 Series",       "ZARMO QM-V5 Series",   "QM-V7 Series",
                 "ZARMO QM-V7 Series", "ZARMO QM-V5PS Series", "ZARMO QM-V7PS Series"};
  return {
      {"Ostrel", r410, 0x37, c, r, 52, 72},   {"Parvane", r210, 0x37, c, r, 55, 77},
      {"Tamsk", r310, 0x37, c, r, 54, 74},    {"TamskST", t84, 0x37, st_c, st_r, 48, 65},
      {"Lunde", t44, 0x38, d_c, d_r, 42, 56}, {"Corvel", v5, 0x46, i_c, i_r, 46, 63},
  };
}

TEST(Registry, UnknownNamesLeaveTheDescriptorsAlone) {
  CModelInfomation& models = CModelInfomation::GetInstance();
  for (const char* name : {"", "QM-V5PS Series", "QM-T64 Series ", " QM-T64 Series",
                           "qm-t64 series", "QM-T64 Series Comm Driver"}) {
    for (int round = 0; round < 2; ++round) {
      CommandInfoVO command;
      ReplyInfoVO reply;
      std::vector<ReplyInfoVO> status;
      EXPECT_FALSE(models.ReadCommandInfo(name, READ_CUSTOMMEDIA_INFO1, command)) << name;
      EXPECT_FALSE(models.ReadReplyInfo(name, READ_CUSTOMMEDIA_INFO1, reply)) << name;
      EXPECT_FALSE(models.ReadStatusReplyInfo(name, status)) << name;
      EXPECT_TRUE(command.command.empty() && reply.header.empty() && status.empty());
    }
  }
}

TEST(Registry, KeepsOneFamilyObjectADeviceName) {
  CReadClass registry;
  const IPrinterClass* const known = registry.GetPrinter("QM-T64 Series");
  EXPECT_EQ(registry.GetPrinter("QM-T64 Series"), known);
  EXPECT_NE(registry.GetPrinter("QM-T84 Series"), known);
}

TEST(FamilyDeathTest, OtherKeysEndTheProcess) {
  CReadClass registry;
  CommandInfoVO command;
  ReplyInfoVO reply;
  for (const FamilyCase& family : Families()) {
    // The reports tell the family by its source unit.
    const std::string unit =
        "src/naitive/SourceFiles/ModelInfomation/PrinterClass/" + family.name + ':';
    const std::string command_report =
        unit + std::to_string(family.command_line) + ": ReadCommandInfo: .*`false'";
    const std::string reply_report =
        unit + std::to_string(family.reply_line) + ": ReadReplyInfo: .*`false'";
    const char* const device = family.device_names[0];
    for (int i = 0; i <= 14; ++i) {
      const auto key = static_cast<COMMAND_KEY>(i);
      if (family.command_fields.count(i) == 0) {
        EXPECT_DEATH(registry.ReadCommandInfo(device, key, command), command_report) << i;
      }
      if (family.reply_fields.count(i) == 0) {
        EXPECT_DEATH(registry.ReadReplyInfo(device, key, reply), reply_report) << i;
      }
    }
    for (const char* name : family.device_names) {
      EXPECT_DEATH(registry.ReadCommandInfo(name, READ_STATUS, command), command_report) << name;
    }
  }
}

// Of the settings it is FF, which leaves them as they are.
unsigned int Default(const FamilyCase& family, int key, const std::string& name) {
  if (name == "DeviceID") return family.device_code;
  if (name == "CustomMediaNo") return 1;
  if (name == "CommandVersion") return key == 5 || key == 11 ? 1 : key == 6 ? 128 : 0;
  return key < 10 || key > 11 || name == "ReferenceMediaType" ? 0 : 255;
}

// Name, format and flags of the commands by key.
const std::map<int, std::string> kFrames = {
    {4, "EX 010000001B remote BGJC"},
    {5, "EX 010000001B remote BGJC"},
    {6, "EX 010000001B remote BGJC"},
    {7, "EX 010000001D remote BGJC"},
    {9, "VI 01 remote BGJC"},
    {10, "EX 000000001B remote SV BGJC"},
    {11, "EX 000000001B remote SV BGJC"},
    {12, "EX 000000001B remote SV"},
    {13, "EX 000000001E remote SV BGJC"},
};

std::string Frame(const CommandInfoVO& info) {
  const std::string name(info.command.begin(), info.command.end());
  return name + ' ' + CDataConverter::Byte2Ascii(info.format) + (info.isRemote ? " remote" : "") +
         (info.isSVCmd ? " SV" : "") + (info.isBGJC ? " BGJC" : "");
}

// Command fields fill the variable part, reply fields lie apart.
TEST(TableLint, FieldsFollowEachOther) {
  CReadClass registry;
  for (const FamilyCase& family : Families()) {
    for (const auto& [key, count] : family.command_fields) {
      SCOPED_TRACE(family.name + ' ' + std::to_string(key));
      CommandInfoVO info;
      registry.ReadCommandInfo(family.device_names[0], static_cast<COMMAND_KEY>(key), info);
      EXPECT_EQ(Frame(info), kFrames.at(key));
      EXPECT_EQ(info.valueInfo.count("DeviceID"), key == 7 || key == 9 ? 0U : 1U);
      Ends ends;
      for (const auto& [name, field] : info.valueInfo) {
        EXPECT_EQ(field.defaultValue, Default(family, key, name)) << name;
        EXPECT_EQ(field.valueType == VALUE_INTEGER, field.length == 1) << name;
        ends[field.position] = field.position + field.length;
      }
      EXPECT_EQ(ends.size(), count);
      unsigned int next = 0;
      for (const auto& [position, end] : ends) EXPECT_EQ(std::exchange(next, end), position);
    }
    for (const auto& [key, count] : family.reply_fields) {
      SCOPED_TRACE(family.name + " reply " + std::to_string(key));
      ReplyInfoVO info;
      registry.ReadReplyInfo(family.device_names[0], static_cast<COMMAND_KEY>(key), info);
      Ends ends;
      for (const auto& [name, field] : info.replyInfo) {
        EXPECT_EQ(field.form, key == 6 || key == 9 ? FORM_BINARY : FORM_TEXT) << name;
        ends[field.position] = field.position + field.length;
      }
      EXPECT_EQ(ends.size(), count);
      unsigned int next = 0;
      for (const auto& [position, end] : ends) EXPECT_LE(std::exchange(next, end), position);
    }
  }
}

TEST(TableLint, ConvertTableRowsTranslateBothWays) {
  for (const CTableElement& row : kConvertTable) {
    const std::string name(row.name);
    unsigned int byte = 0;
    std::string text;
    EXPECT_TRUE(CCommandConvertTable::StringToBinary(name, std::string(row.text), byte));
    EXPECT_TRUE(CCommandConvertTable::BinaryToString(name, row.byteValue, text));
    EXPECT_TRUE(byte == row.byteValue && text == row.text) << name << ' ' << row.text;
  }
}

}  // namespace
}  // namespace Ravik

// Walks every row of every table: what a slip in a row would break.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "GantryCore/DataConverter.h"
#include "ModelInfomation/ReadClass.h"
#include "tests/model_information/Families.h"

namespace Ravik {
namespace {

using Ends = std::map<unsigned int, unsigned int>;  // of fields, by their positions

class TableLint : public testing::TestWithParam<FamilyCase> {
 protected:
  CReadClass registry_;
};

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

TEST_P(TableLint, CommandFieldsTileTheVariablePart) {
  for (const auto& [key, count] : GetParam().command_fields) {
    SCOPED_TRACE(key);
    CommandInfoVO info;
    registry_.ReadCommandInfo(GetParam().device_name, static_cast<COMMAND_KEY>(key), info);
    EXPECT_EQ(Frame(info), kFrames.at(key));
    EXPECT_EQ(info.valueInfo.count("DeviceID"), key == 7 || key == 9 ? 0U : 1U);
    Ends ends;
    for (const auto& [name, field] : info.valueInfo) {
      EXPECT_EQ(field.defaultValue, Default(GetParam(), key, name)) << name;
      EXPECT_EQ(field.valueType == VALUE_INTEGER, field.length == 1) << name;
      ends[field.position] = field.position + field.length;
    }
    EXPECT_EQ(ends.size(), count);
    unsigned int next = 0;
    for (const auto& [position, end] : ends) EXPECT_EQ(std::exchange(next, end), position);
  }
}

TEST_P(TableLint, ReplyFieldsLieApart) {
  for (const auto& [key, count] : GetParam().reply_fields) {
    SCOPED_TRACE(key);
    ReplyInfoVO info;
    registry_.ReadReplyInfo(GetParam().device_name, static_cast<COMMAND_KEY>(key), info);
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

INSTANTIATE_TEST_SUITE_P(All, TableLint, testing::ValuesIn(Families()), FamilyName);

TEST(ConvertTableLint, RowsTranslateBothWays) {
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

// Walks every row of every table: what a slip in a row would break.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "ModelInfomation/ReadClass.h"
#include "tests/model_information/Families.h"

namespace Ravik {
namespace {

constexpr unsigned int kReplySize = 512;

class TableLint : public testing::TestWithParam<FamilyCase> {
 protected:
  CommandInfoVO Command(int key) {
    CommandInfoVO info;
    registry_.ReadCommandInfo(GetParam().device_name, static_cast<COMMAND_KEY>(key), info);
    return info;
  }

  ReplyInfoVO Reply(int key) {
    ReplyInfoVO info;
    registry_.ReadReplyInfo(GetParam().device_name, static_cast<COMMAND_KEY>(key), info);
    return info;
  }

  CReadClass registry_;
};

TEST_P(TableLint, CommandFieldsTileTheVariablePart) {
  for (const auto& [key, count] : GetParam().command_fields) {
    const CommandInfoVO info = Command(key);
    std::map<unsigned int, unsigned int> ends;  // by position
    for (const auto& [name, field] : info.valueInfo) {
      EXPECT_TRUE(ends.emplace(field.position, field.position + field.length).second) << name;
      EXPECT_LE(field.defaultValue, 255U) << name;
      EXPECT_EQ(field.valueType == VALUE_INTEGER, field.length == 1) << name;
      EXPECT_LE(field.valueType, VALUE_INTEGER) << name;
    }
    unsigned int next = 0;
    for (const auto& [position, end] : ends) {
      EXPECT_EQ(position, next) << "command " << key;
      next = end;
    }
  }
}

TEST_P(TableLint, ReplyFieldsLieApartInsideTheBody) {
  for (const auto& [key, count] : GetParam().reply_fields) {
    const ReplyInfoVO info = Reply(key);
    const auto body_size = kReplySize - static_cast<unsigned int>(info.header.size()) - 1;
    std::map<unsigned int, unsigned int> ends;  // by position
    for (const auto& [name, field] : info.replyInfo) {
      EXPECT_TRUE(ends.emplace(field.position, field.position + field.length).second) << name;
      EXPECT_TRUE(field.form == FORM_TEXT || field.form == FORM_BINARY) << name;
      EXPECT_LE(field.valueType, VALUE_INTEGER) << name;
      EXPECT_TRUE(field.form == FORM_BINARY || field.length % 2 == 0) << name;
    }
    unsigned int next = 0;
    for (const auto& [position, end] : ends) {
      EXPECT_GE(position, next) << "reply " << key;
      next = end;
    }
    EXPECT_LE(next, body_size);
  }
}

// A record is read from the bytes that it was written to, two characters a byte in text replies.
TEST_P(TableLint, RecordsAreReadWhereTheyAreWritten) {
  const bool is_tamsk_st = GetParam().name == std::string("TamskST");
  for (const auto& [read_key, write_key] : {std::pair{4, 10}, {5, 11}, {6, 12}}) {
    if (GetParam().reply_fields.count(read_key) == 0) continue;
    std::set<std::string> only_written;
    const ReplyInfoVO reply = Reply(read_key);
    for (const auto& [name, field] : Command(write_key).valueInfo) {
      const auto read = reply.replyInfo.find(name);
      if (read == reply.replyInfo.end()) {
        only_written.insert(name);
        continue;
      }
      const unsigned int characters = read->second.form == FORM_TEXT ? 2 : 1;
      EXPECT_EQ(read->second.position, field.position * characters) << name;
      EXPECT_EQ(read->second.length, field.length * characters) << name;
      EXPECT_EQ(read->second.valueType, field.valueType) << name;
    }
    std::set<std::string> settings;
    for (const std::string& name : only_written) {
      if (name.rfind("Reserv", 0) != 0) settings.insert(name);
    }
    const std::set<std::string> kNotReadBack = {"PlatenHeater", "PreHeater"};
    EXPECT_EQ(settings, is_tamsk_st && read_key == 4 ? kNotReadBack : std::set<std::string>{});
    EXPECT_EQ(reply.replyInfo.size() + only_written.size(), Command(write_key).valueInfo.size());
  }
}

// FF leaves a setting of a record as it is.
TEST_P(TableLint, DefaultsChangeNoSetting) {
  const std::map<int, unsigned int> kVersions = {{4, 0},  {5, 1},  {6, 128},
                                                 {10, 0}, {11, 1}, {12, 0}};
  for (const auto& [key, version] : kVersions) {
    if (GetParam().command_fields.count(key) == 0) continue;
    const std::map<std::string, unsigned int> kOthers = {
        {"DeviceID", static_cast<unsigned int>(GetParam().device_code)},
        {"CustomMediaNo", 1},
        {"CommandVersion", version},
        {"ReferenceMediaType", 0},
        {"SettingAll", 0}};
    for (const auto& [name, field] : Command(key).valueInfo) {
      const auto other = kOthers.find(name);
      EXPECT_EQ(field.defaultValue, other == kOthers.end() ? 0xFF : other->second)
          << key << ' ' << name;
    }
  }
}

TEST_P(TableLint, FramingFollowsTheOperation) {
  using Bytes = std::vector<unsigned char>;
  using Frame = std::tuple<std::string, Bytes, bool, bool, bool>;  // remote, SV, BGJC
  const std::map<int, Frame> kFrames = {
      {4, {"EX", {1, 0, 0, 0, 0x1B}, true, false, true}},
      {5, {"EX", {1, 0, 0, 0, 0x1B}, true, false, true}},
      {6, {"EX", {1, 0, 0, 0, 0x1B}, true, false, true}},
      {7, {"EX", {1, 0, 0, 0, 0x1D}, true, false, true}},
      {9, {"VI", {1}, true, false, true}},
      {10, {"EX", {0, 0, 0, 0, 0x1B}, true, true, true}},
      {11, {"EX", {0, 0, 0, 0, 0x1B}, true, true, true}},
      {12, {"EX", {0, 0, 0, 0, 0x1B}, true, true, false}},
      {13, {"EX", {0, 0, 0, 0, 0x1E}, true, true, true}},
  };
  for (const auto& [key, count] : GetParam().command_fields) {
    const CommandInfoVO info = Command(key);
    const std::string command(info.command.begin(), info.command.end());
    EXPECT_EQ(Frame(command, info.format, info.isRemote, info.isSVCmd, info.isBGJC),
              kFrames.at(key))
        << key;
    const auto device = info.valueInfo.find("DeviceID");
    EXPECT_EQ(device == info.valueInfo.end(), key == 7 || key == 9) << key;
    if (device == info.valueInfo.end()) continue;
    EXPECT_EQ(device->second.position, 0U) << key;
  }
}

INSTANTIATE_TEST_SUITE_P(All, TableLint, testing::ValuesIn(Families()), FamilyName);

std::set<std::string> CommandParameters() {
  std::set<std::string> names;
  for (const FamilyCase& family : Families()) {
    CReadClass registry;
    for (const auto& [key, count] : family.command_fields) {
      CommandInfoVO info;
      registry.ReadCommandInfo(family.device_name, static_cast<COMMAND_KEY>(key), info);
      for (const auto& [name, field] : info.valueInfo) names.insert(name);
    }
  }
  return names;
}

TEST(ConvertTableLint, RowsTranslateBothWays) {
  const std::set<std::string> parameters = CommandParameters();
  for (const CTableElement& row : kConvertTable) {
    const std::string name(row.name);
    unsigned int byte = 0;
    std::string text;
    EXPECT_TRUE(CCommandConvertTable::StringToBinary(name, std::string(row.text), byte));
    EXPECT_EQ(byte, row.byteValue) << name << ' ' << row.text << " is there twice";
    EXPECT_TRUE(CCommandConvertTable::BinaryToString(name, row.byteValue, text));
    EXPECT_EQ(text, row.text) << name << ' ' << row.byteValue << " is there twice";
    EXPECT_LE(row.byteValue, 255U);
    EXPECT_EQ(parameters.count(name), name == "Heater" ? 0U : 1U) << name;
  }
  std::set<std::string> corrected;
  for (const CCorrectElement& row : kCorrectTable) {
    EXPECT_EQ(parameters.count(std::string(row.name)), 1U) << row.name;
    EXPECT_TRUE(corrected.insert(std::string(row.name)).second) << row.name;
  }
}

}  // namespace
}  // namespace Ravik

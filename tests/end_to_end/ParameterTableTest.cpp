// The parameter tables in docs/ are the tables that commands are built and replies read with.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "GantryCore/CommandConvertTable.h"
#include "ModelInfomation/ModelInfomation.h"
#include "tests/end_to_end/Rig.h"

namespace {

using Ravik::CCommandConvertTable;

struct Row {
  std::string parameter, command, reply, leftOut, values;
};

struct Table {
  int layout = 0;
  std::string device;
  std::vector<Row> rows;
};

// The tables below headings such as "## Layout 0 of QM-T44".
std::vector<Table> Tables() {
  const std::regex heading("## Layout ([0-9]+) of ([-A-Z0-9]+)");
  const std::regex row(R"(\| `(\w+)` \| (.*?) \| (.*?) \| (.*?) \| (.*?) \|)");
  std::istringstream lines(ReadFile(std::string(DOCUMENTS_FOLDER) + "/parameters.md"));
  std::vector<Table> tables;
  std::smatch match;
  for (std::string line; std::getline(lines, line);) {
    if (std::regex_match(line, match, heading)) {
      tables.push_back({std::stoi(match[1]), match[2].str() + " Series", {}});
    } else if (!tables.empty() && std::regex_match(line, match, row)) {
      tables.back().rows.push_back({match[1], match[2], match[3], match[4], match[5]});
    }
  }
  return tables;
}

// "4", "4 to 9" or nothing, as a table writes a field's place.
template <typename Field>
std::string Place(const Field& field) {
  std::string first = std::to_string(field.position);
  if (field.length == 1) return first;
  return first + " to " + std::to_string(field.position + field.length - 1);
}

std::string LeftOut(const std::string& parameter, const Ravik::_t_COMMAND_INFOMATION& field) {
  if (parameter == "DeviceID") return "always sent";
  if (parameter == "CommandVersion" || parameter == "SettingAll") return "must be given";
  return field.defaultValue == 255 ? "stays" : std::to_string(field.defaultValue);
}

void CheckValues(const Row& row) {
  const std::regex named("`([^`]+)` ([0-9]+)");
  for (std::sregex_iterator value(row.values.begin(), row.values.end(), named), end; value != end;
       ++value) {
    unsigned int number = 0;
    EXPECT_TRUE(CCommandConvertTable::StringToBinary(row.parameter, (*value)[1], number));
    EXPECT_EQ(std::to_string(number), (*value)[2]) << row.parameter;
  }
  std::smatch shift;
  int expected = 0;
  if (std::regex_search(row.values, shift, std::regex("number ([-+]) ([0-9]+)"))) {
    expected = std::stoi(shift[1].str() + shift[2].str());
  }
  EXPECT_EQ(CCommandConvertTable::InverseCorrectValue(row.parameter, 0), expected);
}

void CheckTable(const Table& table, Ravik::COMMAND_KEY write, Ravik::COMMAND_KEY read) {
  Ravik::CommandInfoVO command;
  Ravik::ReplyInfoVO reply;
  ASSERT_TRUE(Ravik::CModelInfomation::GetInstance().ReadCommandInfo(table.device, write, command));
  ASSERT_TRUE(Ravik::CModelInfomation::GetInstance().ReadReplyInfo(table.device, read, reply));
  std::size_t replies = 0;
  for (const Row& row : table.rows) {
    SCOPED_TRACE(row.parameter);
    const auto field = command.valueInfo.find(row.parameter);
    ASSERT_NE(field, command.valueInfo.end());
    EXPECT_EQ(row.command, Place(field->second));
    EXPECT_EQ(row.leftOut, LeftOut(row.parameter, field->second));
    const auto value = reply.replyInfo.find(row.parameter);
    EXPECT_EQ(row.reply, value == reply.replyInfo.end() ? "" : Place(value->second));
    replies += row.reply.empty() ? 0U : 1U;
    CheckValues(row);
  }
  EXPECT_EQ(table.rows.size(), command.valueInfo.size());
  EXPECT_EQ(replies, reply.replyInfo.size());
}

TEST(Document, ParameterTables) {
  const std::vector<Table> tables = Tables();
  EXPECT_EQ(tables.size(), 6U);
  for (const Table& table : tables) {
    SCOPED_TRACE(table.device + " layout " + std::to_string(table.layout));
    if (table.layout == 0) {
      CheckTable(table, Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::READ_CUSTOMMEDIA_INFO1);
    } else if (table.layout == 1) {
      CheckTable(table, Ravik::WRITE_CUSTOMMEDIA_INFO2, Ravik::READ_CUSTOMMEDIA_INFO2);
    } else {
      CheckTable(table, Ravik::WRITE_CUSTOMMEDIA_INFO3, Ravik::READ_CUSTOMMEDIA_INFO3);
    }
  }
}

}  // namespace

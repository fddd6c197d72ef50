// The parameter tables in docs/ are the tables that commands are built and replies read with.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>

#include "GantryCore/CommandConvertTable.h"
#include "ModelInfomation/ModelInfomation.h"
#include "tests/end_to_end/Rig.h"

namespace {

using Ravik::CCommandConvertTable;

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

void CheckValues(const std::string& parameter, const std::string& values) {
  const std::regex named("`([^`]+)` ([0-9]+)");
  for (std::sregex_iterator value(values.begin(), values.end(), named), end; value != end;
       ++value) {
    unsigned int number = 0;
    EXPECT_TRUE(CCommandConvertTable::StringToBinary(parameter, (*value)[1], number));
    EXPECT_EQ(std::to_string(number), (*value)[2]);
  }
  std::smatch shift;
  const bool isShifted = std::regex_search(values, shift, std::regex("number ([-+]) ([0-9]+)"));
  EXPECT_EQ(CCommandConvertTable::InverseCorrectValue(parameter, 0),
            isShifted ? std::stoi(shift[1].str() + shift[2].str()) : 0);
}

// The tables stand below headings such as "## Layout 0 of QM-T44".
TEST(Document, ParameterTables) {
  const std::regex heading("## Layout ([0-9]+) of ([-A-Z0-9]+)");
  const std::regex row(R"(\| `(\w+)` \| (.*?) \| (.*?) \| (.*?) \| (.*?) \|)");
  const std::map<std::string, std::pair<Ravik::COMMAND_KEY, Ravik::COMMAND_KEY>> keys{
      {"0", {Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::READ_CUSTOMMEDIA_INFO1}},
      {"1", {Ravik::WRITE_CUSTOMMEDIA_INFO2, Ravik::READ_CUSTOMMEDIA_INFO2}},
      {"128", {Ravik::WRITE_CUSTOMMEDIA_INFO3, Ravik::READ_CUSTOMMEDIA_INFO3}}};
  auto& models = Ravik::CModelInfomation::GetInstance();
  Ravik::CommandInfoVO command;
  Ravik::ReplyInfoVO reply;
  // What no row of the current table has named yet.
  const auto expectAllNamed = [&] {
    for (const auto& [key, field] : command.valueInfo) ADD_FAILURE() << key << " has no row";
    for (const auto& [key, field] : reply.replyInfo) ADD_FAILURE() << key << " has no reply";
  };
  int tables = 0;
  std::smatch match;
  std::istringstream lines(Document("parameters.md"));
  for (std::string line; std::getline(lines, line);) {
    SCOPED_TRACE(line);
    if (std::regex_match(line, match, heading)) {
      expectAllNamed();
      const std::string device = match[2].str() + " Series";
      const auto [write, read] = keys.at(match[1]);
      ASSERT_TRUE(models.ReadCommandInfo(device, write, command));
      ASSERT_TRUE(models.ReadReplyInfo(device, read, reply));
      ++tables;
    } else if (tables != 0 && std::regex_match(line, match, row)) {
      const auto field = command.valueInfo.extract(match[1]);
      ASSERT_FALSE(field.empty());
      EXPECT_EQ(match[2], Place(field.mapped()));
      EXPECT_EQ(match[4], LeftOut(match[1], field.mapped()));
      const auto value = reply.replyInfo.extract(match[1]);
      EXPECT_EQ(match[3], value.empty() ? "" : Place(value.mapped()));
      CheckValues(match[1], match[5]);
    }
  }
  expectAllNamed();
  EXPECT_EQ(tables, 6);
}

}  // namespace

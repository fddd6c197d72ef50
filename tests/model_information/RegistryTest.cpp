// Which family a device name selects, and which operations it does not answer.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/ReadClass.h"
#include "tests/model_information/Families.h"

namespace Ravik {
namespace {

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

class FamilyDeathTest : public testing::TestWithParam<FamilyCase> {};

// The report tells the family by its source unit.
std::string Report(const FamilyCase& family, const char* function, int line) {
  return std::string("src/naitive/SourceFiles/ModelInfomation/PrinterClass/") + family.name + ":" +
         std::to_string(line) + ": " + function + ": .*`false'";
}

TEST_P(FamilyDeathTest, OtherKeysEndTheProcess) {
  const FamilyCase& family = GetParam();
  const std::string command_report = Report(family, "ReadCommandInfo", family.command_line);
  const std::string reply_report = Report(family, "ReadReplyInfo", family.reply_line);
  CReadClass registry;
  CommandInfoVO command;
  ReplyInfoVO reply;
  for (int i = 0; i <= 14; ++i) {
    const auto key = static_cast<COMMAND_KEY>(i);
    if (family.command_fields.count(i) == 0) {
      EXPECT_DEATH(registry.ReadCommandInfo(family.device_name, key, command), command_report) << i;
    }
    if (family.reply_fields.count(i) == 0) {
      EXPECT_DEATH(registry.ReadReplyInfo(family.device_name, key, reply), reply_report) << i;
    }
  }
  for (const char* name : family.other_device_names) {
    EXPECT_DEATH(registry.ReadCommandInfo(name, READ_STATUS, command), command_report) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(All, FamilyDeathTest, testing::ValuesIn(Families()), FamilyName);

}  // namespace
}  // namespace Ravik

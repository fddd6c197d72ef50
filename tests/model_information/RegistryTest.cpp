// Which family a device name selects, and which operations it answers.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ModelInfomation/ModelInfomation.h"
#include "ModelInfomation/PrinterClass/Corvel.h"
#include "ModelInfomation/PrinterClass/Lunde.h"
#include "ModelInfomation/PrinterClass/Ostrel.h"
#include "ModelInfomation/PrinterClass/Parvane.h"
#include "ModelInfomation/PrinterClass/Tamsk.h"
#include "ModelInfomation/PrinterClass/TamskST.h"
#include "ModelInfomation/ReadClass.h"
#include "tests/model_information/Families.h"

namespace Ravik {
namespace {

template <typename Family>
bool IsA(const IPrinterClass* printer) {
  return dynamic_cast<const Family*>(printer) != nullptr;
}

TEST(Registry, DeviceNameSelectsTheFamily) {
  const struct {
    const char* device_name;
    bool (*is_expected)(const IPrinterClass*);
  } kCases[] = {
      {"ZARMO QM-R410 Series Comm Driver", IsA<COstrel>},
      {"QM-R410 Series", IsA<COstrel>},
      {"ZARMO QM-R210 Series Comm Driver", IsA<CParvane>},
      {"QM-R210 Series", IsA<CParvane>},
      {"ZARMO QM-R310 Series Comm Driver", IsA<CTamsk>},
      {"QM-R310 Series", IsA<CTamsk>},
      {"ZARMO QM-T84 Series Comm Driver", IsA<CTamskST>},
      {"QM-T84 Series", IsA<CTamskST>},
      {"ZARMO QM-T64 Series Comm Driver", IsA<CTamskST>},
      {"QM-T64 Series", IsA<CTamskST>},
      {"ZARMO QM-T44 Series Comm Driver", IsA<CLunde>},
      {"QM-T44 Series", IsA<CLunde>},
      {"ZARMO QM-V5 Series", IsA<CCorvel>},
      {"QM-V5 Series", IsA<CCorvel>},
      {"ZARMO QM-V7 Series", IsA<CCorvel>},
      {"QM-V7 Series", IsA<CCorvel>},
      {"ZARMO QM-V5PS Series", IsA<CCorvel>},
      {"ZARMO QM-V7PS Series", IsA<CCorvel>},
  };
  for (const auto& c : kCases) {
    const std::unique_ptr<IPrinterClass> printer(GetPrinterObject(c.device_name));
    EXPECT_TRUE(c.is_expected(printer.get())) << c.device_name;
  }
}

TEST(Registry, UnknownNamesLeaveTheDescriptorsAlone) {
  CModelInfomation& models = CModelInfomation::GetInstance();
  EXPECT_EQ(&models, &CModelInfomation::GetInstance());
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
  EXPECT_NE(known, nullptr);
  EXPECT_EQ(registry.GetPrinter("QM-T64 Series"), known);
  EXPECT_NE(registry.GetPrinter("QM-T84 Series"), known);
  EXPECT_EQ(registry.GetPrinter("QM-T65 Series"), nullptr);
  EXPECT_EQ(registry.GetPrinter("QM-T65 Series"), nullptr);
}

class FamilyTest : public testing::TestWithParam<FamilyCase> {
 protected:
  std::string Report(const char* function, int line) const {
    return std::string("src/naitive/SourceFiles/ModelInfomation/PrinterClass/") + GetParam().name +
           ":" + std::to_string(line) + ": " + function + ": .*`false'";
  }

  CReadClass registry_;
};

using FamilyDeathTest = FamilyTest;

TEST_P(FamilyTest, StatusReplyIsTheSameInEveryFamily) {
  std::vector<ReplyInfoVO> infos;
  EXPECT_TRUE(registry_.ReadStatusReplyInfo(GetParam().device_name, infos));
  EXPECT_EQ(infos.size(), 4U);
}

TEST_P(FamilyDeathTest, AnswersItsKeysAndNoOther) {
  const FamilyCase& family = GetParam();
  for (int number = 0; number <= 14; ++number) {
    const auto key = static_cast<COMMAND_KEY>(number);
    CommandInfoVO command;
    ReplyInfoVO reply;
    const auto command_fields = family.command_fields.find(number);
    if (command_fields == family.command_fields.end()) {
      EXPECT_DEATH(registry_.ReadCommandInfo(family.device_name, key, command),
                   Report("ReadCommandInfo", family.command_line))
          << number;
    } else {
      EXPECT_TRUE(registry_.ReadCommandInfo(family.device_name, key, command));
      EXPECT_EQ(command.valueInfo.size(), command_fields->second) << number;
    }
    const auto reply_fields = family.reply_fields.find(number);
    if (reply_fields == family.reply_fields.end()) {
      EXPECT_DEATH(registry_.ReadReplyInfo(family.device_name, key, reply),
                   Report("ReadReplyInfo", family.reply_line))
          << number;
    } else {
      EXPECT_TRUE(registry_.ReadReplyInfo(family.device_name, key, reply));
      EXPECT_EQ(reply.replyInfo.size(), reply_fields->second) << number;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, FamilyTest, testing::ValuesIn(Families()), FamilyName);
INSTANTIATE_TEST_SUITE_P(All, FamilyDeathTest, testing::ValuesIn(Families()), FamilyName);

}  // namespace
}  // namespace Ravik

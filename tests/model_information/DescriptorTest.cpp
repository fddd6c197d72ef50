// Filling of command and reply descriptors.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ReplyInfoVO.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
constexpr unsigned char kBytes[] = {1, 2, 3};

TEST(CommandInfo, FlagsKeepTheirArgumentsOrder) {
  CommandInfoVO info;
  info.SetAll(kBytes, 2, kBytes, 3, nullptr, 0, true, false, false);
  EXPECT_TRUE(info.isRemote && !info.isSVCmd && !info.isBGJC);
  info.SetAll(kBytes, 2, kBytes, 3, nullptr, 0, false, true, false);
  EXPECT_TRUE(!info.isRemote && info.isSVCmd && !info.isBGJC);
  info.SetAll(kBytes, 2, kBytes, 3, nullptr, 0, false, false, true);
  EXPECT_TRUE(!info.isRemote && !info.isSVCmd && info.isBGJC);
}

TEST(CommandInfo, ReplacesBytesAndAddsRows) {
  constexpr _t_COMMAND_INFOMATION_STRUCT kTable[] = {{"B", {1, 1, 7, VALUE_INTEGER}},
                                                     {"A", {0, 1, 8, VALUE_HEX}}};
  CommandInfoVO info;
  info.SetAll(kBytes, 2, kBytes, 3, kTable, 2, true, true, true);
  EXPECT_EQ(info.command, (Bytes{1, 2}));
  EXPECT_EQ(info.format, (Bytes{1, 2, 3}));
  ASSERT_EQ(info.valueInfo.size(), 2U);
  EXPECT_EQ(info.valueInfo.at("B").defaultValue, 7U);
  info.SetAll(nullptr, 2, kBytes, 0, nullptr, 2, true, true, true);
  EXPECT_EQ(info.command, Bytes{});
  EXPECT_EQ(info.format, Bytes{});
  EXPECT_EQ(info.valueInfo.size(), 2U) << "rows stay";
}

TEST(CommandInfoDeathTest, ANameTwiceEndsTheProcess) {
  constexpr _t_COMMAND_INFOMATION_STRUCT kTable[] = {{"A", {}}, {"A", {}}};
  CommandInfoVO info;
  EXPECT_DEATH(info.SetAll(kBytes, 2, kBytes, 3, kTable, 2, true, true, true),
               "src/naitive/SourceFiles/ModelInfomation/Summary/\\.\\./CommandInfoVO:172: "
               "SetCmdValueInfo: .*`result\\.second'");
}

TEST(ReplyInfo, KeepsRowsOfOneNameInTableOrder) {
  constexpr _t_REPLY_INFOMATION_STRUCT kTable[] = {
      {"A", {9, 1, 1, 2}}, {"0", {0, 1, 1, 2}}, {"A", {5, 1, 1, 2}}, {"A", {7, 1, 1, 2}}};
  ReplyInfoVO info;
  info.SetAll(kBytes, 1, kBytes + 1, 2, kBytes + 2, 1, kTable, 4);
  std::string positions;
  for (const auto& [name, field] : info.replyInfo) positions += std::to_string(field.position);
  EXPECT_EQ(positions, "0957");
  EXPECT_EQ(info.header, Bytes{1});
  EXPECT_EQ(info.notAvailable, (Bytes{2, 3}));
  EXPECT_EQ(info.auxiliary, Bytes{3});
  info.SetAll(nullptr, 1, kBytes, 0, nullptr, 3, kTable, 0);
  EXPECT_TRUE(info.header.empty() && info.notAvailable.empty() && info.auxiliary.empty());
  EXPECT_EQ(info.replyInfo.size(), 4U);
}

TEST(ReplyInfoDeathTest, WithoutATableTheProcessEnds) {
  ReplyInfoVO info;
  EXPECT_DEATH(info.SetAll(kBytes, 1, nullptr, 0, nullptr, 0, nullptr, 0),
               "src/naitive/SourceFiles/ModelInfomation/Summary/\\.\\./ReplyInfoVO:67: SetAll: "
               ".*`false'");
}

TEST(StatusReplySummry, AppendsOneDescriptorAFigure) {
  std::vector<ReplyInfoVO> infos(1);
  CStatusReplySummry::GetStatusReplyInfo(infos);
  std::ostringstream rows;
  for (const ReplyInfoVO& info : infos) {
    for (const auto& [name, field] : info.replyInfo) {
      rows << std::hex << +info.header.at(0) << std::dec << ' ' << name << ' ' << field.position
           << ' ' << field.length << ' ' << field.form << ' ' << field.valueType << '\n';
    }
  }
  EXPECT_EQ(infos.size(), 5U);
  EXPECT_EQ(rows.str(),
            "1 StatusCode 0 1 3 2\n"
            "2 ErrorCode 0 1 3 2\n"
            "4 WarningCode 0 1 3 2\n"
            "1f SerialNumber 0 10 3 0\n");
}

}  // namespace
}  // namespace Ravik

// Filling of command and reply descriptors.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {
namespace {

using Bytes = std::vector<unsigned char>;
constexpr unsigned char kBytes[] = {1, 2, 3};

TEST(CommandInfo, ReplacesBytesAndFlagsAndAddsRows) {
  constexpr _t_COMMAND_INFOMATION_STRUCT kTable[] = {{"B", {}}, {"A", {}}};
  CommandInfoVO info;
  info.SetAll(kBytes, 2, kBytes, 3, kTable, 2, true, false, false);
  EXPECT_EQ(info.command, (Bytes{1, 2}));
  EXPECT_EQ(info.format, (Bytes{1, 2, 3}));
  EXPECT_TRUE(info.isRemote && !info.isSVCmd && !info.isBGJC);
  info.SetAll(nullptr, 2, kBytes, 0, nullptr, 2, false, true, false);
  EXPECT_TRUE(info.command.empty() && info.format.empty());
  EXPECT_TRUE(!info.isRemote && info.isSVCmd && !info.isBGJC);
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
  EXPECT_TRUE(info.header == Bytes{1} && info.notAvailable == (Bytes{2, 3}));
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

}  // namespace
}  // namespace Ravik

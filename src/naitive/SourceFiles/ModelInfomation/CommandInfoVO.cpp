#include "ModelInfomation/CommandInfoVO.h"

#include "Library/RavikCommon/RavikAssert.h"

namespace Ravik {

void CommandInfoVO::SetAll(const unsigned char* commandBytes, unsigned int commandLength,
                           const unsigned char* formatBytes, unsigned int formatLength,
                           const _t_COMMAND_INFOMATION_STRUCT* table, unsigned int rowCount,
                           bool remote, bool sv, bool bgjc) {
  command.clear();
  if (commandBytes != nullptr) command.assign(commandBytes, commandBytes + commandLength);
  format.clear();
  if (formatBytes != nullptr) format.assign(formatBytes, formatBytes + formatLength);
  if (table != nullptr) {
    for (unsigned int i = 0; i < rowCount; ++i) SetCmdValueInfo(table[i].name, table[i].info);
  }
  isRemote = remote;
  isSVCmd = sv;
  isBGJC = bgjc;
}

void CommandInfoVO::SetCmdValueInfo(const std::string& name, const _t_COMMAND_INFOMATION& info) {
  const auto result = valueInfo.insert({name, info});
  if (result.second) return;
  ReportAssertion("result.second", "SetCmdValueInfo",
                  "src/naitive/SourceFiles/ModelInfomation/Summary/../CommandInfoVO", 172);
}

}  // namespace Ravik

#include "ModelInfomation/PrinterClass/Tamsk.h"

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/PrinterClass/HeaterRecordKeys.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {

namespace {

constexpr char kSource[] = "src/naitive/SourceFiles/ModelInfomation/PrinterClass/Tamsk";
constexpr unsigned char kDeviceCode = 0x37;

}  // namespace

void CTamsk::ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const {
  if (!ReadHeaterRecordCommandInfo(key, kDeviceCode, info)) {
    ReportAssertion("false", "ReadCommandInfo", kSource, 54);
  }
}

void CTamsk::ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const {
  if (!ReadHeaterRecordReplyInfo(key, info)) {
    ReportAssertion("false", "ReadReplyInfo", kSource, 74);
  }
}

void CTamsk::ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const {
  CStatusReplySummry::GetStatusReplyInfo(infos);
}

}  // namespace Ravik

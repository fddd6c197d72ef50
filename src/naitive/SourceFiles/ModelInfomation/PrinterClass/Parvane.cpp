#include "ModelInfomation/PrinterClass/Parvane.h"

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/PrinterClass/HeaterRecordKeys.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {

namespace {

constexpr char kSource[] = "src/naitive/SourceFiles/ModelInfomation/PrinterClass/Parvane";
constexpr unsigned char kDeviceCode = 0x37;

}  // namespace

void CParvane::ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const {
  if (!ReadHeaterRecordCommandInfo(key, kDeviceCode, info)) {
    ReportAssertion("false", "ReadCommandInfo", kSource, 55);
  }
}

void CParvane::ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const {
  if (!ReadHeaterRecordReplyInfo(key, info)) {
    ReportAssertion("false", "ReadReplyInfo", kSource, 77);
  }
}

void CParvane::ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const {
  CStatusReplySummry::GetStatusReplyInfo(infos);
}

}  // namespace Ravik

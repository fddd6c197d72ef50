#include "ModelInfomation/PrinterClass/Corvel.h"

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/Summary/CustomMediaSummaryTypeI.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {

namespace {

constexpr char kSource[] = "src/naitive/SourceFiles/ModelInfomation/PrinterClass/Corvel";
constexpr unsigned char kDeviceCode = 0x46;

}  // namespace

void CCorvel::ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeI::GetCmdInfoReadCustomMediaInfo1(kDeviceCode, info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummaryTypeI::GetCmdInfoReadCustomMediaName(info);
    case READ_FW_VERSION:
      return CCustomMediaSummaryTypeI::GetCmdInfoFWVersion(info);
    case WRITE_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeI::GetCmdInfoWriteCustomMediaInfo1(kDeviceCode, info);
    case WRITE_MEDIA_INITIALIZE:
      return CCustomMediaSummaryTypeI::GetCmdInfoWriteMediaInitialize(kDeviceCode, info);
    default:
      ReportAssertion("false", "ReadCommandInfo", kSource, 46);
  }
}

void CCorvel::ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeI::GetReplyInfoReadCustomMediaInfo1(info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummaryTypeI::GetReplyInfoReadCustomMediaName(info);
    case READ_FW_VERSION:
      return CCustomMediaSummaryTypeI::GetReplyInfoFWVersion(info);
    default:
      ReportAssertion("false", "ReadReplyInfo", kSource, 63);
  }
}

void CCorvel::ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const {
  CStatusReplySummry::GetStatusReplyInfo(infos);
}

}  // namespace Ravik

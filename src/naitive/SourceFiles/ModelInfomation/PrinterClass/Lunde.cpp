#include "ModelInfomation/PrinterClass/Lunde.h"

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/Summary/CustomMediaSummaryTypeD.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {

namespace {

constexpr char kSource[] = "src/naitive/SourceFiles/ModelInfomation/PrinterClass/Lunde";
constexpr unsigned char kDeviceCode = 0x38;

}  // namespace

void CLunde::ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeD::GetCmdInfoReadCustomMediaInfo1(kDeviceCode, info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummaryTypeD::GetCmdInfoReadCustomMediaName(info);
    case WRITE_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeD::GetCmdInfoWriteCustomMediaInfo1(kDeviceCode, info);
    case WRITE_MEDIA_INITIALIZE:
      return CCustomMediaSummaryTypeD::GetCmdInfoWriteMediaInitialize(kDeviceCode, info);
    default:
      ReportAssertion("false", "ReadCommandInfo", kSource, 42);
  }
}

void CLunde::ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummaryTypeD::GetReplyInfoReadCustomMediaInfo1(info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummaryTypeD::GetReplyInfoReadCustomMediaName(info);
    default:
      ReportAssertion("false", "ReadReplyInfo", kSource, 56);
  }
}

void CLunde::ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const {
  CStatusReplySummry::GetStatusReplyInfo(infos);
}

}  // namespace Ravik

#include "ModelInfomation/PrinterClass/TamskST.h"

#include "Library/RavikCommon/RavikAssert.h"
#include "ModelInfomation/Summary/CustomMediaSummary.h"
#include "printer_control/StatusReplySummry.h"

namespace Ravik {

namespace {

constexpr char kSource[] = "src/naitive/SourceFiles/ModelInfomation/PrinterClass/TamskST";
constexpr unsigned char kDeviceCode = 0x37;

}  // namespace

void CTamskST::ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo1(kDeviceCode, info);
    case READ_CUSTOMMEDIA_INFO3:
      return CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo3(kDeviceCode, info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummary::GetCmdInfoReadCustomMediaName(info);
    case WRITE_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo1_STAD(kDeviceCode, info);
    case WRITE_CUSTOMMEDIA_INFO3:
      return CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo3(kDeviceCode, info);
    case WRITE_MEDIA_INITIALIZE:
      return CCustomMediaSummary::GetCmdInfoWriteMediaInitialize(kDeviceCode, info);
    default:
      ReportAssertion("false", "ReadCommandInfo", kSource, 48);
  }
}

void CTamskST::ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      return CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo1_STAD(info);
    case READ_CUSTOMMEDIA_INFO3:
      return CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo3(info);
    case READ_CUSTOMMEDIA_NAME:
      return CCustomMediaSummary::GetReplyInfoReadCustomMediaName(info);
    default:
      ReportAssertion("false", "ReadReplyInfo", kSource, 65);
  }
}

void CTamskST::ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const {
  CStatusReplySummry::GetStatusReplyInfo(infos);
}

}  // namespace Ravik

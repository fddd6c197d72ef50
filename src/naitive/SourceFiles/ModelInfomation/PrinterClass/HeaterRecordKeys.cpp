#include "ModelInfomation/PrinterClass/HeaterRecordKeys.h"

#include "ModelInfomation/Summary/CustomMediaSummary.h"

namespace Ravik {

bool ReadHeaterRecordCommandInfo(COMMAND_KEY key, unsigned char deviceCode, CommandInfoVO& info) {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo1(deviceCode, info);
      return true;
    case READ_CUSTOMMEDIA_INFO2:
      CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo2(deviceCode, info);
      return true;
    case READ_CUSTOMMEDIA_INFO3:
      CCustomMediaSummary::GetCmdInfoReadCustomMediaInfo3(deviceCode, info);
      return true;
    case READ_CUSTOMMEDIA_NAME:
      CCustomMediaSummary::GetCmdInfoReadCustomMediaName(info);
      return true;
    case WRITE_CUSTOMMEDIA_INFO1:
      CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo1(deviceCode, info);
      return true;
    case WRITE_CUSTOMMEDIA_INFO2:
      CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo2(deviceCode, info);
      return true;
    case WRITE_CUSTOMMEDIA_INFO3:
      CCustomMediaSummary::GetCmdInfoWriteCustomMediaInfo3(deviceCode, info);
      return true;
    case WRITE_MEDIA_INITIALIZE:
      CCustomMediaSummary::GetCmdInfoWriteMediaInitialize(deviceCode, info);
      return true;
    default:
      return false;
  }
}

bool ReadHeaterRecordReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) {
  switch (key) {
    case READ_CUSTOMMEDIA_INFO1:
      CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo1(info);
      return true;
    case READ_CUSTOMMEDIA_INFO2:
      CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo2(info);
      return true;
    case READ_CUSTOMMEDIA_INFO3:
      CCustomMediaSummary::GetReplyInfoReadCustomMediaInfo3(info);
      return true;
    case READ_CUSTOMMEDIA_NAME:
      CCustomMediaSummary::GetReplyInfoReadCustomMediaName(info);
      return true;
    default:
      return false;
  }
}

}  // namespace Ravik

// Custom media commands of the record generation I.
#ifndef MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPEI_H_
#define MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPEI_H_

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Records have layout version 0 only; the firmware version can be read.
//
// Every operation fills a fresh descriptor; the device code goes into byte 0 of the variable part.
class CCustomMediaSummaryTypeI {
 public:
  static void GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteMediaInitialize(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaName(CommandInfoVO& info);
  static void GetCmdInfoFWVersion(CommandInfoVO& info);

  static void GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaName(ReplyInfoVO& info);
  static void GetReplyInfoFWVersion(ReplyInfoVO& info);
};

}  // namespace Ravik

#endif  // MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPEI_H_

// Custom media commands of the record generation D.
#ifndef MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPED_H_
#define MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPED_H_

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Records have layout version 0 only.
//
// Every operation fills a fresh descriptor; the device code goes into byte 0 of the variable part.
class CCustomMediaSummaryTypeD {
 public:
  static void GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteMediaInitialize(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaName(CommandInfoVO& info);

  static void GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaName(ReplyInfoVO& info);
};

}  // namespace Ravik

#endif  // MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARYTYPED_H_

// Custom media commands of the record generation with heaters.
#ifndef MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARY_H_
#define MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARY_H_

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Records have layout version 0 (Info1), version 1 (Info2) and version 128 (Info3, one block of
// bytes). Info1_STAD is layout version 0 with tension and feed settings of its own; its record is
// read by the command of Info1.
//
// Every operation fills a fresh descriptor; the device code goes into byte 0 of the variable part.
class CCustomMediaSummary {
 public:
  static void GetCmdInfoWriteCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteCustomMediaInfo1_STAD(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteCustomMediaInfo2(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteCustomMediaInfo3(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoWriteMediaInitialize(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaInfo1(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaInfo2(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaInfo3(unsigned char deviceCode, CommandInfoVO& info);
  static void GetCmdInfoReadCustomMediaName(CommandInfoVO& info);

  static void GetReplyInfoReadCustomMediaInfo1(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaInfo1_STAD(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaInfo2(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaInfo3(ReplyInfoVO& info);
  static void GetReplyInfoReadCustomMediaName(ReplyInfoVO& info);
};

}  // namespace Ravik

#endif  // MODELINFOMATION_SUMMARY_CUSTOMMEDIASUMMARY_H_

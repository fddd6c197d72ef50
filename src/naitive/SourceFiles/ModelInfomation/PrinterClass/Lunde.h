// The printer family Lunde: records of generation D.
#ifndef MODELINFOMATION_PRINTERCLASS_LUNDE_H_
#define MODELINFOMATION_PRINTERCLASS_LUNDE_H_

#include <vector>

#include "ModelInfomation/IPrinterClass.h"

namespace Ravik {

class CLunde : public IPrinterClass {
 public:
  void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const override;
  void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const override;
  void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const override;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_LUNDE_H_

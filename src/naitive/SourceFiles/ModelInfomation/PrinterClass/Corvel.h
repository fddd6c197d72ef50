// The printer family Corvel: records of generation I, and the firmware version.
#ifndef MODELINFOMATION_PRINTERCLASS_CORVEL_H_
#define MODELINFOMATION_PRINTERCLASS_CORVEL_H_

#include <vector>

#include "ModelInfomation/IPrinterClass.h"

namespace Ravik {

class CCorvel : public IPrinterClass {
 public:
  void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const override;
  void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const override;
  void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const override;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_CORVEL_H_

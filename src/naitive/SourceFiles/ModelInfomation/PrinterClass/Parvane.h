// The printer family Parvane: heater records in all three layout versions.
#ifndef MODELINFOMATION_PRINTERCLASS_PARVANE_H_
#define MODELINFOMATION_PRINTERCLASS_PARVANE_H_

#include <vector>

#include "ModelInfomation/IPrinterClass.h"

namespace Ravik {

class CParvane : public IPrinterClass {
 public:
  void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const override;
  void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const override;
  void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const override;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_PARVANE_H_

// The printer family Tamsk: heater records in all three layout versions.
#ifndef MODELINFOMATION_PRINTERCLASS_TAMSK_H_
#define MODELINFOMATION_PRINTERCLASS_TAMSK_H_

#include <vector>

#include "ModelInfomation/IPrinterClass.h"

namespace Ravik {

class CTamsk : public IPrinterClass {
 public:
  void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const override;
  void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const override;
  void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const override;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_TAMSK_H_

// The printer family TamskST: heater records with settings of its own in layout version 0.
#ifndef MODELINFOMATION_PRINTERCLASS_TAMSKST_H_
#define MODELINFOMATION_PRINTERCLASS_TAMSKST_H_

#include <vector>

#include "ModelInfomation/IPrinterClass.h"

namespace Ravik {

class CTamskST : public IPrinterClass {
 public:
  void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const override;
  void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const override;
  void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const override;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_TAMSKST_H_

// Interface of a printer family.
#ifndef MODELINFOMATION_IPRINTERCLASS_H_
#define MODELINFOMATION_IPRINTERCLASS_H_

#include <vector>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Fills fresh descriptors for the operations that the family's printers know. A key that the family
// does not answer ends the process.
class IPrinterClass {
 public:
  virtual ~IPrinterClass() = default;

  virtual void ReadCommandInfo(COMMAND_KEY key, CommandInfoVO& info) const = 0;
  virtual void ReadReplyInfo(COMMAND_KEY key, ReplyInfoVO& info) const = 0;

  // Appends the descriptors of the status reply.
  virtual void ReadStatusReplyInfo(std::vector<ReplyInfoVO>& infos) const = 0;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_IPRINTERCLASS_H_

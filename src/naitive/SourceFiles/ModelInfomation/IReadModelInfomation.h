// Interface of a reader of model information.
#ifndef MODELINFOMATION_IREADMODELINFOMATION_H_
#define MODELINFOMATION_IREADMODELINFOMATION_H_

#include <string>
#include <vector>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Every operation gives false, with the descriptor left alone, if no printer family has the device
// name. A key that the family does not answer ends the process.
class IReadModelInfomation {
 public:
  virtual ~IReadModelInfomation() = default;

  virtual bool ReadCommandInfo(const std::string& deviceName, COMMAND_KEY key,
                               CommandInfoVO& info) = 0;
  virtual bool ReadReplyInfo(const std::string& deviceName, COMMAND_KEY key, ReplyInfoVO& info) = 0;
  virtual bool ReadStatusReplyInfo(const std::string& deviceName,
                                   std::vector<ReplyInfoVO>& infos) = 0;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_IREADMODELINFOMATION_H_

// The door to all model information.
#ifndef MODELINFOMATION_MODELINFOMATION_H_
#define MODELINFOMATION_MODELINFOMATION_H_

#include <memory>
#include <string>
#include <vector>

#include "ModelInfomation/IReadModelInfomation.h"

namespace Ravik {

// Forwards to a registry that it makes on first use; see IReadModelInfomation for the operations.
// They also give false if there is no memory for the registry. For one thread.
class CModelInfomation {
 public:
  // The one instance, which lives from the first call to the end of the process.
  static CModelInfomation& GetInstance();

  bool ReadCommandInfo(const std::string& deviceName, COMMAND_KEY key, CommandInfoVO& info);
  bool ReadReplyInfo(const std::string& deviceName, COMMAND_KEY key, ReplyInfoVO& info);
  bool ReadStatusReplyInfo(const std::string& deviceName, std::vector<ReplyInfoVO>& infos);

 private:
  IReadModelInfomation* Reader();

  std::unique_ptr<IReadModelInfomation> reader_;  // null until first use
};

}  // namespace Ravik

#endif  // MODELINFOMATION_MODELINFOMATION_H_

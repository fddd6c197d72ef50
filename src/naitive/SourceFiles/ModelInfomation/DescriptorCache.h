// Descriptors that have been read once.
#ifndef MODELINFOMATION_DESCRIPTORCACHE_H_
#define MODELINFOMATION_DESCRIPTORCACHE_H_

#include <deque>
#include <string>

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Asks CModelInfomation for each descriptor once and keeps it, since filling one costs more than
// everything that is done with it. For one thread.
class DescriptorCache {
 public:
  // The one instance, which lives from the first call to the end of the process.
  static DescriptorCache& GetInstance();

  // The descriptor, owned by the cache and never changed; null if no printer family has the device
  // name. A key that the family does not answer ends the process.
  const CommandInfoVO* CommandInfo(const std::string& deviceName, COMMAND_KEY key);
  const ReplyInfoVO* ReplyInfo(const std::string& deviceName, COMMAND_KEY key);

 private:
  template <typename Descriptor>
  struct Entry {
    COMMAND_KEY key;
    std::string deviceName;
    Descriptor descriptor;
  };

  // Few: a worker has to do with few printers. They stay where they are.
  std::deque<Entry<CommandInfoVO>> commands_;
  std::deque<Entry<ReplyInfoVO>> replies_;
};

}  // namespace Ravik

#endif  // MODELINFOMATION_DESCRIPTORCACHE_H_

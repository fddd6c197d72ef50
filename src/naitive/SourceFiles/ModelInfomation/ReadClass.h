// The registry: finds a printer's family by its device name.
#ifndef MODELINFOMATION_READCLASS_H_
#define MODELINFOMATION_READCLASS_H_

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ModelInfomation/IPrinterClass.h"
#include "ModelInfomation/IReadModelInfomation.h"

namespace Ravik {

// A new family object, owned by the caller, for a device name that matches whole and in case; null
// for any other name.
IPrinterClass* GetPrinterObject(const std::string& deviceName);

// Keeps the family object of every device name that it was asked for.
class CReadClass : public IReadModelInfomation {
 public:
  // The family object, owned by the registry; null for an unknown name, which is looked up once.
  IPrinterClass* GetPrinter(const std::string& deviceName);

  bool ReadCommandInfo(const std::string& deviceName, COMMAND_KEY key,
                       CommandInfoVO& info) override;
  bool ReadReplyInfo(const std::string& deviceName, COMMAND_KEY key, ReplyInfoVO& info) override;
  bool ReadStatusReplyInfo(const std::string& deviceName, std::vector<ReplyInfoVO>& infos) override;

 private:
  std::map<std::string, std::unique_ptr<IPrinterClass>> printers_;  // null for an unknown name
};

// A new registry, owned by the caller; null if there is no memory for it.
IReadModelInfomation* GetModelInfomationObject();

}  // namespace Ravik

#endif  // MODELINFOMATION_READCLASS_H_

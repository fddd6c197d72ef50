// The figures of the status reply as reply descriptors.
#ifndef PRINTER_CONTROL_STATUSREPLYSUMMRY_H_
#define PRINTER_CONTROL_STATUSREPLYSUMMRY_H_

#include <vector>

#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

class CStatusReplySummry {
 public:
  // Appends a descriptor for status code, error code, warning code and serial number, in this
  // order; its header is the field's id.
  static void GetStatusReplyInfo(std::vector<ReplyInfoVO>& infos);
};

}  // namespace Ravik

#endif  // PRINTER_CONTROL_STATUSREPLYSUMMRY_H_

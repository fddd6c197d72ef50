// The operations of the families whose heater records have all three layout versions.
#ifndef MODELINFOMATION_PRINTERCLASS_HEATERRECORDKEYS_H_
#define MODELINFOMATION_PRINTERCLASS_HEATERRECORDKEYS_H_

#include "ModelInfomation/CommandInfoVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/ReplyInfoVO.h"

namespace Ravik {

// Fill a fresh descriptor; false, with the descriptor left alone, for a key without one.
bool ReadHeaterRecordCommandInfo(COMMAND_KEY key, unsigned char deviceCode, CommandInfoVO& info);
bool ReadHeaterRecordReplyInfo(COMMAND_KEY key, ReplyInfoVO& info);

}  // namespace Ravik

#endif  // MODELINFOMATION_PRINTERCLASS_HEATERRECORDKEYS_H_

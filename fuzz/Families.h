// One device name of every printer family, and every operation.
#ifndef FUZZ_FAMILIES_H_
#define FUZZ_FAMILIES_H_

#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/DeviceName.h"

namespace fuzz {

inline constexpr const char* kDeviceNames[] = {
    Ravik::kDevIdMDLOstrel,  Ravik::kDevIdMDLParvane, Ravik::kDevIdMDLTamsk,
    Ravik::kDevIdMDLTamskST, Ravik::kDevIdMDLLunde44, Ravik::kDevIdMDLCorvel44,
};

inline constexpr Ravik::COMMAND_KEY kCommandKeys[] = {
    Ravik::READ_CUSTOMMEDIA_INFO1,
    Ravik::READ_CUSTOMMEDIA_INFO2,
    Ravik::READ_CUSTOMMEDIA_INFO3,
    Ravik::READ_CUSTOMMEDIA_NAME,
    Ravik::READ_STATUS,
    Ravik::READ_FW_VERSION,
    Ravik::WRITE_CUSTOMMEDIA_INFO1,
    Ravik::WRITE_CUSTOMMEDIA_INFO2,
    Ravik::WRITE_CUSTOMMEDIA_INFO3,
    Ravik::WRITE_MEDIA_INITIALIZE,
};

}  // namespace fuzz

#endif  // FUZZ_FAMILIES_H_

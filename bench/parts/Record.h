// The record operations that are measured, and what a printer replies to them.
#ifndef BENCH_PARTS_RECORD_H_
#define BENCH_PARTS_RECORD_H_

#include <string>
#include <vector>

#include "GantryCore/CommandVO.h"
#include "GantryCore/ParameterMapVO.h"
#include "ModelInfomation/CommandKey.h"
#include "ModelInfomation/DeviceName.h"

namespace Bench {

// One kind of command, or of reply.
struct Operation {
  const char* name;
  Ravik::COMMAND_KEY key;
  const char* device_name;
  int layout;
};

inline constexpr Operation kReads[] = {
    {"Layout0Heater", Ravik::READ_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLOstrel, 0},
    {"Layout1Heater", Ravik::READ_CUSTOMMEDIA_INFO2, Ravik::kDevIdMDLOstrel, 1},
    {"Layout128Heater", Ravik::READ_CUSTOMMEDIA_INFO3, Ravik::kDevIdMDLOstrel, 128},
    {"Layout0T84", Ravik::READ_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLTamskST, 0},
    {"Layout0T44", Ravik::READ_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLLunde44, 0},
    {"Layout0V5", Ravik::READ_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLCorvel44, 0},
    {"Names", Ravik::READ_CUSTOMMEDIA_NAME, Ravik::kDevIdMDLOstrel, 0},
    {"Firmware", Ravik::READ_FW_VERSION, Ravik::kDevIdMDLCorvel44, 0},
};

inline constexpr Operation kWrites[] = {
    {"Layout0Heater", Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLOstrel, 0},
    {"Layout1Heater", Ravik::WRITE_CUSTOMMEDIA_INFO2, Ravik::kDevIdMDLOstrel, 1},
    {"Layout128Heater", Ravik::WRITE_CUSTOMMEDIA_INFO3, Ravik::kDevIdMDLOstrel, 128},
    {"Layout0T84", Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLTamskST, 0},
    {"Layout0T44", Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLLunde44, 0},
    {"Layout0V5", Ravik::WRITE_CUSTOMMEDIA_INFO1, Ravik::kDevIdMDLCorvel44, 0},
    {"Initialize", Ravik::WRITE_MEDIA_INITIALIZE, Ravik::kDevIdMDLOstrel, 0},
};

// The parameters of a request that reads record 3.
Ravik::ParameterMapVO ReadParameters(const Operation& read);

// The command for a read, and the reply of a new printer of that family to it.
Ravik::CommandVO ReadCommand(const Operation& read);
Ravik::CommandVO Reply(const Operation& read);

// What the printer's reply says. Ends the process when it cannot be analysed.
Ravik::ParameterMapVO Values(const Operation& read, const Ravik::CommandVO& reply);

// The parameters of a request that writes every setting of record 3 as it is.
Ravik::ParameterMapVO WriteParameters(const Operation& write);

}  // namespace Bench

#endif  // BENCH_PARTS_RECORD_H_

// Device names of the supported printers.
#ifndef MODELINFOMATION_DEVICENAME_H_
#define MODELINFOMATION_DEVICENAME_H_

namespace Ravik {

// The name that the driver gives, then (MDL) the printer's own model name, where there is one.
inline constexpr char kDevIdOstrel[] = "ZARMO QM-R410 Series Comm Driver";
inline constexpr char kDevIdMDLOstrel[] = "QM-R410 Series";
inline constexpr char kDevIdParvane[] = "ZARMO QM-R210 Series Comm Driver";
inline constexpr char kDevIdMDLParvane[] = "QM-R210 Series";
inline constexpr char kDevIdTamsk[] = "ZARMO QM-R310 Series Comm Driver";
inline constexpr char kDevIdMDLTamsk[] = "QM-R310 Series";
inline constexpr char kDevIdTamskST[] = "ZARMO QM-T84 Series Comm Driver";
inline constexpr char kDevIdMDLTamskST[] = "QM-T84 Series";
inline constexpr char kDevIDBrevik[] = "ZARMO QM-T64 Series Comm Driver";
inline constexpr char kDevIdMDLBrevik[] = "QM-T64 Series";
inline constexpr char kDevIDLunde44[] = "ZARMO QM-T44 Series Comm Driver";
inline constexpr char kDevIdMDLLunde44[] = "QM-T44 Series";
inline constexpr char kDevIDCorvel44[] = "ZARMO QM-V5 Series";
inline constexpr char kDevIdMDLCorvel44[] = "QM-V5 Series";
inline constexpr char kDevIDCorvel64[] = "ZARMO QM-V7 Series";
inline constexpr char kDevIdMDLCorvel64[] = "QM-V7 Series";
inline constexpr char kDevIDCorvelPS44[] = "ZARMO QM-V5PS Series";
inline constexpr char kDevIDCorvelPS64[] = "ZARMO QM-V7PS Series";

}  // namespace Ravik

#endif  // MODELINFOMATION_DEVICENAME_H_

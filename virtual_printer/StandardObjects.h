// The standard objects by which printers are found.
#ifndef VIRTUAL_PRINTER_STANDARDOBJECTS_H_
#define VIRTUAL_PRINTER_STANDARDOBJECTS_H_

#include <string_view>

#include "virtual_printer/Ber.h"

namespace VirtualPrinter {

enum class StandardObject {
  kSysDescr,
  kHrDeviceType,
  kHrDeviceDescr,
  kPrtGeneralSerialNumber,
  kPpmPrinterIeee1284DeviceId,
  kNone,
};

// kNone for an object that is none of them.
StandardObject FindStandardObject(const ObjectId& object);

// By its name in the MIB; kNone for another text.
StandardObject FindStandardObject(std::string_view name);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_STANDARDOBJECTS_H_

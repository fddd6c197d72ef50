// The objects by which printers are found with SNMP.
#ifndef PORT_DRIVER_NETWORK_SEARCH_OBJECTS_H_
#define PORT_DRIVER_NETWORK_SEARCH_OBJECTS_H_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

#include "port_driver/FoundPrinter.h"

namespace ZIOP {

struct SearchedObject {
  uint32_t name[15];                // the object identifier
  std::size_t length;               // sub-identifiers in it
  std::string FoundPrinter::*text;  // what its value tells; of several values the longest counts
  bool isDetail;                    // asked only of who has answered
  const char* title;                // in a trace
};

// A request of SNMPv1 fails as a whole when one of its objects is missing, so each is asked for by
// itself. The index of the identifiers is that of a printer in the Printer Port Monitor MIB, which
// need not be 1.
constexpr SearchedObject kSearchedObjects[] = {
    // ppmPrinterIEEE1284DeviceId (PWG 5107.1), hrDeviceDescr (RFC 2790), sysDescr (RFC 1213)
    {{1, 3, 6, 1, 4, 1, 2699, 1, 2, 1, 2, 1, 1, 3, 1},
     15,
     &FoundPrinter::deviceId,
     false,
     "ppmPrinterIEEE1284DeviceId.1"},
    {{1, 3, 6, 1, 2, 1, 25, 3, 2, 1, 3, 1}, 12, &FoundPrinter::model, false, "hrDeviceDescr.1"},
    {{1, 3, 6, 1, 2, 1, 1, 1, 0}, 9, &FoundPrinter::description, false, "sysDescr.0"},
    // prtGeneralSerialNumber (RFC 3805), and the identifiers under further indices
    {{1, 3, 6, 1, 2, 1, 43, 5, 1, 1, 17, 1},
     12,
     &FoundPrinter::serial,
     true,
     "prtGeneralSerialNumber.1"},
    {{1, 3, 6, 1, 4, 1, 2699, 1, 2, 1, 2, 1, 1, 3, 2},
     15,
     &FoundPrinter::deviceId,
     true,
     "ppmPrinterIEEE1284DeviceId.2"},
    {{1, 3, 6, 1, 4, 1, 2699, 1, 2, 1, 2, 1, 1, 3, 3},
     15,
     &FoundPrinter::deviceId,
     true,
     "ppmPrinterIEEE1284DeviceId.3"},
};
constexpr std::size_t kSearchedObjectCount = std::size(kSearchedObjects);

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_OBJECTS_H_

// Searches for printers, run as the supported-printer dictionary asks for them.
#ifndef PORT_DRIVER_DISCOVERY_H_
#define PORT_DRIVER_DISCOVERY_H_

#include "corefoundation/Foundation.h"

namespace ZIOP {

// Runs the searches that "Discovery" in information asks for, at the same time, and adds a record
// for each printer that they find and that records, made by MakePrinterRecord, does not hold yet:
// first the printing system's queues, then the network, then local devices. Blocks for the time
// that the settings give all searches together. Failures are lines on standard error. Where no
// search is asked for, nothing is loaded and nothing is waited for.
void AppendFoundPrinters(CFDictionaryRef information, CFMutableArrayRef records);

}  // namespace ZIOP

#endif  // PORT_DRIVER_DISCOVERY_H_

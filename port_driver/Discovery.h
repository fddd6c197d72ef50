// Searches for printers, run as the supported-printer dictionary asks for them. They and what makes
// one list of their findings are a module beside the driver, so that a request that does not search
// loads none of it.
#ifndef PORT_DRIVER_DISCOVERY_H_
#define PORT_DRIVER_DISCOVERY_H_

#include "corefoundation/Foundation.h"

extern "C" {

// What the module exports: AppendFoundPrinters. Throws nothing; reports a failure with ReportLine.
__attribute__((visibility("default"))) void ZIOPDiscover(CFDictionaryRef information,
                                                         CFMutableArrayRef records) noexcept;

}  // extern "C"

namespace ZIOP {

// Runs the searches that "Discovery" in information asks for, at the same time, and adds a record
// for each printer that they find and that records, made by MakePrinterRecord, does not hold yet:
// first the printing system's queues, then the network, then local devices. Blocks for the time
// that the settings give all searches together. Failures are lines on standard error. Where no
// search is asked for, nothing is loaded and nothing is waited for.
void AppendFoundPrinters(CFDictionaryRef information, CFMutableArrayRef records);

}  // namespace ZIOP

#endif  // PORT_DRIVER_DISCOVERY_H_

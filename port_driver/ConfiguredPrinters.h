// Printers that the supported-printer dictionary names itself.
#ifndef PORT_DRIVER_CONFIGUREDPRINTERS_H_
#define PORT_DRIVER_CONFIGUREDPRINTERS_H_

#include "corefoundation/Foundation.h"

namespace ZIOP {

// Adds a printer record for each entry of the array "Printers" in information, in its order. An
// entry holds InfoTargetName, InfoPrinterName and DeviceURI, all strings; one that lacks any of
// them or whose URI cannot be read is left out, with one line on standard error that says why.
void AppendConfiguredPrinters(CFDictionaryRef information, CFMutableArrayRef records);

}  // namespace ZIOP

#endif  // PORT_DRIVER_CONFIGUREDPRINTERS_H_

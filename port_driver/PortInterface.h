// The port I/O interface of the plug-in.
#ifndef PORT_DRIVER_PORTINTERFACE_H_
#define PORT_DRIVER_PORTINTERFACE_H_

#include "printer_io/ZIOPlugin.h"

namespace ZIOP {

// A new interface, which its release slot destroys. The slots keep the contracts of ZIOPortTable;
// calls out of order and unusable arguments are refused with DriverCode::kParameter. Failures are
// told to the error callback, on the calling thread, before the slot returns.
ZIOPortInterface* MakePortInterface();

}  // namespace ZIOP

#endif  // PORT_DRIVER_PORTINTERFACE_H_

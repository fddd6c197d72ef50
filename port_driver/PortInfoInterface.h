// The port-information interface of the plug-in.
#ifndef PORT_DRIVER_PORTINFOINTERFACE_H_
#define PORT_DRIVER_PORTINFOINTERFACE_H_

#include "printer_io/ZIOPlugin.h"

namespace ZIOP {

// A new interface, which its release slot destroys. The slots keep the contracts of
// ZIOPortInfoTable. The interface has no error callback: failures are lines on standard error.
ZIOPortInfoInterface* MakePortInfoInterface();

}  // namespace ZIOP

#endif  // PORT_DRIVER_PORTINFOINTERFACE_H_

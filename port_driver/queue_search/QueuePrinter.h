// From a queue to its printer.
#ifndef PORT_DRIVER_QUEUE_SEARCH_QUEUEPRINTER_H_
#define PORT_DRIVER_QUEUE_SEARCH_QUEUEPRINTER_H_

#include <vector>

#include "port_driver/FoundPrinter.h"
#include "port_driver/queue_search/Queue.h"

namespace ZIOP {

// The printer behind a queue, without its address, which is not looked up.
//
// A device URI of the schemes socket, ipp, ipps and lpd gives the host of a network port; socket
// gives the raw port too, and those of the options that the port has and takes. A USB device is
// that one of devices, the local ones with their identifiers, which has the same serial number and
// model; the serial number counts where both give one. Throws DriverError where the printer cannot
// be reached; what() says why, without any of the URI but its scheme, as it may hold a password.
//
// The server's own printer-uuid names the queue, not the device, and is no identity of a printer.
FoundPrinter PrinterOfQueue(const Queue& queue, const std::vector<FoundPrinter>& devices);

// Whether the queue's printer is to be found among local devices.
bool IsOnUsb(const Queue& queue);

}  // namespace ZIOP

#endif  // PORT_DRIVER_QUEUE_SEARCH_QUEUEPRINTER_H_

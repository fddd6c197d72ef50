// Search for printers on local ports.
#ifndef PORT_DRIVER_LOCALSEARCH_H_
#define PORT_DRIVER_LOCALSEARCH_H_

#include <string>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/FoundPrinter.h"

namespace ZIOP {

// Appends the printers behind the device nodes /dev/usb/lp* and /dev/usblp*, with their IEEE 1284
// device identifiers and file:// URIs, in any order. Nodes that are no character devices, or that
// tell no identifier, are passed over. root stands before every path; it is empty but in tests.
//
// The kernel keeps the identifier that the printer gave when it was plugged in; where it shows it
// in sysfs, the node is not opened, so that the search neither waits for a printer nor takes it
// away from who prints. Otherwise the node is asked, without waiting for it to become free; no more
// are asked once the deadline has passed. How long a printer may take to answer is the kernel's own
// bound.
void SearchLocalPorts(const std::string& root, const Deadline& deadline,
                      std::vector<FoundPrinter>& found);

}  // namespace ZIOP

#endif  // PORT_DRIVER_LOCALSEARCH_H_

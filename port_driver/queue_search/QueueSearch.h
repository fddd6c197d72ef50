// Search for the printers that have a queue in the printing system.
#ifndef PORT_DRIVER_QUEUE_SEARCH_QUEUESEARCH_H_
#define PORT_DRIVER_QUEUE_SEARCH_QUEUESEARCH_H_

#include <string>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/FoundPrinter.h"

namespace ZIOP {

// Appends the printers behind the queues of the user's print server, under the queues' names and in
// their order; a printer that has several queues is there as often. Classes are passed over; queues
// whose printers cannot be reached are left out, with one line on standard error for all of them.
// Blocks until the deadline at most. Throws DriverError when the server does not give its queues.
void SearchQueues(const std::vector<std::string>& addresses, const Deadline& deadline,
                  std::vector<FoundPrinter>& found);

}  // namespace ZIOP

#endif  // PORT_DRIVER_QUEUE_SEARCH_QUEUESEARCH_H_

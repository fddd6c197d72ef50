// The messages by which a print server is asked for its queues: the operation CUPS-Get-Printers in
// the encoding of RFC 8010.
#ifndef PORT_DRIVER_QUEUE_SEARCH_QUEUEMESSAGE_H_
#define PORT_DRIVER_QUEUE_SEARCH_QUEUEMESSAGE_H_

#include <cups/ipp.h>

#include <memory>
#include <string_view>
#include <vector>

#include "port_driver/queue_search/Queue.h"

namespace ZIOP {

using IppMessage = std::unique_ptr<ipp_t, void (*)(ipp_t*)>;

// Asks for the queues that the user of this process may see.
IppMessage MakeQueueRequest();

// The queues of the answer, whose bytes may be any. Throws DriverError for what is no such answer
// and for an error of the server's, but an answer that there are no queues.
std::vector<Queue> ReadQueueAnswer(std::string_view bytes);

}  // namespace ZIOP

#endif  // PORT_DRIVER_QUEUE_SEARCH_QUEUEMESSAGE_H_

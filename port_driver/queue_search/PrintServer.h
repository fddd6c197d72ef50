// The printing system's server.
#ifndef PORT_DRIVER_QUEUE_SEARCH_PRINTSERVER_H_
#define PORT_DRIVER_QUEUE_SEARCH_PRINTSERVER_H_

#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/queue_search/Queue.h"

namespace ZIOP {

// Longest answer that is read, in bytes.
constexpr std::size_t kMaximumAnswerLength = 4 << 20;

// Asks the server that the library takes for this user's (environment variable CUPS_SERVER, the
// files client.conf, else the machine's own) for its queues. Throws DriverError when there is none,
// when it refuses, and when it has not answered by the deadline.
//
// Before it comes to a wait that it lets its caller bound, the library reads files, asks the user
// data base and resolves a name. So it works in a thread of its own. At the deadline the connection
// is shut down, and the thread is left to end by itself: it shares nothing with its caller any
// more, and its code stays loaded until the process ends. While it does not end, no other search
// begins. Signals that the caller has blocked are blocked in the thread, and SIGPIPE is anyway.
std::vector<Queue> AskForQueues(const Deadline& deadline);

}  // namespace ZIOP

#endif  // PORT_DRIVER_QUEUE_SEARCH_PRINTSERVER_H_

// From the queues to their printers, with what is left out.
#include "port_driver/queue_search/QueueSearch.h"

#include <algorithm>

#include "port_driver/DriverError.h"
#include "port_driver/LocalSearch.h"
#include "port_driver/queue_search/PrintServer.h"
#include "port_driver/queue_search/QueuePrinter.h"
#include "util/Diagnostics.h"

namespace ZIOP {

void SearchQueues(const std::vector<std::string>& /*addresses*/, const Deadline& deadline,
                  std::vector<FoundPrinter>& found) {
  const std::vector<Queue> queues = AskForQueues(deadline);
  std::vector<FoundPrinter> devices;
  if (std::any_of(queues.begin(), queues.end(), IsOnUsb)) {
    SearchLocalPorts("", deadline, devices);
  }
  std::string left_out;
  for (const Queue& queue : queues) {
    try {
      if (!queue.isClass) {
        found.push_back(PrinterOfQueue(queue, devices));
      }
    } catch (const DriverError& error) {
      left_out += (left_out.empty() ? "\"" : ", \"") + Ravik::Printable(queue.name) + "\" (" +
                  error.what() + ")";
    }
  }
  if (!left_out.empty()) {
    Ravik::ReportLine("ZIOP", "printing system: left out: " + left_out);
  }
}

}  // namespace ZIOP

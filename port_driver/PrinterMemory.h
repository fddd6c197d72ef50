// Printers that searches on the network found within the last day.
//
// A printer that does not answer one search would be off the list, and what is off the list cannot
// be opened. So printers of the network are listed for a day after they answered last. Queues and
// local devices are not remembered: who is asked for them always knows.
#ifndef PORT_DRIVER_PRINTERMEMORY_H_
#define PORT_DRIVER_PRINTERMEMORY_H_

#include <chrono>
#include <string>
#include <vector>

#include "port_driver/FoundPrinter.h"
#include "port_driver/SupportedModels.h"

namespace ZIOP {

// Printers that are remembered; of more the ones that were found last.
constexpr std::size_t kMaximumRemembered = 1000;

// Remembers those of found that are supported, from now on, fills in their texts that came last
// time and got lost this time, and returns the printers that are remembered and were not found
// again: none with an address or a serial number of one that was, none that was asked for by an
// entry that is no longer in addresses, none that is no longer supported.
//
// The memory is the key "networkPrinters" of the preferences of an application "ZIOP", an array of
// dictionaries; what in it is damaged, or is from more than a day ago or from the future, counts as
// absent. Two that remember at the same time may forget what the other has found.
std::vector<FoundPrinter> RecallPrinters(
    std::vector<FoundPrinter>& found, const std::vector<std::string>& addresses,
    const SupportedModels& models,
    std::chrono::system_clock::time_point now = std::chrono::system_clock::now());

}  // namespace ZIOP

#endif  // PORT_DRIVER_PRINTERMEMORY_H_

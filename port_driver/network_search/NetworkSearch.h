// Finds printers on the network with SNMP.
#ifndef PORT_DRIVER_NETWORK_SEARCH_NETWORKSEARCH_H_
#define PORT_DRIVER_NETWORK_SEARCH_NETWORKSEARCH_H_

#include <string>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/FoundPrinter.h"

namespace ZIOP {

// Tries in a search. With every fifth request and every fifth answer lost, one object of one
// printer stays unanswered in 0.36^15 of the searches, less than one in a million.
constexpr int kSearchTries = 15;

// Asks all addresses (SearchAddress.h) at once for kSearchedObjects, again and again until they
// have answered, at moments that spread over the time: soon at first, as losses are mostly single
// ones, and further and further apart. Listens until the deadline, and ends earlier only when
// everybody has answered everything and nobody was asked by broadcast. Appends the printers; an
// address that cannot be read, resolved or sent to is reported with one line on standard error.
// Throws DriverError when the system gives no descriptor or no randomness to begin with, and
// std::bad_alloc.
void SearchNetwork(const std::vector<std::string>& addresses, const Deadline& deadline,
                   std::vector<FoundPrinter>& found);

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_NETWORKSEARCH_H_

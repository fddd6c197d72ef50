// Where a search on the network asks, as the supported-printer list gives it:
//
//   HOST[:PORT]   HOST is a name, an IPv4 address, or an IPv6 address in brackets; brackets are
//                 not needed without a port. An IPv6 address may end in "%" and its zone.
#ifndef PORT_DRIVER_NETWORK_SEARCH_SEARCHADDRESS_H_
#define PORT_DRIVER_NETWORK_SEARCH_SEARCHADDRESS_H_

#include <cstdint>
#include <string>

namespace ZIOP {

struct SearchAddress {
  std::string entry;    // the text that it was read from
  std::string host;     // without brackets, ready for getaddrinfo
  uint16_t port = 161;  // UDP, 1 to 65535

  // Throws DriverError (kParameter) for a text of another form.
  static SearchAddress Parse(const std::string& text);

  // Whether host is an address, so that resolving it waits for nobody. "192.0.2.256" is a name.
  bool isNumeric() const;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_SEARCHADDRESS_H_

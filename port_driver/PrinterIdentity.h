// What tells one printer from another.
#ifndef PORT_DRIVER_PRINTERIDENTITY_H_
#define PORT_DRIVER_PRINTERIDENTITY_H_

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "port_driver/DeviceURI.h"

namespace ZIOP {

// Numeric addresses of hosts, by the host as a device URI gives it, as far as they are known.
using HostAddresses = std::map<std::string, std::vector<std::string>>;

// Two printers are one when they are at the same place, or when they are of the same model and have
// the same serial number or the same UUID.
//
// A place is the path of a device's node or a numeric address with each port of the URI that is not
// the usual one: what is opened there is one device, whatever it says of itself. So print servers
// have a printer on each of several ports; and a search, which knows the SNMP agent's port alone,
// finds what is configured with both. IPv4 addresses mapped into IPv6 are IPv4 addresses; a
// link-local address counts with its zone, and not without. A host whose address is not known is
// its own name.
//
// A serial number is only as good as its maker: it is ignored unless it has 5 to 64 printable ASCII
// characters, with at least three different ones and a digit among them, and is no row of ascending
// digits. So "0", "000000", "XXXXXXXX", "UNKNOWN" and "12345678" tell nothing, and
// printers that share them are told apart by their places. Letter case does not count. A UUID has
// 32 hexadecimal digits, at least three of them different; its punctuation does not count.
struct PrinterIdentity {
  std::vector<std::string> places;
  std::string serial;  // empty: none to be relied on
  std::string uuid;    // empty: none to be relied on

  // What tells the printer from all others in a name, and stays with it whichever others there are:
  // the serial number, else the UUID, else the place.
  std::string tag;

  // address may be empty; otherwise it counts along with those of the URI's host.
  static PrinterIdentity Of(const DeviceURI& uri, const HostAddresses& hosts,
                            std::string_view address = {}, std::string_view serial = {},
                            std::string_view uuid = {});
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_PRINTERIDENTITY_H_

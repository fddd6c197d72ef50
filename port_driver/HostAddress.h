// Socket addresses of a printer's host.
#ifndef PORT_DRIVER_HOSTADDRESS_H_
#define PORT_DRIVER_HOSTADDRESS_H_

#include <sys/socket.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

struct HostAddress {
  sockaddr_storage storage;
  socklen_t length;

  int family() const { return storage.ss_family; }
  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&storage); }
  sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage); }

  // Whether other is the same address with the same port, whatever the scope.
  bool IsSame(const HostAddress& other) const;

  // Puts in the port, in host byte order.
  void SetPort(uint16_t port);
  HostAddress WithPort(uint16_t port) const;
};

// As many addresses of a host are tried at most: a port has a socket open for each.
inline constexpr std::size_t kMaximumAddresses = 16;

// Addresses of host in the order in which they are to be tried, 1 to kMaximumAddresses, without a
// port. Numeric hosts do not block. Names go to the system's resolver, whose own time-outs are no
// bound that a caller could rely on, so it works in a thread of its own, which is left to itself
// when the deadline passes or the wait is cancelled: it shares nothing with its caller any more,
// and its code stays loaded until the process ends. With 16 of these under way no name is taken.
// Throws DriverError.
std::vector<HostAddress> ResolveHost(const std::string& host, const Deadline& deadline,
                                     Waiter& waiter);

}  // namespace ZIOP

#endif  // PORT_DRIVER_HOSTADDRESS_H_

// Who may answer a request that was sent to an address.
#ifndef PORT_DRIVER_NETWORK_SEARCH_RESPONDENTS_H_
#define PORT_DRIVER_NETWORK_SEARCH_RESPONDENTS_H_

#include <cstdint>
#include <vector>

#include "port_driver/HostAddress.h"

namespace ZIOP {

// An IPv4 network, in network byte order.
struct Network {
  uint32_t address;
  uint32_t mask;
};

// The networks that the machine is on.
std::vector<Network> LocalNetworks();

// A host answers for itself. A broadcast address is answered by the hosts of its network: that of
// the interface whose broadcast address it is, every interface's for 255.255.255.255, else the
// /24 network of an address that ends in 255. The link-local multicast addresses of IPv6 are
// answered by link-local addresses of the same zone.
class Respondents {
 public:
  // address has its port; local is what LocalNetworks gives.
  Respondents(const HostAddress& address, const std::vector<Network>& local);

  bool isOneHost() const { return networks_.empty() && !isMulticast_; }

  // Whether an answer from there counts: it also has to come from the port that was asked.
  bool Include(const HostAddress& from) const;

 private:
  HostAddress address_;
  std::vector<Network> networks_;  // of a broadcast address
  bool isMulticast_ = false;
};

// Whether two addresses are the same host and port.
bool IsSameAddress(const HostAddress& left, const HostAddress& right);

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_RESPONDENTS_H_

// Networks and broadcast addresses.
#include "port_driver/network_search/Respondents.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cstring>
#include <memory>

namespace ZIOP {
namespace {

const sockaddr_in& As4(const sockaddr* address) {
  return *reinterpret_cast<const sockaddr_in*>(address);
}

const sockaddr_in6& As6(const HostAddress& address) {
  return *reinterpret_cast<const sockaddr_in6*>(address.get());
}

}  // namespace

std::vector<Network> LocalNetworks() {
  std::vector<Network> networks;
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) != 0) {
    return networks;
  }
  const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(list, ::freeifaddrs);
  for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr != nullptr && entry->ifa_netmask != nullptr &&
        entry->ifa_addr->sa_family == AF_INET) {
      const uint32_t mask = As4(entry->ifa_netmask).sin_addr.s_addr;
      networks.push_back({As4(entry->ifa_addr).sin_addr.s_addr & mask, mask});
    }
  }
  return networks;
}

Respondents::Respondents(const HostAddress& address, const std::vector<Network>& local)
    : address_(address) {
  if (address.family() == AF_INET6) {
    isMulticast_ = IN6_IS_ADDR_MC_LINKLOCAL(&As6(address).sin6_addr);
    return;
  }
  const uint32_t asked = As4(address.get()).sin_addr.s_addr;
  bool isOwnNetwork = false;
  for (const Network& each : local) {
    // In networks of one or two addresses (RFC 3021) there is no broadcast address.
    if (ntohl(each.mask) >= 0xFFFFFFFEU) {
      continue;
    }
    const bool isHere = (asked & each.mask) == each.address;
    isOwnNetwork = isOwnNetwork || isHere;
    if (asked == INADDR_BROADCAST || (isHere && (asked | each.mask) == INADDR_NONE)) {
      networks_.push_back(each);
    }
  }
  const uint32_t mask24 = htonl(0xFFFFFF00U);
  if (networks_.empty() && !isOwnNetwork && (ntohl(asked) & 0xFFU) == 0xFFU) {
    networks_.push_back({asked & mask24, mask24});
  }
}

bool Respondents::Include(const HostAddress& from) const {
  if (isOneHost() || from.family() != address_.family()) {
    return IsSameAddress(from, address_);
  }
  if (isMulticast_) {
    return As6(from).sin6_port == As6(address_).sin6_port &&
           IN6_IS_ADDR_LINKLOCAL(&As6(from).sin6_addr) &&
           (As6(address_).sin6_scope_id == 0 ||
            As6(from).sin6_scope_id == As6(address_).sin6_scope_id);
  }
  const sockaddr_in& host = As4(from.get());
  if (host.sin_port != As4(address_.get()).sin_port) {
    return false;
  }
  for (const Network& network : networks_) {
    if ((host.sin_addr.s_addr & network.mask) == network.address) {
      return true;
    }
  }
  return false;
}

bool IsSameAddress(const HostAddress& left, const HostAddress& right) {
  if (left.family() != right.family()) {
    return false;
  }
  if (left.family() == AF_INET) {
    return As4(left.get()).sin_addr.s_addr == As4(right.get()).sin_addr.s_addr &&
           As4(left.get()).sin_port == As4(right.get()).sin_port;
  }
  // Only link-local addresses mean another host on another link.
  return std::memcmp(&As6(left).sin6_addr, &As6(right).sin6_addr, sizeof(in6_addr)) == 0 &&
         As6(left).sin6_port == As6(right).sin6_port &&
         (!IN6_IS_ADDR_LINKLOCAL(&As6(left).sin6_addr) ||
          As6(left).sin6_scope_id == As6(right).sin6_scope_id);
}

}  // namespace ZIOP

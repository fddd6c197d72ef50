// Resolves the names among the addresses to ask while the search goes on.
#ifndef PORT_DRIVER_NETWORK_SEARCH_NAMERESOLVER_H_
#define PORT_DRIVER_NETWORK_SEARCH_NAMERESOLVER_H_

#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "port_driver/Deadline.h"
#include "port_driver/HostAddress.h"
#include "port_driver/network_search/SearchAddress.h"

namespace ZIOP {

class NameResolver {
 public:
  // An entry of the list and what its host resolves to, with the port.
  using Resolved = std::pair<std::string, std::vector<HostAddress>>;

  // Starts threads that share the work. A name that cannot be resolved by the deadline is reported
  // with one line on standard error.
  NameResolver(std::vector<SearchAddress> names, const Deadline& deadline);

  // Blocks until the deadline at most.
  ~NameResolver();

  NameResolver(const NameResolver&) = delete;
  NameResolver& operator=(const NameResolver&) = delete;

  // What has been resolved since the last call.
  std::vector<Resolved> Take();

  // Whether nothing more will come: what was resolved has to be taken after this was true.
  bool isDone();

 private:
  void Work() noexcept;
  bool TakeName(SearchAddress& name);

  const Deadline deadline_;
  std::mutex mutex_;
  std::vector<SearchAddress> names_;
  std::vector<Resolved> resolved_;
  std::size_t working_ = 0;  // threads that may still add to resolved_
  std::vector<std::thread> threads_;
};

// The addresses of host, with the port. Blocks until the deadline at most; throws DriverError.
std::vector<HostAddress> ResolveSearchAddress(const SearchAddress& address,
                                              const Deadline& deadline);

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORK_SEARCH_NAMERESOLVER_H_

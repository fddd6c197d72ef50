// Threads that resolve names.
#include "port_driver/network_search/NameResolver.h"

#include <algorithm>
#include <system_error>

#include "port_driver/DriverError.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

constexpr std::size_t kMaximumThreads = 8;

}  // namespace

std::vector<HostAddress> ResolveSearchAddress(const SearchAddress& address,
                                              const Deadline& deadline) {
  Waiter waiter;
  std::vector<HostAddress> addresses = ResolveHost(address.host, deadline, waiter);
  for (HostAddress& each : addresses) {
    each.SetPort(address.port);
  }
  return addresses;
}

NameResolver::NameResolver(std::vector<SearchAddress> names, const Deadline& deadline)
    : deadline_(deadline), names_(std::move(names)) {
  const std::size_t count = std::min(names_.size(), kMaximumThreads);
  const std::lock_guard<std::mutex> lock(mutex_);
  threads_.reserve(count);
  try {
    for (; working_ < count; ++working_) {
      threads_.emplace_back([this] { Work(); });
    }
  } catch (const std::system_error& error) {
    // The threads that there are do the work of all.
    Ravik::ReportLine("ZIOP", std::string("threads for names are missing: ") + error.what());
  }
}

NameResolver::~NameResolver() {
  for (std::thread& thread : threads_) {
    thread.join();
  }
}

bool NameResolver::TakeName(SearchAddress& name) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (names_.empty()) {
    --working_;
    return false;
  }
  name = std::move(names_.back());
  names_.pop_back();
  return true;
}

void NameResolver::Work() noexcept {
  for (SearchAddress name; TakeName(name);) {
    try {
      std::vector<HostAddress> addresses = ResolveSearchAddress(name, deadline_);
      const std::lock_guard<std::mutex> lock(mutex_);
      resolved_.emplace_back(name.entry, std::move(addresses));
    } catch (const std::exception& error) {
      Ravik::ReportLine("ZIOP", std::string("not asked: ") + error.what());
    }
  }
}

std::vector<NameResolver::Resolved> NameResolver::Take() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::exchange(resolved_, {});
}

bool NameResolver::isDone() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return working_ == 0;
}

}  // namespace ZIOP

// Bounded name resolution.
#include "port_driver/HostAddress.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "port_driver/DriverError.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

struct Resolution {
  int status = EAI_SYSTEM;
  int error = 0;  // errno for EAI_SYSTEM
  std::vector<HostAddress> addresses;
};

Resolution Resolve(const std::string& host, int flags) {
  addrinfo hints{};
  hints.ai_flags = flags;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* list = nullptr;
  Resolution result;
  result.status = ::getaddrinfo(host.c_str(), nullptr, &hints, &list);
  result.error = errno;
  if (result.status != 0) {
    return result;
  }
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(list, ::freeaddrinfo);
  for (const addrinfo* entry = list;
       entry != nullptr && result.addresses.size() < kMaximumAddresses; entry = entry->ai_next) {
    const bool internet = entry->ai_family == AF_INET || entry->ai_family == AF_INET6;
    if (internet && entry->ai_addrlen <= sizeof(sockaddr_storage)) {
      HostAddress& address = result.addresses.emplace_back(HostAddress{{}, entry->ai_addrlen});
      std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
    }
  }
  return result;
}

// The address of a host in its usual numeric form; other forms, and zones, are the resolver's.
std::optional<HostAddress> NumericAddress(const std::string& host) {
  HostAddress address{{}, sizeof(sockaddr_in)};
  auto& ipv4 = reinterpret_cast<sockaddr_in&>(address.storage);
  if (::inet_pton(AF_INET, host.c_str(), &ipv4.sin_addr) == 1) {
    ipv4.sin_family = AF_INET;
    return address;
  }
  address = {{}, sizeof(sockaddr_in6)};
  auto& ipv6 = reinterpret_cast<sockaddr_in6&>(address.storage);
  if (::inet_pton(AF_INET6, host.c_str(), &ipv6.sin6_addr) == 1) {
    ipv6.sin6_family = AF_INET6;
    return address;
  }
  return std::nullopt;
}

// A resolver that hangs must not use up the threads and descriptors of the process.
constexpr int kMaximumPending = 16;
std::atomic<int> pendingCount{0};

// Shared by the thread that asks and the one that waits, whichever lives longer.
class PendingResolution {
 public:
  PendingResolution() : done_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!done_) {
      throw DriverError::System("eventfd", errno);
    }
    if (pendingCount.fetch_add(1) >= kMaximumPending) {
      pendingCount.fetch_sub(1);
      throw DriverError(DriverCode::kSystem, "too many names are being resolved");
    }
  }
  ~PendingResolution() { pendingCount.fetch_sub(1); }
  PendingResolution(const PendingResolution&) = delete;
  PendingResolution& operator=(const PendingResolution&) = delete;

  int done() const { return done_.get(); }

  void Finish(Resolution result) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      result_ = std::move(result);
    }
    ::eventfd_write(done_.get(), 1);
  }

  Resolution Take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::move(result_);
  }

 private:
  FileDescriptor done_;
  std::mutex mutex_;
  Resolution result_;
};

void ResolveInto(PendingResolution& pending, const std::string& host) noexcept {
  sigset_t all;  // signals are for the program that has loaded the driver
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
  Resolution result;
  try {
    result = Resolve(host, 0);
  } catch (const std::bad_alloc&) {
    result.status = EAI_MEMORY;
  }
  pending.Finish(std::move(result));
}

Resolution ResolveName(const std::string& host, const Deadline& deadline, Waiter& waiter) {
  const auto pending = std::make_shared<PendingResolution>();
  std::thread([pending, host] { ResolveInto(*pending, host); }).detach();
  if (!waiter.Wait(pending->done(), POLLIN, deadline)) {
    throw DriverError(DriverCode::kTimeout,
                      "the name \"" + Ravik::Printable(host) + "\" was not resolved in time");
  }
  return pending->Take();
}

}  // namespace

bool HostAddress::IsSame(const HostAddress& other) const {
  if (family() != other.family()) {
    return false;
  }
  if (family() == AF_INET6) {
    const auto& left = reinterpret_cast<const sockaddr_in6&>(storage);
    const auto& right = reinterpret_cast<const sockaddr_in6&>(other.storage);
    return left.sin6_port == right.sin6_port &&
           std::memcmp(&left.sin6_addr, &right.sin6_addr, sizeof left.sin6_addr) == 0;
  }
  const auto& left = reinterpret_cast<const sockaddr_in&>(storage);
  const auto& right = reinterpret_cast<const sockaddr_in&>(other.storage);
  return left.sin_port == right.sin_port && left.sin_addr.s_addr == right.sin_addr.s_addr;
}

void HostAddress::SetPort(uint16_t port) {
  if (family() == AF_INET6) {
    reinterpret_cast<sockaddr_in6*>(&storage)->sin6_port = htons(port);
  } else {
    reinterpret_cast<sockaddr_in*>(&storage)->sin_port = htons(port);
  }
}

HostAddress HostAddress::WithPort(uint16_t port) const {
  HostAddress address = *this;
  address.SetPort(port);
  return address;
}

std::vector<HostAddress> ResolveHost(const std::string& host, const Deadline& deadline,
                                     Waiter& waiter) {
  if (const auto address = NumericAddress(host)) {
    return {*address};
  }
  Resolution result = Resolve(host, AI_NUMERICHOST);
  if (result.status == EAI_NONAME) {
    result = ResolveName(host, deadline, waiter);
  }
  if (result.status == EAI_SYSTEM) {
    throw DriverError::System("getaddrinfo", result.error);
  }
  if (result.status != 0 || result.addresses.empty()) {
    const char* reason = result.status != 0 ? ::gai_strerror(result.status) : "no address";
    throw DriverError(DriverCode::kSystem, "getaddrinfo: \"" + Ravik::Printable(host) +
                                               "\": " + reason + " (error " +
                                               std::to_string(result.status) + ")");
  }
  return std::move(result.addresses);
}

}  // namespace ZIOP

// Sockets and tries of a search on the network.
#include "port_driver/network_search/NetworkSearch.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/random.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>

#include "port_driver/DriverError.h"
#include "port_driver/DriverTrace.h"
#include "port_driver/SnmpMessage.h"
#include "port_driver/Waiter.h"
#include "port_driver/network_search/Inquiry.h"
#include "port_driver/network_search/NameResolver.h"
#include "port_driver/network_search/SnmpCodec.h"
#include "util/Diagnostics.h"
#include "util/FileDescriptor.h"

namespace ZIOP {
namespace {

using std::chrono::milliseconds;
using Clock = Deadline::Clock;

// Requests are sent in bursts, with a pause and a look at the answers after each, so that neither
// they nor the answers overrun a buffer on the way.
constexpr int kBurst = 32;
constexpr milliseconds kPause(1);

// Datagrams that are taken off a socket before the clock is looked at again.
constexpr int kMaximumTaken = 256;

constexpr milliseconds kShortestTry(20);
constexpr milliseconds kNameInterval(20);  // how often resolved names are looked for
constexpr int kReceiveBuffer = 1 << 20;    // bytes; the system gives what it allows
constexpr std::size_t kTextShown = 256;    // bytes of an identifier or a description in a trace

int32_t RandomId() {
  uint32_t number = 0;
  do {
    if (::getrandom(&number, sizeof number, 0) != sizeof number && errno != EINTR) {
      throw DriverError::System("getrandom", errno);
    }
    number &= 0x7FFFFFFFU;
  } while (number == 0);
  return static_cast<int32_t>(number);
}

FileDescriptor OpenSocket(int family) {
  FileDescriptor descriptor(
      ::socket(family, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_UDP));
  if (!descriptor) {
    throw DriverError::System("socket", errno);
  }
  const int on = 1;
  if (family == AF_INET6) {
    ::setsockopt(descriptor.get(), IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
  } else {
    ::setsockopt(descriptor.get(), SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
  }
  ::setsockopt(descriptor.get(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
  return descriptor;
}

void TraceRequest(const SearchRequest& request) {
  if (!IsTraced()) {
    return;
  }
  Trace("snmp", "send", request.message,
        TraceAddress("to", request.to) + " object=" + kSearchedObjects[request.object].title);
}

void TraceDatagram(const HostAddress& from, std::string_view datagram, bool isAnswer) {
  if (!IsTraced()) {
    return;
  }
  std::string text = TraceAddress("from", from);
  if (const auto answer = DecodeSearchAnswer(datagram)) {
    text += std::string(" object=") + kSearchedObjects[answer->object].title;
  }
  if (const auto message = ReadSnmpMessage(datagram)) {
    text += ' ' + TraceAnswer(*message, kTextShown);
  }
  Trace("snmp", isAnswer ? "recv" : "ignored", datagram,
        isAnswer ? text : text + " not asked for, or answered before");
}

class Search {
 public:
  Search(const std::vector<std::string>& addresses, const Deadline& deadline);

  void Run();

  std::vector<FoundPrinter> Printers() const { return inquiry_.Printers(); }

 private:
  void Ask(const std::string& entry, const std::vector<HostAddress>& addresses);
  bool IsOver();
  void TakeNames();
  void SendBurst();
  void Send(const SearchRequest& request);
  void Wait();
  void Receive(const FileDescriptor& socket);
  Clock::time_point TryTime() const;

  const Deadline deadline_;
  const Clock::time_point start_ = Clock::now();
  const Clock::duration time_;
  FileDescriptor sockets_[2];  // IPv4, IPv6; opened when first needed
  Inquiry inquiry_{RandomId, LocalNetworks()};
  int try_ = 1;  // the next one; whom Ask has taken up is asked for the first time at once
  Clock::time_point lastTry_ = start_;
  std::set<std::string> reported_;  // failures to send, each once
  Waiter waiter_;
  std::optional<NameResolver> names_;
};

Search::Search(const std::vector<std::string>& addresses, const Deadline& deadline)
    : deadline_(deadline), time_(milliseconds(deadline.PollTimeout(start_))) {
  std::vector<SearchAddress> names;
  for (const std::string& entry : addresses) {
    try {
      const SearchAddress address = SearchAddress::Parse(entry);
      if (address.isNumeric()) {
        Ask(entry, ResolveSearchAddress(address, deadline));
      } else {
        names.push_back(address);
      }
    } catch (const DriverError& error) {
      Ravik::ReportLine("ZIOP", std::string("not asked: ") + error.what());
    }
  }
  if (!names.empty()) {
    // A host has to be known while there is time to ask it.
    names_.emplace(std::move(names), deadline.Share(2));
  }
}

void Search::Ask(const std::string& entry, const std::vector<HostAddress>& addresses) {
  for (const HostAddress& address : addresses) {
    if (!inquiry_.Ask(address, entry)) {
      Ravik::ReportLine("ZIOP", "not asked: \"" + Ravik::Printable(entry) + "\": more than " +
                                    std::to_string(kMaximumAsked) + " addresses");
      return;
    }
  }
}

void Search::Run() {
  while (!IsOver()) {
    if (try_ < kSearchTries && inquiry_.isQueueEmpty() && Clock::now() >= TryTime()) {
      lastTry_ = Clock::now();
      ++try_;
      inquiry_.StartTry();
    }
    SendBurst();
    Wait();
  }
}

bool Search::IsOver() {
  // Looked at before the names are taken, so that none comes in between.
  const bool isResolved = !names_ || names_->isDone();
  TakeNames();
  return deadline_.HasPassed() || (isResolved && inquiry_.isQueueEmpty() && inquiry_.isComplete());
}

void Search::TakeNames() {
  if (!names_) {
    return;
  }
  for (const auto& [entry, addresses] : names_->Take()) {
    Ask(entry, addresses);
  }
}

// The last fifth of the time is left for the answers of slow printers to the last try.
Clock::time_point Search::TryTime() const {
  constexpr int kLast = kSearchTries - 1;
  const auto moment = start_ + time_ * (4 * try_ * try_) / (5 * kLast * kLast);
  return std::max(moment, lastTry_ + kShortestTry);
}

void Search::SendBurst() {
  for (int i = 0; i < kBurst; ++i) {
    const auto request = inquiry_.Next();
    if (!request) {
      return;
    }
    Send(*request);
  }
}

void Search::Send(const SearchRequest& request) {
  try {
    FileDescriptor& socket = sockets_[request.to.family() == AF_INET6 ? 1 : 0];
    if (!socket) {
      socket = OpenSocket(request.to.family());
    }
    TraceRequest(request);
    if (::sendto(socket.get(), request.message.data(), request.message.size(), MSG_NOSIGNAL,
                 request.to.get(), request.to.length) < 0) {
      const int error = errno;
      TraceFailedCall("snmp", "sendto", error);
      if (error != EAGAIN && error != ENOBUFS && error != EINTR) {
        throw DriverError::System("sendto", error);
      }
    }
  } catch (const DriverError& error) {
    if (reported_.insert(error.what()).second) {
      Ravik::ReportLine("ZIOP", std::string("not asked: ") + error.what());
    }
  }
}

// Until something has come, or there is something to do.
void Search::Wait() {
  auto end = Clock::now() + time_;
  if (!inquiry_.isQueueEmpty()) {
    end = Clock::now() + kPause;
  } else if (try_ < kSearchTries) {
    end = TryTime();
  }
  if (names_ && !names_->isDone()) {
    end = std::min(end, Clock::now() + kNameInterval);
  }
  if (deadline_.HasPassed(end)) {
    end = Clock::now() + milliseconds(deadline_.PollTimeout());
  }
  pollfd set[] = {{sockets_[0].get(), POLLIN, 0}, {sockets_[1].get(), POLLIN, 0}, {}};
  if (waiter_.Wait(set, std::size(set), Deadline(end))) {
    for (const FileDescriptor& socket : sockets_) {
      if (socket) {
        Receive(socket);
      }
    }
  }
}

void Search::Receive(const FileDescriptor& socket) {
  char buffer[kMaximumAnswer];
  for (int i = 0; i < kMaximumTaken; ++i) {
    HostAddress from{{}, sizeof from.storage};
    // MSG_TRUNC gives the true length, so that what was cut off is not taken for an answer.
    const ssize_t length = ::recvfrom(socket.get(), buffer, sizeof buffer, MSG_TRUNC,
                                      reinterpret_cast<sockaddr*>(&from.storage), &from.length);
    if (length < 0 && errno == EAGAIN) {
      return;
    }
    if (length > 0 && static_cast<std::size_t>(length) <= sizeof buffer) {
      const std::string_view datagram(buffer, static_cast<std::size_t>(length));
      TraceDatagram(from, datagram, inquiry_.Take(from, datagram));
    }
  }
}

}  // namespace

void SearchNetwork(const std::vector<std::string>& addresses, const Deadline& deadline,
                   std::vector<FoundPrinter>& found) {
  Search search(addresses, deadline);
  try {
    search.Run();
  } catch (const DriverError& error) {
    Ravik::ReportLine("ZIOP", std::string("search broken off: ") + error.what());
  }
  const std::vector<FoundPrinter> printers = search.Printers();
  found.insert(found.end(), printers.begin(), printers.end());
}

}  // namespace ZIOP

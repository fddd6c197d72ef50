// Tries, answers and refusals of an SNMP exchange.
#include "port_driver/SnmpClient.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <utility>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

// A buffer that no client has, null for none: ports are opened one after the other.
std::atomic<char*> spare_buffer{nullptr};

// Datagrams taken off a socket before the deadline is looked at again.
constexpr int kBurst = 64;

// Whether a later try may succeed although sending failed: the network has no room or no route for
// now, or the printer has just refused.
bool IsPassing(int error) {
  switch (error) {
    case ECONNREFUSED:
    case EHOSTUNREACH:
    case EHOSTDOWN:
    case ENETUNREACH:
    case ENETDOWN:
    case ENOBUFS:
    case EAGAIN:
    case EINTR:
      return true;
    default:
      return false;
  }
}

FileDescriptor ConnectDatagramSocket(const HostAddress& address) {
  FileDescriptor descriptor(
      ::socket(address.family(), SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_UDP));
  if (!descriptor) {
    throw DriverError::System("socket", errno);
  }
  if (::connect(descriptor.get(), address.get(), address.length) != 0) {
    throw DriverError::System("connect", errno);
  }
  return descriptor;
}

// Whether a datagram that socket has received from sender is one of the host that it is connected
// to. It takes datagrams from anybody between getting its port and being connected.
bool ComesFrom(const HostAddress& sender, int socket, const HostAddress& host) {
  if (sender.IsSame(host)) {
    return true;
  }
  HostAddress peer{{}, sizeof peer.storage};  // the unspecified address stands for another one
  return ::getpeername(socket, peer.get(), &peer.length) == 0 && sender.IsSame(peer);
}

}  // namespace

// Bytes of a buffer that no datagram came to are never looked at.
SnmpClient::Buffer::Buffer() : bytes_(spare_buffer.exchange(nullptr)) {
  if (bytes_ == nullptr) {
    bytes_.reset(new char[kMaximumDatagram]);
  }
}

SnmpClient::Buffer::~Buffer() {
  const std::unique_ptr<char[]> surplus(spare_buffer.exchange(bytes_.release()));
}

SnmpClient::SnmpClient(const DeviceURI& uri, const std::vector<HostAddress>& addresses,
                       Waiter& waiter)
    : uri_(uri), waiter_(waiter), addresses_(addresses), trace_(uri) {
  Connect();
}

// The sockets before go only now, so that the new ones have other ports.
void SnmpClient::Connect() {
  std::vector<Socket> fresh;
  fresh.reserve(addresses_.size());
  for (const HostAddress& each : addresses_) {
    try {
      const HostAddress address = each.WithPort(uri_.snmpPort);
      fresh.push_back({ConnectDatagramSocket(address), address});
    } catch (const DriverError& error) {
      Trace("snmp", "failed", {}, error.what());
      // One family of addresses may have no route while the other has.
      if (fresh.empty() && &each == &addresses_.back()) {
        throw;
      }
    }
  }
  sockets_ = std::move(fresh);
  active_ %= sockets_.size();
}

std::string_view SnmpClient::Exchange(std::string_view request) {
  const auto asked = ReadSnmpMessage(request);
  if (!asked) {
    throw DriverError(DriverCode::kParameter, "the request is not an SNMP message");
  }
  if (std::exchange(used_, true)) {
    Connect();
  }
  for (int attempt = 0; attempt <= uri_.retries; ++attempt) {
    trace_.Start(attempt);
    if (Try(request, *asked)) {
      return answer_;
    }
    trace_.TimedOut();
    TurnToNextAddress();
  }
  throw DriverError(DriverCode::kTimeout, Failure());
}

bool SnmpClient::Try(std::string_view request, const SnmpMessage& asked) {
  std::size_t others = sockets_.size() - 1;
  Send(request);
  const Deadline deadline = Deadline::After(uri_.timeout);  // a trace may have held up sending
  do {
    for (; sockets_[active_].lastError != 0 && others > 0; --others) {
      TurnToNextAddress();
      Send(request);
    }
    std::array<pollfd, kMaximumAddresses + 1> set;
    auto next = set.begin();
    for (const Socket& socket : sockets_) {
      *next++ = {socket.descriptor.get(), POLLIN, 0};
    }
    if (waiter_.Wait(set.data(), sockets_.size() + 1, deadline) && ReceiveAnswer(asked)) {
      return true;
    }
  } while (!deadline.HasPassed());
  return false;
}

void SnmpClient::Send(std::string_view request) {
  Socket& socket = sockets_[active_];
  trace_.Sending(request, socket.address);
  // What became of an earlier datagram is reported once, and in place of sending.
  for (int i = 0; i < 2; ++i) {
    if (::send(socket.descriptor.get(), request.data(), request.size(), MSG_NOSIGNAL) >= 0) {
      socket.lastError = 0;
      return;
    }
    socket.lastError = errno;
    TraceFailedCall("snmp", "send", socket.lastError);
  }
  if (!IsPassing(socket.lastError)) {
    throw DriverError::System("send", socket.lastError);
  }
}

bool SnmpClient::ReceiveAnswer(const SnmpMessage& asked) {
  for (std::size_t i = 0; i < sockets_.size(); ++i) {
    if (Receive(sockets_[i], asked)) {
      active_ = i;
      return true;
    }
  }
  return false;
}

bool SnmpClient::Receive(Socket& socket, const SnmpMessage& asked) {
  for (int i = 0; i < kBurst; ++i) {
    HostAddress sender;
    sender.length = sizeof sender.storage;
    const ssize_t length = ::recvfrom(socket.descriptor.get(), buffer_.data(), kMaximumDatagram, 0,
                                      sender.get(), &sender.length);
    if (length < 0 && errno == EAGAIN) {
      return false;
    }
    if (length < 0) {
      socket.lastError = errno;  // what became of an earlier datagram
      TraceFailedCall("snmp", "recv", socket.lastError);
      continue;
    }
    answer_ = std::string_view(buffer_.data(), static_cast<std::size_t>(length));
    const auto answer = ReadSnmpMessage(answer_);
    if (answer && AnswersRequest(*answer, asked, uri_.matchesIdOnly) &&
        ComesFrom(sender, socket.descriptor.get(), socket.address)) {
      trace_.Received(answer_, *answer);
      return true;
    }
    trace_.Ignored(answer_, answer ? &*answer : nullptr, asked);
  }
  return false;
}

void SnmpClient::TurnToNextAddress() {
  active_ = (active_ + 1) % sockets_.size();
}

std::string SnmpClient::Failure() const {
  std::string text = "no answer to the SNMP request in " + std::to_string(1 + uri_.retries) +
                     " tries of " + std::to_string(uri_.timeout.count()) + " ms";
  for (const Socket& socket : sockets_) {
    if (socket.lastError != 0) {
      text += "; " + std::string(DriverError::System("recv", socket.lastError).what());
    }
  }
  return text;
}

}  // namespace ZIOP

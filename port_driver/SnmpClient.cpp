// Tries, answers and refusals of an SNMP exchange.
#include "port_driver/SnmpClient.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

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

}  // namespace

SnmpClient::SnmpClient(const DeviceURI& uri, std::vector<HostAddress> addresses, Waiter& waiter)
    : uri_(uri), waiter_(waiter), addresses_(std::move(addresses)), buffer_(kMaximumDatagram) {
  for (HostAddress& address : addresses_) {
    address.SetPort(uri.snmpPort);
  }
  Connect();
}

// The sockets before go only now, so that the new ones have other ports.
void SnmpClient::Connect() {
  std::vector<Socket> fresh;
  for (const HostAddress& address : addresses_) {
    try {
      fresh.push_back({ConnectDatagramSocket(address)});
    } catch (const DriverError&) {
      // One family of addresses may have no route while the other has.
      if (fresh.empty() && &address == &addresses_.back()) {
        throw;
      }
    }
  }
  sockets_ = std::move(fresh);
  active_ %= sockets_.size();
  ForgetQueuedDatagrams();
}

std::string_view SnmpClient::Exchange(std::string_view request) {
  const auto asked = ReadSnmpMessage(request);
  if (!asked) {
    throw DriverError(DriverCode::kParameter, "the request is not an SNMP message");
  }
  Connect();
  for (int attempt = 0; attempt <= uri_.retries; ++attempt) {
    if (Try(request, *asked)) {
      return answer_;
    }
    TurnToNextAddress();
  }
  throw DriverError(DriverCode::kTimeout, Failure());
}

// A socket takes datagrams from anybody between getting its port and being connected.
void SnmpClient::ForgetQueuedDatagrams() {
  for (const Socket& socket : sockets_) {
    for (int i = 0; i < kBurst; ++i) {
      if (::recv(socket.descriptor.get(), buffer_.data(), buffer_.size(), 0) < 0 &&
          errno == EAGAIN) {
        break;
      }
    }
  }
}

bool SnmpClient::Try(std::string_view request, const SnmpMessage& asked) {
  const Deadline deadline = Deadline::After(uri_.timeout);
  std::size_t others = sockets_.size() - 1;
  Send(request);
  do {
    for (; sockets_[active_].lastError != 0 && others > 0; --others) {
      TurnToNextAddress();
      Send(request);
    }
    std::vector<pollfd> set;
    for (const Socket& socket : sockets_) {
      set.push_back({socket.descriptor.get(), POLLIN, 0});
    }
    if (waiter_.Wait(set, deadline) && ReceiveAnswer(asked)) {
      return true;
    }
  } while (!deadline.HasPassed());
  return false;
}

void SnmpClient::Send(std::string_view request) {
  Socket& socket = sockets_[active_];
  // What became of an earlier datagram is reported once, and in place of sending.
  for (int i = 0; i < 2; ++i) {
    if (::send(socket.descriptor.get(), request.data(), request.size(), MSG_NOSIGNAL) >= 0) {
      socket.lastError = 0;
      return;
    }
    socket.lastError = errno;
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
    const ssize_t length = ::recv(socket.descriptor.get(), buffer_.data(), buffer_.size(), 0);
    if (length < 0 && errno == EAGAIN) {
      return false;
    }
    if (length < 0) {
      socket.lastError = errno;  // what became of an earlier datagram
      continue;
    }
    answer_ = std::string_view(buffer_.data(), static_cast<std::size_t>(length));
    const auto answer = ReadSnmpMessage(answer_);
    if (answer && AnswersRequest(*answer, asked, uri_.matchesIdOnly)) {
      return true;
    }
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

// Connecting, sending, receiving and closing in order.
#include "port_driver/RawConnection.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <utility>

#include "port_driver/DriverError.h"
#include "port_driver/DriverTrace.h"

namespace ZIOP {
namespace {

int PendingError(int socket) {
  int error = 0;
  socklen_t length = sizeof error;
  return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 ? error : errno;
}

bool IsToRepeat(int error) {
  return error == EAGAIN || error == EINTR;
}

}  // namespace

void RawConnection::Connect() {
  const Deadline deadline = Deadline::After(uri_.budget());
  for (std::size_t i = 0; !socket_; ++i) {
    const auto left = static_cast<int>(addresses_.size() - i);
    try {
      socket_ = ConnectTo(addresses_[i].WithPort(uri_.rawPort), deadline.Share(left));
    } catch (const DriverError& error) {
      if (left == 1 || error.code() == DriverCode::kCancelled) {
        throw;
      }
      Trace("raw", "failed", {}, error.what());
    }
  }
}

FileDescriptor RawConnection::ConnectTo(const HostAddress& address, const Deadline& deadline) {
  if (IsTraced()) Trace("raw", "connect", {}, TraceAddress("to", address));
  FileDescriptor descriptor(
      ::socket(address.family(), SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP));
  if (!descriptor) {
    throw DriverError::System("socket", errno);
  }
  int error = ::connect(descriptor.get(), address.get(), address.length) == 0 ? 0 : errno;
  if (error == EINPROGRESS || error == EINTR) {
    if (!waiter_.Wait(descriptor.get(), POLLOUT, deadline)) {
      throw Timeout("no connection to the raw data port");
    }
    error = PendingError(descriptor.get());
  }
  if (error != 0) {
    throw DriverError::System("connect", error);
  }
  // Commands are written whole; collecting them further would only delay the last part.
  const int on = 1;
  ::setsockopt(descriptor.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return descriptor;
}

void RawConnection::PrepareToWrite(std::string_view /*bytes*/) {
  Connect();
}

std::size_t RawConnection::TryToSend(std::string_view bytes) {
  const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (sent < 0 && !IsToRepeat(errno)) {
    throw DriverError::System("send", errno);
  }
  return sent > 0 ? static_cast<std::size_t>(sent) : 0;
}

std::size_t RawConnection::TryToReceive(char* buffer, std::size_t capacity) {
  const ssize_t received = ::recv(socket_.get(), buffer, capacity, 0);
  if (received < 0 && !IsToRepeat(errno)) {
    throw DriverError::System("recv", errno);
  }
  if (received == 0) {
    socket_ = FileDescriptor();
    return kHungUp;
  }
  return received > 0 ? static_cast<std::size_t>(received) : 0;
}

void RawConnection::Flush() {
  const int error = socket_ ? PendingError(socket_.get()) : 0;
  if (error != 0) {
    Abort();
    throw DriverError::System("send", error);
  }
}

void RawConnection::Close() {
  if (!socket_) {
    return;
  }
  const FileDescriptor socket = std::move(socket_);
  if (::shutdown(socket.get(), SHUT_WR) != 0) {
    throw DriverError::System("shutdown", errno);
  }
  const Deadline deadline = Deadline::After(uri_.budget());
  Drain(socket.get(), deadline);
  AwaitAcknowledgement(socket.get(), deadline);
}

// Drops what the printer still sends, until it closes its side.
void RawConnection::Drain(int socket, const Deadline& deadline) {
  char dropped[4096];
  while (!deadline.HasPassed() && waiter_.Wait(socket, POLLIN, deadline)) {
    const ssize_t received = ::recv(socket, dropped, sizeof dropped, 0);
    if (received == 0) {
      return;
    }
    if (received < 0 && !IsToRepeat(errno)) {
      throw DriverError::System("recv", errno);
    }
    if (received > 0) {
      Trace(name(), "recv", {dropped, static_cast<std::size_t>(received)}, "nobody reads it");
    }
  }
}

// A printer may close its side and still take bytes. No event tells when it has the last one.
void RawConnection::AwaitAcknowledgement(int socket, const Deadline& deadline) {
  int unacknowledged = 0;
  while (::ioctl(socket, SIOCOUTQ, &unacknowledged) == 0 && unacknowledged > 0) {
    if (const int error = PendingError(socket); error != 0) {
      throw DriverError::System("close", error);
    }
    if (deadline.HasPassed()) {
      throw Timeout("the printer did not take every byte");
    }
    Rest();
  }
}

// Lets the printer see it at once, without sending what is queued.
void RawConnection::Abort() {
  const linger reset{1, 0};
  ::setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
  socket_ = FileDescriptor();
}

}  // namespace ZIOP

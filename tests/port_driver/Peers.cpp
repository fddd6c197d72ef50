// Scripted peers.
#include "tests/port_driver/Peers.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <stdexcept>
#include <utility>

namespace ZIOP {
namespace {

void Check(bool done, const char* what) {
  if (!done) {
    throw std::runtime_error(what);
  }
}

// Whether socket can be read before stop can.
bool WaitUnlessStopped(int socket, int stop) {
  pollfd set[] = {{socket, POLLIN, 0}, {stop, POLLIN, 0}};
  while (::poll(set, 2, -1) < 0) {
  }
  return set[1].revents == 0;
}

}  // namespace

FileDescriptor BindLoopback(int family, int type, uint16_t port) {
  FileDescriptor socket(::socket(family, type | SOCK_CLOEXEC, 0));
  sockaddr_in6 address6{};
  address6.sin6_family = AF_INET6;
  address6.sin6_port = htons(port);
  address6.sin6_addr = IN6ADDR_LOOPBACK_INIT;
  sockaddr_in address4{};
  address4.sin_family = AF_INET;
  address4.sin_port = htons(port);
  address4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool six = family == AF_INET6;
  const auto* address = six ? reinterpret_cast<const sockaddr*>(&address6)
                            : reinterpret_cast<const sockaddr*>(&address4);
  Check(::bind(socket.get(), address, six ? sizeof address6 : sizeof address4) == 0, "bind");
  return socket;
}

uint16_t PortOf(const FileDescriptor& socket) {
  // The port stands at the same place in the addresses of both families.
  sockaddr_in6 address{};
  socklen_t length = sizeof address;
  Check(::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &length) == 0, "name");
  return ntohs(address.sin6_port);
}

uint16_t RefusingPort(int type) {
  return PortOf(BindLoopback(AF_INET, type));
}

UdpPeer::UdpPeer(Script script, uint16_t port, int family)
    : script_(std::move(script)),
      socket_(BindLoopback(family, SOCK_DGRAM, port)),
      stop_(::eventfd(0, EFD_CLOEXEC)),
      thread_([this] { Run(); }) {}

UdpPeer::~UdpPeer() {
  ::eventfd_write(stop_.get(), 1);
  thread_.join();
}

void UdpPeer::Run() {
  std::vector<char> buffer(65536);
  while (WaitUnlessStopped(socket_.get(), stop_.get())) {
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    auto* address = reinterpret_cast<sockaddr*>(&from);
    const ssize_t received =
        ::recvfrom(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT, address, &length);
    if (received < 0) {
      continue;
    }
    const std::string request(buffer.data(), static_cast<std::size_t>(received));
    for (const std::string& answer : script_(request, ++count_)) {
      ::sendto(socket_.get(), answer.data(), answer.size(), MSG_NOSIGNAL, address, length);
    }
  }
}

TcpPeer::TcpPeer(Script script)
    : script_(std::move(script)),
      socket_(BindLoopback(AF_INET, SOCK_STREAM)),
      stop_(::eventfd(0, EFD_CLOEXEC)) {
  Check(::listen(socket_.get(), 8) == 0, "listen");
  thread_ = std::thread([this] { Run(); });
}

TcpPeer::~TcpPeer() {
  ::eventfd_write(stop_.get(), 1);
  thread_.join();
}

void TcpPeer::Run() {
  while (WaitUnlessStopped(socket_.get(), stop_.get())) {
    const FileDescriptor connection(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    script_(connection.get(), stop_.get());
  }
}

std::string ReadExactly(int connection, std::size_t length) {
  std::string bytes(length, '\0');
  const ssize_t received = ::recv(connection, bytes.data(), length, MSG_WAITALL);
  bytes.resize(received < 0 ? 0 : static_cast<std::size_t>(received));
  return bytes;
}

std::string ReadToEnd(int connection) {
  std::string bytes;
  char buffer[65536];
  for (ssize_t n = 0; (n = ::recv(connection, buffer, sizeof buffer, 0)) != 0;) {
    if (n < 0) {
      return bytes + "(broken)";
    }
    bytes.append(buffer, static_cast<std::size_t>(n));
  }
  return bytes;
}

void SendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0) {
      return;
    }
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

void WaitFor(int descriptor) {
  pollfd set{descriptor, POLLIN, 0};
  while (::poll(&set, 1, -1) <= 0) {
  }
}

void ResetConnection(int connection) {
  const linger reset{1, 0};
  ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
}

}  // namespace ZIOP

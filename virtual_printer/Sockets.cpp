// The network ports' sockets.
#include "virtual_printer/Sockets.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <memory>
#include <system_error>

namespace VirtualPrinter {
namespace {

FileDescriptor Bind(const std::string& address, std::uint16_t port, int type) {
  addrinfo hints{};
  hints.ai_socktype = type;
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  addrinfo* found = nullptr;
  const int error = getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found);
  if (error != 0) {
    throw std::system_error(std::make_error_code(std::errc::invalid_argument),
                            address + ": " + gai_strerror(error));
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owned(found, freeaddrinfo);
  FileDescriptor socket(::socket(found->ai_family, type | SOCK_CLOEXEC, 0));
  if (!socket) ThrowSystemError("socket");
  const int on = 1;
  if (type == SOCK_STREAM) {
    setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  }
  if (bind(socket.get(), found->ai_addr, found->ai_addrlen) != 0) {
    ThrowSystemError("bind " + address + " port " + std::to_string(port));
  }
  SetNonBlocking(socket);
  return socket;
}

}  // namespace

FileDescriptor BindDatagramSocket(const std::string& address, std::uint16_t port) {
  return Bind(address, port, SOCK_DGRAM);
}

FileDescriptor ListenOnStreamSocket(const std::string& address, std::uint16_t port) {
  FileDescriptor socket = Bind(address, port, SOCK_STREAM);
  if (listen(socket.get(), SOMAXCONN) != 0) ThrowSystemError("listen");
  return socket;
}

std::uint16_t BoundPort(const FileDescriptor& socket) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  if (getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    ThrowSystemError("getsockname");
  }
  if (address.ss_family == AF_INET6) {
    return ntohs(reinterpret_cast<const sockaddr_in6*>(&address)->sin6_port);
  }
  return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

void ResetConnection(FileDescriptor socket) {
  const linger at_once{1, 0};
  setsockopt(socket.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

}  // namespace VirtualPrinter

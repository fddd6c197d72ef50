// Printers for the tests: a UDP or TCP socket on the loopback interface, served in a thread.
#ifndef TESTS_PORT_DRIVER_PEERS_H_
#define TESTS_PORT_DRIVER_PEERS_H_

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "port_driver/FileDescriptor.h"
#include "port_driver/HostAddress.h"

namespace ZIOP {

// A socket bound to a numeric address; port 0 takes a free one.
inline FileDescriptor Bind(int type, uint16_t port = 0, const char* host = "127.0.0.1") {
  Waiter waiter;
  HostAddress address = ResolveHost(host, Deadline::After(std::chrono::hours(1)), waiter).front();
  address.SetPort(port);
  FileDescriptor socket(::socket(address.family(), type | SOCK_CLOEXEC, 0));
  if (::bind(socket.get(), address.get(), address.length) != 0) {
    throw std::runtime_error("bind");
  }
  return socket;
}

inline uint16_t PortOf(const FileDescriptor& socket) {
  sockaddr_in6 address{};  // the port stands at the same place for both families
  socklen_t length = sizeof address;
  ::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin6_port);
}

// Calls serve with the socket until it gives false, which it has to once the socket is shut down.
class Peer {
 public:
  Peer(FileDescriptor socket, std::function<bool(int socket)> serve)
      : socket_(std::move(socket)), thread_([this, serve = std::move(serve)] {
          while (serve(socket_.get())) {
          }
        }) {}
  ~Peer() {
    ::shutdown(socket_.get(), SHUT_RD);
    thread_.join();
  }

  uint16_t port() const { return PortOf(socket_); }

 private:
  FileDescriptor socket_;
  std::thread thread_;
};

// The script gets each datagram and gives those that go back.
inline Peer UdpPeer(std::function<std::vector<std::string>(const std::string& request)> script,
                    uint16_t port = 0, const char* host = "127.0.0.1") {
  return Peer(Bind(SOCK_DGRAM, port, host), [script = std::move(script)](int socket) {
    char buffer[512];
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    auto* address = reinterpret_cast<sockaddr*>(&from);
    const ssize_t n = ::recvfrom(socket, buffer, sizeof buffer, 0, address, &length);
    if (n <= 0) {
      return false;
    }
    for (const auto& answer : script(std::string(buffer, static_cast<std::size_t>(n)))) {
      ::sendto(socket, answer.data(), answer.size(), MSG_NOSIGNAL, address, length);
    }
    return true;
  });
}

// The script gets each connection, one after the other; it is closed when the script returns.
inline Peer TcpPeer(std::function<void(int connection)> script) {
  FileDescriptor listener = Bind(SOCK_STREAM);
  ::listen(listener.get(), 8);
  return Peer(std::move(listener), [script = std::move(script)](int socket) {
    const FileDescriptor connection(::accept4(socket, nullptr, nullptr, SOCK_CLOEXEC));
    if (connection) {
      script(connection.get());
    }
    return static_cast<bool>(connection);
  });
}

// Reads length bytes, or to the end; "(broken)" follows what came before a reset.
inline std::string ReadAll(int connection, std::size_t length = std::string::npos) {
  std::string bytes, buffer(65536, '\0');
  while (bytes.size() < length) {
    const std::size_t wanted = std::min(buffer.size(), length - bytes.size());
    const ssize_t n = ::recv(connection, buffer.data(), wanted, 0);
    if (n <= 0) {
      return n == 0 ? bytes : bytes + "(broken)";
    }
    bytes.append(buffer, 0, static_cast<std::size_t>(n));
  }
  return bytes;
}

inline void SendAll(int connection, std::string_view bytes) {
  ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_PEERS_H_

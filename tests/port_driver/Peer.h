// A printer's socket for the tests, and the SNMP answers that it gives.
#ifndef TESTS_PORT_DRIVER_PEER_H_
#define TESTS_PORT_DRIVER_PEER_H_

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "port_driver/HostAddress.h"
#include "util/FileDescriptor.h"

namespace ZIOP {

// Bound to a numeric address; port 0 takes a free one. Waits end after 20 s, with nothing.
class Peer {
 public:
  explicit Peer(int type, uint16_t port = 0, const char* host = "127.0.0.1") {
    Waiter waiter;
    peer_ = ResolveHost(host, Deadline::After(std::chrono::hours(1)), waiter).front();
    peer_.SetPort(port);
    socket_ = FileDescriptor(::socket(peer_.family(), type | SOCK_CLOEXEC, 0));
    EXPECT_EQ(::bind(socket_.get(), peer_.get(), peer_.length), 0);
    EXPECT_TRUE(type != SOCK_STREAM || ::listen(socket_.get(), 8) == 0);
    const timeval bound{20, 0};  // which the connections inherit
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
  }

  uint16_t port() const {
    sockaddr_in6 address{};  // the port stands at the same place for both families
    socklen_t length = sizeof address;
    ::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin6_port);
  }

  // Waits for a datagram, whose sender Send() answers, if need be from another peer's address.
  std::string Receive() {
    char buffer[512];
    peer_.length = sizeof peer_.storage;
    auto* address = reinterpret_cast<sockaddr*>(&peer_.storage);
    const ssize_t n = ::recvfrom(socket_.get(), buffer, sizeof buffer, 0, address, &peer_.length);
    return {buffer, static_cast<std::size_t>(std::max<ssize_t>(n, 0))};
  }
  void Send(const std::string& bytes) const { SendTo(peer_, bytes); }
  void Send(const std::string& bytes, const Peer& from) const { from.SendTo(peer_, bytes); }
  void SendTo(const HostAddress& receiver, const std::string& bytes) const {
    ::sendto(socket_.get(), bytes.data(), bytes.size(), 0, receiver.get(), receiver.length);
  }
  const HostAddress& sender() const { return peer_; }

  FileDescriptor Accept() const {
    return FileDescriptor(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  }

 private:
  FileDescriptor socket_;
  HostAddress peer_{};
};

// The calling thread's processor time so far, in milliseconds.
inline long ProcessorTime() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return time.tv_sec * 1000 + time.tv_nsec / 1000000;
}

// Reads length bytes, or to the end, which for a terminal is that the host closes it; "(broken)"
// follows what came before a reset, "(silence)" what came before 20 s without a byte.
inline std::string ReadAll(const FileDescriptor& connection,
                           std::size_t length = std::string::npos) {
  std::string bytes, buffer(65536, '\0');
  while (bytes.size() < length) {
    const std::size_t wanted = std::min(buffer.size(), length - bytes.size());
    pollfd polled{connection.get(), POLLIN, 0};
    if (::poll(&polled, 1, 20000) == 0) {
      return bytes + "(silence)";
    }
    const ssize_t n = ::read(connection.get(), buffer.data(), wanted);
    if (n <= 0) {
      return n == 0 || errno == EIO ? bytes : bytes + "(broken)";
    }
    bytes.append(buffer, 0, static_cast<std::size_t>(n));
  }
  return bytes;
}

inline void Send(const FileDescriptor& connection, const std::string& bytes) {
  if (::send(connection.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0 && errno == ENOTSOCK) {
    EXPECT_GE(::write(connection.get(), bytes.data(), bytes.size()), 0);
  }
}

// One BER element; the length takes one byte or, from 128 on, five.
inline std::string Element(int tag, const std::string& content) {
  std::string element(1, static_cast<char>(tag));
  element += content.size() < 128 ? "" : "\x84";
  for (int shift = content.size() < 128 ? 0 : 24; shift >= 0; shift -= 8) {
    element += static_cast<char>(content.size() >> shift);
  }
  return element + content;
}

// The answer to a status request, with its version, community, request-id and name.
inline std::string SnmpAnswer(const std::string& request, const std::string& value) {
  const std::string binding = Element(0x30, request.substr(31, 16) + value);
  const std::string pdu = Element(0xA2, request.substr(15, 12) + Element(0x30, binding));
  return Element(0x30, request.substr(2, 11) + pdu);
}

// The one of exactly size bytes, 197 or more.
inline std::string SnmpAnswer(const std::string& request, std::size_t size) {
  return SnmpAnswer(request, Element(0x04, std::string(size - 69, 'x')));
}

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_PEER_H_

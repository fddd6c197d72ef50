// Whether a machine has the loopback address of IPv6, ::1. Containers often lack it.
#ifndef TESTS_LOOPBACK6_H_
#define TESTS_LOOPBACK6_H_

#include <netinet/in.h>
#include <sys/socket.h>

#include "util/FileDescriptor.h"

inline bool HasLoopback6() {
  const Ravik::FileDescriptor probe(socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_addr = in6addr_loopback;
  return bind(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

constexpr char kNoLoopback6[] = "without ::1, which this machine lacks";

#endif  // TESTS_LOOPBACK6_H_

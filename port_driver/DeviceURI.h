// Device URI of a printer, in the printing system's forms:
//
//   socket://HOST[:PORT][/][?OPTION=VALUE[&OPTION=VALUE]...]   a network printer
//   file:///PATH[?timeout=MILLISECONDS]                        a local character device
//
// HOST is a name, an IPv4 address or an IPv6 address in brackets, which may end in a zone
// (RFC 6874: "%25" and the interface); PORT is the raw data port; /PATH is the device's node.
// Percent-encoding as in RFC 3986 is decoded in the host, the path and the options.
#ifndef PORT_DRIVER_DEVICEURI_H_
#define PORT_DRIVER_DEVICEURI_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ZIOP {

// Longest URI that is read, in bytes.
constexpr std::size_t kMaximumURILength = 2048;

struct DeviceURI {
  std::string path;         // of the node, absolute; empty for a network printer
  std::string host;         // without brackets, ready for getaddrinfo; empty for a device
  uint16_t rawPort = 9100;  // TCP, 1 to 65535
  uint16_t snmpPort = 161;  // "snmp": UDP, 1 to 65535
  std::chrono::milliseconds timeout{1000};  // "timeout": one try, 1 to 600000
  int retries = 3;                          // "retries": tries after the first, 0 to 100
  bool matchesIdOnly = false;               // "match=id": the answer's object identifier is free

  // Reads a URI that need not be zero-terminated. Throws DriverError: kUnsupported for a scheme
  // other than these two, kParameter for anything else that does not follow the form above or its
  // ranges, or for an option that is unknown to the scheme or given twice; the message says
  // which. What a device has no option for is unset, and it has no retries.
  static DeviceURI Parse(std::string_view text);

  bool isLocal() const { return !path.empty(); }

  // The port's own time: how long all tries together may wait for the printer.
  std::chrono::milliseconds budget() const { return timeout * (1 + retries); }
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DEVICEURI_H_

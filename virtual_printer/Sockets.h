// The network ports' sockets. Failures are thrown as std::system_error with the failing call.
#ifndef VIRTUAL_PRINTER_SOCKETS_H_
#define VIRTUAL_PRINTER_SOCKETS_H_

#include <cstdint>
#include <string>

#include "virtual_printer/FileDescriptor.h"

namespace VirtualPrinter {

// A non-blocking UDP socket bound to a numeric IPv4 or IPv6 address; port 0 is any free one.
FileDescriptor BindDatagramSocket(const std::string& address, std::uint16_t port);

// A non-blocking TCP socket that listens there.
FileDescriptor ListenOnStreamSocket(const std::string& address, std::uint16_t port);

std::uint16_t BoundPort(const FileDescriptor& socket);

// Closes a connection with RST instead of FIN.
void ResetConnection(FileDescriptor socket);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_SOCKETS_H_

// The raw data connection of a network printer, over TCP.
#ifndef PORT_DRIVER_RAWCONNECTION_H_
#define PORT_DRIVER_RAWCONNECTION_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "port_driver/DeviceURI.h"
#include "port_driver/HostAddress.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

// Connects on first use, and again on the first use after Close or a failure. Every single wait is
// bounded by the port's own time (DeviceURI::budget). All operations but Close throw DriverError
// with the connection aborted, so that the printer never takes the next command for the rest of a
// broken one; only a silent printer in Read leaves the connection up.
class RawConnection {
 public:
  // Does not connect. uri and waiter must outlive the connection.
  RawConnection(const DeviceURI& uri, std::vector<HostAddress> addresses, Waiter& waiter);

  // Hands all of bytes to the operating system, in order, waiting whenever the printer is slow.
  void Write(std::string_view bytes);

  // Everything written is on its way already; reports a connection that broke since.
  void Flush();

  // Reads what the printer sends: returns when capacity bytes are there, when the printer hung up,
  // or when after the first byte it paused for a quarter of one try's time. Gives how many bytes,
  // at least 1 unless capacity is 0. Throws kTimeout for a printer that sends nothing in the port's
  // own time, or whose reply takes longer than that from its first byte on, and kPrinter for one
  // that hung up without sending.
  std::size_t Read(char* buffer, std::size_t capacity);

  // Ends the connection in order: what was written goes out first, and the socket is only closed
  // when the printer has closed its side and has acknowledged every byte, because closing earlier
  // can make the system discard bytes on their way. Both are waited for as long as the port's own
  // time; a printer that then keeps its side open is no failure, one that has not acknowledged
  // every byte is. Closed afterwards in any case.
  void Close();

  // Ends the connection at once, without sending what is queued, and lets the printer see it.
  // Without a connection it does nothing.
  void Abort();

 private:
  void Connect();
  FileDescriptor ConnectTo(const HostAddress& address, const Deadline& deadline);
  void Send(std::string_view bytes);
  bool ReceiveReply(char* buffer, std::size_t capacity, std::size_t& length);
  bool Receive(char* buffer, std::size_t capacity, std::size_t& length);
  void Drain(int socket, const Deadline& deadline);
  void AwaitAcknowledgement(int socket, const Deadline& deadline);

  const DeviceURI& uri_;
  std::vector<HostAddress> addresses_;
  Waiter& waiter_;
  FileDescriptor socket_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_RAWCONNECTION_H_

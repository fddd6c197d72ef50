// The raw data connection of a network printer, over TCP.
#ifndef PORT_DRIVER_RAWCONNECTION_H_
#define PORT_DRIVER_RAWCONNECTION_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include "port_driver/ByteStream.h"
#include "port_driver/HostAddress.h"
#include "util/FileDescriptor.h"

namespace ZIOP {

// Connects on first use, and again on the first use after Close, Abort or a printer that hung up. A
// failed operation aborts the connection, so that the printer never takes the next command for the
// rest of a broken one.
class RawConnection : public ByteStream {
 public:
  // Does not connect. What is given must outlive the connection.
  RawConnection(const DeviceURI& uri, const std::vector<HostAddress>& addresses, Waiter& waiter)
      : ByteStream(uri, waiter), addresses_(addresses) {}

  // Everything written is on its way already; reports a connection that broke since.
  void Flush() override;

  // Ends the connection in order: what was written goes out first, and the socket is only closed
  // when the printer has closed its side and has acknowledged every byte, because closing earlier
  // can make the system discard bytes on their way. Both are waited for as long as the port's own
  // time; a printer that then keeps its side open is no failure, one that has not acknowledged
  // every byte is. Closed afterwards in any case.
  void Close();

 private:
  void PrepareToWrite(std::string_view bytes) override;
  void PrepareToRead() override { Connect(); }
  void Abort() override;
  int descriptor() const override { return socket_.get(); }
  const char* name() const override { return "raw"; }
  std::size_t TryToSend(std::string_view bytes) override;
  std::size_t TryToReceive(char* buffer, std::size_t capacity) override;

  void Connect();
  FileDescriptor ConnectTo(const HostAddress& address, const Deadline& deadline);
  void Drain(int socket, const Deadline& deadline);
  void AwaitAcknowledgement(int socket, const Deadline& deadline);

  const std::vector<HostAddress>& addresses_;
  FileDescriptor socket_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_RAWCONNECTION_H_

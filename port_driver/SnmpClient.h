// Exchange of SNMP messages with one printer over UDP.
#ifndef PORT_DRIVER_SNMPCLIENT_H_
#define PORT_DRIVER_SNMPCLIENT_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "port_driver/DeviceURI.h"
#include "port_driver/DriverTrace.h"
#include "port_driver/HostAddress.h"
#include "port_driver/SnmpMessage.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

class SnmpClient {
 public:
  // Throws DriverError if no address of the host can be reached. Sends nothing and does not block.
  // What is given must outlive the client; there are at most kMaximumAddresses.
  SnmpClient(const DeviceURI& uri, const std::vector<HostAddress>& addresses, Waiter& waiter);

  // Sends request, one whole SNMP message, and waits for the answer to it; sends again whenever the
  // time of one try is over, and throws DriverError (kTimeout) after the last. Every exchange has
  // sockets of its own, each connected to one address, so that only what the host itself sends is
  // ever seen, and nothing that answers an earlier exchange: requests may ask the same with the
  // same request-id. Datagrams that do not answer the request are passed over. A printer that
  // refuses is asked again like one that is silent: it may be starting. Of several addresses the
  // next is tried when one stays silent or refuses. The answer lies in the client's buffer, valid
  // until the next exchange.
  std::string_view Exchange(std::string_view request);

 private:
  // Room for the longest datagram.
  class Buffer {
   public:
    Buffer();
    ~Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    char* data() { return bytes_.get(); }

   private:
    std::unique_ptr<char[]> bytes_;
  };

  struct Socket {
    FileDescriptor descriptor;
    HostAddress address;  // that it is connected to
    int lastError = 0;    // of the last send or receive: 0 or errno
  };

  void Connect();
  bool Try(std::string_view request, const SnmpMessage& asked);
  void Send(std::string_view request);
  bool ReceiveAnswer(const SnmpMessage& asked);
  bool Receive(Socket& socket, const SnmpMessage& asked);
  void TurnToNextAddress();
  std::string Failure() const;

  const DeviceURI& uri_;
  Waiter& waiter_;
  const std::vector<HostAddress>& addresses_;
  std::vector<Socket> sockets_;
  bool used_ = false;       // whether an exchange has had the sockets
  std::size_t active_ = 0;  // the one that requests are sent on
  Buffer buffer_;
  std::string_view answer_;
  SnmpTrace trace_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_SNMPCLIENT_H_

// The port to one network printer: commands and status by SNMP, data by the raw connection.
#ifndef PORT_DRIVER_NETWORKPORT_H_
#define PORT_DRIVER_NETWORKPORT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "port_driver/DeviceURI.h"
#include "port_driver/RawConnection.h"
#include "port_driver/SnmpClient.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

// Operations throw DriverError; those that need an open port throw kParameter on a closed one.
// All are called from one thread, but for Cancel. Every wait is bounded by DeviceURI::budget,
// an SNMP exchange and so the status with all its tries.
class NetworkPort {
 public:
  explicit NetworkPort(DeviceURI uri) : uri_(std::move(uri)) {}
  NetworkPort(const NetworkPort&) = delete;  // the open channels refer to it
  NetworkPort& operator=(const NetworkPort&) = delete;

  // Resolves the host and makes the SNMP socket; sends nothing yet.
  void Open();

  // Ends the raw connection in order. The port is closed afterwards also when this throws.
  void Close();

  // Ends the wait in progress with kCancelled; without one it does nothing. See Waiter.
  void Cancel() { waiter_.Cancel(); }

  // See SnmpClient::Exchange. The answer stays valid until the next operation.
  std::string_view ExchangeSnmp(std::string_view request);

  // The printer's status text, any bytes. Throws kPrinter when the printer has none.
  std::string Status();

  // See RawConnection.
  void Write(std::string_view bytes);
  void Flush();
  std::size_t Read(char* buffer, std::size_t capacity);

  // Write, Flush and Read as one operation. After a failure the connection is aborted, so that a
  // late reply is not taken for the one to the next command.
  std::size_t Control(std::string_view command, char* reply, std::size_t capacity);

 private:
  struct Channels {
    SnmpClient snmp;
    RawConnection raw;
  };

  Channels& Start();

  DeviceURI uri_;
  Waiter waiter_;
  std::optional<Channels> channels_;  // while the port is open
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORKPORT_H_

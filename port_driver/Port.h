// The port to one printer, whatever it is reached over.
#ifndef PORT_DRIVER_PORT_H_
#define PORT_DRIVER_PORT_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "port_driver/ByteStream.h"
#include "port_driver/DeviceURI.h"
#include "port_driver/Waiter.h"

namespace ZIOP {

// Operations throw DriverError; those that need an open port throw kParameter on a closed one.
// All are called from one thread, but for Cancel. Every wait is bounded by DeviceURI::budget.
class Port {
 public:
  virtual ~Port() = default;
  Port(const Port&) = delete;  // what is open refers to it
  Port& operator=(const Port&) = delete;

  virtual void Open() = 0;

  // Ends the byte stream in order. The port is closed afterwards also when this throws.
  virtual void Close() = 0;

  // Ends the wait in progress with kCancelled; without one it does nothing. See Waiter.
  void Cancel() { waiter_.Cancel(); }

  // See SnmpClient::Exchange. The answer stays valid until the next operation. Throws kUnsupported
  // on a port without SNMP.
  virtual std::string_view ExchangeSnmp(std::string_view request) = 0;

  // The printer's status text, any bytes. Throws kPrinter when the printer has none.
  virtual std::string Status() = 0;

  // See ByteStream.
  void Write(std::string_view bytes) { Stream().Write(bytes); }
  void Flush() { Stream().Flush(); }
  std::size_t Read(char* buffer, std::size_t capacity) { return Stream().Read(buffer, capacity); }
  std::size_t Control(std::string_view command, char* reply, std::size_t capacity) {
    return Stream().Control(command, reply, capacity);
  }

 protected:
  explicit Port(std::shared_ptr<const DeviceURI> uri) : shared_uri_(std::move(uri)) {}

  // Begins an operation on the open port.
  virtual ByteStream& Stream() = 0;

  // Begins the operation that opens the port, or one on the open port.
  void StartToOpen(bool is_open);
  void StartOnOpen(bool is_open);

  const DeviceURI& uri() const { return *shared_uri_; }

  Waiter waiter_;

 private:
  const std::shared_ptr<const DeviceURI> shared_uri_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_PORT_H_

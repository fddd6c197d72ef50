// The port to one printer at a local character device: everything goes over the device.
#ifndef PORT_DRIVER_LOCALPORT_H_
#define PORT_DRIVER_LOCALPORT_H_

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "port_driver/LocalDevice.h"
#include "port_driver/Port.h"

namespace ZIOP {

class LocalPort : public Port {
 public:
  explicit LocalPort(std::shared_ptr<const DeviceURI> uri) : Port(std::move(uri)) {}

  // See LocalDevice.
  void Open() override;
  void Close() override;

  // Always kUnsupported.
  std::string_view ExchangeSnmp(std::string_view request) override;

  // Asks with the command "ST" in remote mode; the text is what comes back before the printer
  // pauses, at most ZIO_STATUS_BUFFER_SIZE - 1 bytes.
  std::string Status() override;

 private:
  ByteStream& Stream() override;

  std::unique_ptr<LocalDevice> device_;  // while the port is open
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_LOCALPORT_H_

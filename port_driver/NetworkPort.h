// The port to one network printer: commands and status by SNMP, data by the raw connection.
#ifndef PORT_DRIVER_NETWORKPORT_H_
#define PORT_DRIVER_NETWORKPORT_H_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "port_driver/Port.h"
#include "port_driver/RawConnection.h"
#include "port_driver/SnmpClient.h"

namespace ZIOP {

// An SNMP exchange, and so the status, takes no longer than DeviceURI::budget with all its tries.
class NetworkPort : public Port {
 public:
  explicit NetworkPort(std::shared_ptr<const DeviceURI> uri) : Port(std::move(uri)) {}

  // Resolves the host; sends nothing yet.
  void Open() override;
  void Close() override;
  std::string_view ExchangeSnmp(std::string_view request) override;
  std::string Status() override;

 private:
  struct Channels {
    Channels(const DeviceURI& uri, std::vector<HostAddress> hosts, Waiter& waiter)
        : addresses(std::move(hosts)), snmp(uri, addresses, waiter), raw(uri, addresses, waiter) {}
    Channels(const Channels&) = delete;  // what is open refers to the addresses
    Channels& operator=(const Channels&) = delete;

    const std::vector<HostAddress> addresses;
    SnmpClient snmp;
    RawConnection raw;
  };

  ByteStream& Stream() override { return Start().raw; }
  Channels& Start();

  std::optional<Channels> channels_;  // while the port is open
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_NETWORKPORT_H_

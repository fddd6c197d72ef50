// The order of a port's operations.
#include "port_driver/Port.h"

#include "port_driver/DriverError.h"

namespace ZIOP {

void Port::StartToOpen(bool is_open) {
  if (is_open) {
    throw DriverError(DriverCode::kParameter, "the port is open already");
  }
  waiter_.Start();
}

void Port::StartOnOpen(bool is_open) {
  if (!is_open) {
    throw DriverError(DriverCode::kParameter, "the port is not open");
  }
  waiter_.Start();
}

}  // namespace ZIOP

// Text of a failed system call.
#include "port_driver/DriverError.h"

#include <system_error>

namespace ZIOP {

DriverError DriverError::System(const std::string& call, int error) {
  return {DriverCode::kSystem, call + ": " + std::generic_category().message(error) + " (error " +
                                   std::to_string(error) + ")"};
}

}  // namespace ZIOP

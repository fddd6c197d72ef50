// What every slot of a function table does around its operation: no exception gets out.
#ifndef PORT_DRIVER_FUNCTIONTABLE_H_
#define PORT_DRIVER_FUNCTIONTABLE_H_

#include <exception>
#include <new>

#include "port_driver/DriverError.h"

namespace ZIOP {

// Runs operation and gives the slot's result: 0, or the code of what it threw. report is called
// with that code and the message; it must not throw.
template <typename Operation, typename Report>
int Guard(Operation operation, Report report) noexcept {
  DriverCode code = DriverCode::kSuccess;
  try {
    operation();
  } catch (const DriverError& error) {
    report(code = error.code(), error.what());
  } catch (const std::bad_alloc&) {
    report(code = DriverCode::kMemory, "out of memory");
  } catch (const std::exception& error) {
    report(code = DriverCode::kSystem, error.what());
  }
  return static_cast<int>(code);
}

// Throws kParameter with the reason unless condition holds.
inline void Require(bool condition, const char* reason) {
  if (!condition) {
    throw DriverError(DriverCode::kParameter, reason);
  }
}

}  // namespace ZIOP

#endif  // PORT_DRIVER_FUNCTIONTABLE_H_

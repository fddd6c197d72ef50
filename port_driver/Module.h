// Shared objects beside the driver, loaded by the requests that need them.
#ifndef PORT_DRIVER_MODULE_H_
#define PORT_DRIVER_MODULE_H_

#include <string>

namespace ZIOP {

// Absolute path of the folder that holds this code's own file; empty when it cannot be told.
std::string DriverFolder();

// The function called symbol of the module at path, an absolute one, which stays loaded until the
// process ends. Null, with one line on standard error, when the module or the function cannot be
// had.
void* FindInModule(const std::string& path, const char* symbol);

template <typename Function>
Function* LoadModule(const std::string& path, const char* symbol) {
  return reinterpret_cast<Function*>(FindInModule(path, symbol));
}

}  // namespace ZIOP

#endif  // PORT_DRIVER_MODULE_H_

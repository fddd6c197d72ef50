// What goes wrong in the port driver: the result codes of every slot, and the exception that
// carries one up to the function tables, where all of them are translated.
#ifndef PORT_DRIVER_DRIVERERROR_H_
#define PORT_DRIVER_DRIVERERROR_H_

#include <stdexcept>
#include <string>

namespace ZIOP {

// Results of the driver's slots. -1 and -50 are the worker's own and stay unused here.
enum class DriverCode : int {
  kSuccess = 0,
  kParameter = -2,    // the caller's fault: an argument, a call out of order, an unreadable URI
  kSystem = -3,       // the operating system refused; the message names the call and its error
  kTimeout = -4,      // the printer did not answer, or took no bytes, in the port's own time
  kUnsupported = -5,  // nothing that this port or this driver does
  kMemory = -6,       // out of memory
  kCancelled = -7,    // ended by the cancel slot
  kPrinter = -8,      // the printer answered with an error, or hung up
};

// A failed operation. what() is one line for a person to read.
class DriverError : public std::runtime_error {
 public:
  DriverError(DriverCode code, const std::string& message)
      : std::runtime_error(message), code_(code) {}

  // A failed system call: the message holds the call, the error's text and its number.
  static DriverError System(const std::string& call, int error);

  DriverCode code() const { return code_; }

 private:
  DriverCode code_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DRIVERERROR_H_

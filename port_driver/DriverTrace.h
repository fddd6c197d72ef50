// Trace lines of the port driver.
#ifndef PORT_DRIVER_DRIVERTRACE_H_
#define PORT_DRIVER_DRIVERTRACE_H_

#include <chrono>
#include <string>
#include <string_view>

#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "port_driver/HostAddress.h"
#include "port_driver/SnmpMessage.h"
#include "util/ProcessTrace.h"

namespace ZIOP {

// Writes one line if a trace is asked for; otherwise a call costs one branch, so that arguments
// that have to be made come from a caller that has asked IsTraced(). port is network, snmp, raw or
// local.
inline bool IsTraced() {
  return Ravik::ProcessTrace::IsOn();
}
inline void Trace(const char* port, const char* event, std::string_view bytes,
                  std::string_view text = {}) {
  if (IsTraced()) Ravik::ProcessTrace::Write({"driver", port, event, bytes, text});
}

// A failed operation.
void TraceFailure(const char* port, DriverCode code, const char* message) noexcept;

// A failed system call that the driver goes on after.
void TraceFailedCall(const char* port, const char* call, int error);

// "to=127.0.0.1:9100", for the name "to".
std::string TraceAddress(const std::string& name, const HostAddress& address);

// What an answer holds: "error-status=0 value="..."", with at most so many bytes of the value.
std::string TraceAnswer(const SnmpMessage& answer, std::size_t limit = 64);

// The tries of one SNMP exchange. Without a trace each call is one branch.
class SnmpTrace {
 public:
  // uri must outlive the trace.
  explicit SnmpTrace(const DeviceURI& uri) : uri_(uri) {}

  // attempt is 0 for the first try.
  void Start(int attempt) {
    if (IsTraced()) StartTry(attempt);
  }
  void Sending(std::string_view request, const HostAddress& address) const {
    if (IsTraced()) TellSent(request, address);
  }
  void Received(std::string_view bytes, const SnmpMessage& answer) const {
    if (IsTraced()) TellAnswer(bytes, answer);
  }
  // message is null for what is no SNMP message.
  void Ignored(std::string_view bytes, const SnmpMessage* message, const SnmpMessage& asked) const {
    if (IsTraced()) TellIgnored(bytes, message, asked);
  }
  void TimedOut() const {
    if (IsTraced()) TellTimeout();
  }

 private:
  void StartTry(int attempt);
  void TellSent(std::string_view request, const HostAddress& address) const;
  void TellAnswer(std::string_view bytes, const SnmpMessage& answer) const;
  void TellIgnored(std::string_view bytes, const SnmpMessage* message,
                   const SnmpMessage& asked) const;
  void TellTimeout() const;

  const DeviceURI& uri_;
  std::string try_;  // "try=1/4"
  std::chrono::steady_clock::time_point start_{};
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DRIVERTRACE_H_

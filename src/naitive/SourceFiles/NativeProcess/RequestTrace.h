// Trace lines of one request of the host.
#ifndef NATIVEPROCESS_REQUESTTRACE_H_
#define NATIVEPROCESS_REQUESTTRACE_H_

#include <chrono>
#include <string_view>

#include "util/ProcessTrace.h"

namespace Ravik {

// Where nobody asked for a trace, it costs one branch at either end of the request.
class RequestTrace {
 public:
  // request is decoded.
  explicit RequestTrace(std::string_view request) {
    if (ProcessTrace::IsOn()) Begin(request);
  }

  void End(long code, std::string_view answer) const {
    if (ProcessTrace::IsOn()) Tell(code, answer);
  }

 private:
  void Begin(std::string_view request);
  void Tell(long code, std::string_view answer) const;

  std::chrono::steady_clock::time_point start_{};  // set while a trace is written
};

}  // namespace Ravik

#endif  // NATIVEPROCESS_REQUESTTRACE_H_

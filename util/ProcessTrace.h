// The trace that the environment asks a process for.
#ifndef UTIL_PROCESSTRACE_H_
#define UTIL_PROCESSTRACE_H_

#include <atomic>

#include "util/TraceLine.h"

namespace Ravik {

// Names the file that the trace is written to, or "-" for standard error.
constexpr char kTraceVariable[] = "PRINTER_TRACE";

// Writes lines if PRINTER_TRACE is set and not empty. Without it an event costs the branch on
// IsOn().
class ProcessTrace {
 public:
  // Reads PRINTER_TRACE, on the first call in a process. False if it names a file that cannot be
  // opened, which reporter then reports on standard error.
  static bool Start(const char* reporter) noexcept;

  static bool IsOn() { return is_on_.load(std::memory_order_relaxed); }

  // Writes one line if the trace is on. May be called from any thread after Start.
  static void Write(const TraceEvent& event);

 private:
  static std::atomic<bool> is_on_;
};

}  // namespace Ravik

#endif  // UTIL_PROCESSTRACE_H_

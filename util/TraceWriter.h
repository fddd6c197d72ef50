// Where trace lines go.
#ifndef UTIL_TRACEWRITER_H_
#define UTIL_TRACEWRITER_H_

#include <atomic>
#include <string>

#include "util/FileDescriptor.h"
#include "util/TraceLine.h"

namespace Ravik {

// Writes lines to one file, each with one write(2) at the file's end, so that the lines of several
// threads and processes do not mix. May be used from any thread.
class TraceWriter {
 public:
  // To standard error, "-", or to the file at target, which is made for its owner alone (mode 0600)
  // or, a regular file of the user, written behind what it holds. reporter is who tells of a
  // failure. Throws std::system_error, whose text names what failed: EINVAL for what is no regular
  // file, which is not opened, ELOOP for a symbolic link, EPERM for a file of another user.
  TraceWriter(std::string reporter, const std::string& target);

  // Writes one line; waits up to a second for a standard error that takes nothing. The first line
  // that cannot be written ends the trace and is reported on standard error. False when it has
  // ended.
  bool Write(const TraceEvent& event);

 private:
  const std::string reporter_;
  FileDescriptor file_;  // none for standard error
  std::atomic<bool> has_failed_{false};
};

}  // namespace Ravik

#endif  // UTIL_TRACEWRITER_H_

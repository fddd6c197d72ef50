// Writing a line without blocking for long and without signals.
#ifndef UTIL_WRITEONCE_H_
#define UTIL_WRITEONCE_H_

#include <chrono>
#include <string_view>

namespace Ravik {

// Writes text, no longer than PIPE_BUF, as soon as the descriptor takes bytes, and waits for that
// no longer than patience. That is a single write(2), but for a terminal that takes it in pieces.
// 0, or why it was not written whole: an errno value, EAGAIN if nobody took it in time. No signal
// is raised for a pipe without a reader or a file at its limit of size.
int WriteOnce(int descriptor, std::string_view text, std::chrono::milliseconds patience);

}  // namespace Ravik

#endif  // UTIL_WRITEONCE_H_

// Lines on standard error.
#ifndef UTIL_DIAGNOSTICS_H_
#define UTIL_DIAGNOSTICS_H_

#include <string>
#include <string_view>

namespace Ravik {

// text in ASCII on one line: every byte that is not a printable ASCII character, and the backslash,
// as "\x" and two hexadecimal digits.
std::string Printable(std::string_view text);

// Writes one line, led by who reports it, to standard error, if somebody is there to take it at
// once: a pipe that is full or has no reader costs the line, and neither blocks nor signals. Both
// texts are printable; what is longer than PIPE_BUF is cut off. A trace gets the line too.
void ReportLine(const std::string& reporter, const std::string& line);

}  // namespace Ravik

#endif  // UTIL_DIAGNOSTICS_H_

// Lines on standard error.
#include "util/Diagnostics.h"

#include <poll.h>
#include <unistd.h>

#include <climits>

namespace Ravik {

std::string Printable(std::string_view text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string printable;
  for (const char c : text) {
    if (c >= 0x20 && c < 0x7F && c != '\\') {
      printable += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    printable += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
  }
  return printable;
}

void ReportLine(const std::string& reporter, const std::string& line) {
  const std::string text = (reporter + ": " + line).substr(0, PIPE_BUF - 1) + "\n";
  pollfd standard_error{STDERR_FILENO, POLLOUT, 0};
  if (::poll(&standard_error, 1, 0) == 1 && standard_error.revents == POLLOUT) {
    // A line that cannot be written has nowhere else to go.
    static_cast<void>(!::write(STDERR_FILENO, text.data(), text.size()));
  }
}

}  // namespace Ravik

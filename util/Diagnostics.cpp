// Lines on standard error.
#include "util/Diagnostics.h"

#include <unistd.h>

#include <chrono>
#include <climits>

#include "util/ProcessTrace.h"
#include "util/WriteOnce.h"

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
  const std::string text = (reporter + ": " + line).substr(0, PIPE_BUF - 1);
  const char* const program = reporter == "ZIOP" ? "driver" : "worker";
  ProcessTrace::Write({program, "host", "report", {}, text});
  // A line that cannot be written has nowhere else to go.
  static_cast<void>(WriteOnce(STDERR_FILENO, text + '\n', std::chrono::milliseconds(0)));
}

}  // namespace Ravik

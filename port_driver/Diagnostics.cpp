// Lines on standard error.
#include "port_driver/Diagnostics.h"

#include <cstdio>

namespace ZIOP {

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

void ReportLine(const std::string& line) {
  std::fputs(("ZIOP: " + line + "\n").c_str(), stderr);
}

}  // namespace ZIOP

// The command line.
#ifndef VIRTUAL_PRINTER_OPTIONS_H_
#define VIRTUAL_PRINTER_OPTIONS_H_

#include <cstdint>
#include <string>

#include "virtual_printer/Faults.h"
#include "virtual_printer/Printer.h"

namespace VirtualPrinter {

struct Options {
  PrinterSetup setup;
  std::string listen = "127.0.0.1";
  std::uint16_t snmp_port = 0;  // 0: any free port
  std::uint16_t raw_port = 0;
  std::string local_path;  // empty: no local port
  Faults faults;
  bool trace = false;
  bool help = false;  // the other members may be incomplete
};

// Reads the arguments of `main`. Answers an empty text, or what is wrong with them.
std::string ParseOptions(int argc, char* const argv[], Options& options);

std::string HelpText();

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_OPTIONS_H_

// What the virtual printer's tests share: commands, written independently of the printer's own
// code, and a printer without ports.
#ifndef TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_
#define TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

#include <gtest/gtest.h>

#include <string>

#include "virtual_printer/Printer.h"

namespace VirtualPrinter {

inline constexpr char kPlain[] = "QM-R410 Series";

inline Bytes Hex(const std::string& digits) {
  return FromHex(digits).value();
}

inline std::string Repeat(const std::string& text, std::size_t times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

// A command with a true length field; `data` holds the format bytes and the variable part.
inline Bytes MakeCommand(const std::string& name, const std::string& data) {
  const std::size_t size = data.size() / 2;
  return Hex(ToHex(ToBytes(name)) + ToHex(static_cast<std::uint8_t>(size & 0xFF)) +
             ToHex(static_cast<std::uint8_t>(size >> 8)) + data);
}

inline Bytes Write(const std::string& variable) {
  return MakeCommand("EX", "000000001B" + variable);
}
inline Bytes Read(const std::string& variable) {
  return MakeCommand("EX", "010000001B" + variable);
}
inline const Bytes kSave = MakeCommand("SV", "");

struct TestPrinter {
  std::string Ask(const Bytes& command) {
    const Bytes reply = printer.Execute(Port::kRaw, command);
    return std::string(reply.begin(), reply.end());
  }

  std::string state_path;
  Faults faults{};
  Trace trace{nullptr};
  Printer printer{{kPlain, "VP00000001", "1.00", state_path},
                  FactoryRecords(*FindFamily(kPlain)),
                  faults,
                  trace};
};

}  // namespace VirtualPrinter

#endif  // TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

// What the virtual printer's tests share: commands, written independently of the printer's own
// code, and a printer without ports.
#ifndef TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_
#define TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "virtual_printer/Faults.h"
#include "virtual_printer/Printer.h"

namespace VirtualPrinter {

inline constexpr char kPlain[] = "QM-R410 Series";

inline Bytes Hex(const std::string& digits) {
  const auto bytes = FromHex(digits);
  EXPECT_TRUE(bytes) << digits;
  return bytes.value_or(Bytes());
}

inline std::string Text(const Bytes& bytes) {
  return std::string(bytes.begin(), bytes.end());
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
  explicit TestPrinter(const std::vector<std::string>& fault_texts = {},
                       const std::string& state_path = "")
      : printer({kPlain, "VP00000001", "1.00", state_path}, FactoryRecords(*FindFamily(kPlain)),
                faults, trace) {
    for (const auto& text : fault_texts) EXPECT_EQ(faults.Add(text), "") << text;
  }

  std::string Ask(const Bytes& command) { return Text(printer.Execute(Port::kRaw, command)); }

  Faults faults;
  Trace trace{nullptr};
  Printer printer;
};

}  // namespace VirtualPrinter

#endif  // TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

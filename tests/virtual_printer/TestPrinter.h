// What the virtual printer's tests share: commands and requests, written independently of the
// printer's own code, and a printer without ports.
#ifndef TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_
#define TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "virtual_printer/Faults.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/StateFile.h"

namespace VirtualPrinter {

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

inline const std::string kWrite = "000000001B";
inline const std::string kRead = "010000001B";
inline const std::string kNames = "010000001D";
inline const std::string kInitialize = "000000001E";

/// A command with a true length field; `data` holds the format bytes and the variable part.
inline Bytes MakeCommand(const std::string& name, const std::string& data) {
  const Bytes rest = Hex(data);
  Bytes command(name.begin(), name.end());
  command.push_back(static_cast<std::uint8_t>(rest.size() & 0xFF));
  command.push_back(static_cast<std::uint8_t>(rest.size() >> 8));
  command.insert(command.end(), rest.begin(), rest.end());
  return command;
}

inline const Bytes kSave = MakeCommand("SV", "");

inline Faults MakeFaults(const std::vector<std::string>& texts) {
  Faults faults;
  for (const auto& text : texts) EXPECT_EQ(faults.Add(text), "") << text;
  return faults;
}

inline RecordTable LoadedState(const PrinterSetup& setup) {
  const Family& family = *FindFamily(setup.model);
  RecordTable records = FactoryRecords(family);
  if (!setup.state_path.empty()) {
    EXPECT_EQ(LoadState(setup.state_path, family, records), "");
  }
  return records;
}

inline PrinterSetup MakeSetup(const std::string& model, const std::string& state_path = "") {
  PrinterSetup setup;
  setup.model = model;
  setup.state_path = state_path;
  return setup;
}

struct TestPrinter {
  explicit TestPrinter(const PrinterSetup& setup, const std::vector<std::string>& fault_texts = {})
      : faults(MakeFaults(fault_texts)), printer(setup, LoadedState(setup), faults, trace) {}

  explicit TestPrinter(const std::string& model, const std::vector<std::string>& fault_texts = {})
      : TestPrinter(MakeSetup(model), fault_texts) {}

  std::string Ask(const Bytes& command) { return Text(printer.Execute(Port::kRaw, command)); }
  std::string Ex(const std::string& data) { return Ask(MakeCommand("EX", data)); }

  Faults faults;
  Trace trace{nullptr};
  Printer printer;
};

}  // namespace VirtualPrinter

#endif  // TESTS_VIRTUAL_PRINTER_TESTPRINTER_H_

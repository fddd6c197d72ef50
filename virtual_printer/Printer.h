// The printer behind its ports: takes one command at a time and answers it.
#ifndef VIRTUAL_PRINTER_PRINTER_H_
#define VIRTUAL_PRINTER_PRINTER_H_

#include <optional>
#include <string>

#include "virtual_printer/Bytes.h"
#include "virtual_printer/Command.h"
#include "virtual_printer/Faults.h"
#include "virtual_printer/MediaRecord.h"
#include "virtual_printer/Model.h"
#include "virtual_printer/Trace.h"

namespace VirtualPrinter {

struct PrinterSetup {
  std::string model;  // a device name that FindFamily knows
  std::string serial = "VP00000001";
  std::string firmware = "1.00";
  std::string state_path;  // empty: the permanent memory ends with the process
};

class Printer {
 public:
  // Starts from `permanent`, the records that survived the last run. Faults and trace must outlive
  // the printer.
  Printer(PrinterSetup setup, const RecordTable& permanent, Faults& faults, Trace& trace);

  // Carries out one command that came in at `port` and answers its reply. A refused command
  // changes nothing; its reply ends in "NA;" behind as much of the header as is known.
  Bytes Execute(Port port, const Bytes& command);

  Bytes StatusText() const;
  const std::string& Model() const { return setup_.model; }
  const std::string& Serial() const { return setup_.serial; }

  // Writes the permanent records to the state file. Answers an empty text, or what failed.
  std::string SaveState() const;

 private:
  // Each answers the reply behind the header, or nothing for a refusal.
  using Reply = std::optional<Bytes>;
  Reply Run(const Command& command);
  Reply WriteRecord(const Bytes& variable);
  Reply ReadRecord(const Bytes& variable) const;
  Reply ReadNames(const Bytes& variable) const;
  Reply Initialize(const Bytes& variable);
  Reply ReadFirmware(const Bytes& variable) const;
  Reply MakePermanent(const Bytes& variable);

  PrinterSetup setup_;
  const Family& family_;
  RecordTable permanent_;
  RecordTable records_;
  Faults& faults_;
  Trace& trace_;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_PRINTER_H_

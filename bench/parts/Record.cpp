#include "Record.h"

#include <cstdio>
#include <cstdlib>

#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "virtual_printer/Printer.h"

namespace Bench {
namespace {

using Ravik::COMMAND_KEY;
using Ravik::CommandVO;
using Ravik::ParameterMapVO;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(EXIT_FAILURE);
}

COMMAND_KEY ReadKey(COMMAND_KEY write) {
  switch (write) {
    case Ravik::WRITE_CUSTOMMEDIA_INFO2:
      return Ravik::READ_CUSTOMMEDIA_INFO2;
    case Ravik::WRITE_CUSTOMMEDIA_INFO3:
      return Ravik::READ_CUSTOMMEDIA_INFO3;
    default:
      return Ravik::READ_CUSTOMMEDIA_INFO1;
  }
}

}  // namespace

ParameterMapVO ReadParameters(const Operation& read) {
  ParameterMapVO parameters;
  parameters.insert("CustomMediaNo", 3);
  parameters.insert("CommandVersion", read.layout);
  return parameters;
}

CommandVO ReadCommand(const Operation& read) {
  Ravik::CPrinterCommand command;
  if (!command.Set(read.device_name, read.key, ReadParameters(read))) Fail(read.name);
  return command.GetCommand();
}

CommandVO Reply(const Operation& read) {
  VirtualPrinter::Faults faults;
  VirtualPrinter::Trace trace(nullptr);
  VirtualPrinter::PrinterSetup setup;
  setup.model = read.device_name;
  VirtualPrinter::Printer printer(
      setup, VirtualPrinter::FactoryRecords(*VirtualPrinter::FindFamily(read.device_name)), faults,
      trace);
  const auto bytes = printer.Execute(VirtualPrinter::Port::kRaw, ReadCommand(read).bytes());
  return {bytes.data(), static_cast<int>(bytes.size())};
}

ParameterMapVO Values(const Operation& read, const CommandVO& reply) {
  ParameterMapVO values;
  Ravik::APPLICATION_ERROR error = Ravik::ERROR_NONE;
  if (!Ravik::CPrinterReply::AnalysisCommandReply(read.device_name, read.key, reply, values,
                                                  error)) {
    Fail(read.name);
  }
  return values;
}

ParameterMapVO WriteParameters(const Operation& write) {
  Operation read = write;
  read.key = ReadKey(write.key);
  ParameterMapVO values = Values(read, Reply(read));
  values.insert("InitializeCustomMedia", 3);
  return values;
}

}  // namespace Bench

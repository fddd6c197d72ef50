#include "printer_control/PrinterController.h"

#include "GantryCore/IPrinterLibrary.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
#include "printer_control/TransferTrace.h"
#include "printer_io/SearchPrinterMac.h"

namespace Ravik {

namespace {

// Opens the printer, runs transfer on it and closes it.
template <typename Transfer>
bool OpenAndTransfer(const PrinterVO& printer, APPLICATION_ERROR& error, Transfer transfer) {
  IPrinterLibrary library;
  if (!library.OpenLibrary(printer.printerName())) {
    error = ERROR_OPEN;
    return false;
  }
  const bool transferred = transfer(library);
  if (!transferred) error = ERROR_TRANSFER;
  const bool closed = library.CloseLibrary();
  if (!transferred && closed) return false;
  error = closed ? ERROR_NONE : ERROR_CLOSE;
  return closed;
}

// What a command travels over, unless it is print data.
const char* PortName(const IPrinterLibrary& library, const CPrinterCommand& command) {
  if (!library.IsNetworkAccess()) return "local";
  return command.IsRemote() ? "snmp" : "raw";
}

// Sends a read command and takes the reply to it.
bool TransferRead(IPrinterLibrary& library, const CPrinterCommand& command,
                  const TransferTrace& trace, CommandVO& reply) {
  const char* const port = PortName(library, command);
  const CommandVO bytes = command.GetCommand();
  trace.Command(port, bytes);
  const bool transferred = command.IsRemote() ? library.SendCommand(bytes, &reply)
                                              : library.SendCommandD4(bytes, &reply);
  if (transferred) trace.Reply(port, reply);
  return transferred;
}

// Sends a write command, with the command "SV" in the same transfer, as print data.
bool TransferSpooled(IPrinterLibrary& library, const CPrinterCommand& command,
                     const TransferTrace& trace) {
  trace.Command("raw", command.GetCommand());
  if (command.IsSVCmd()) TransferTrace::Save("raw", CPrinterCommand::GetSVCommand());
  return library.SendSpooler(command.GetCommandForSpooler());
}

// Sends a write command on the path that the connection and the command call for.
bool TransferWrite(IPrinterLibrary& library, const CPrinterCommand& command,
                   const TransferTrace& trace) {
  if (library.IsNetworkAccess() && !command.IsBGJC()) {
    return TransferSpooled(library, command, trace);
  }
  const char* const port = PortName(library, command);
  const auto send = [&](const CommandVO& bytes) {
    return command.IsRemote() ? library.SendCommand(bytes, nullptr)
                              : library.SendCommandD4(bytes, nullptr);
  };
  const CommandVO bytes = command.GetCommand();
  trace.Command(port, bytes);
  if (!send(bytes)) return false;
  if (!command.IsSVCmd()) return true;
  const CommandVO save = CPrinterCommand::GetSVCommand();
  TransferTrace::Save(port, save);
  return send(save);
}

}  // namespace

bool CPrinterController::Read(COMMAND_KEY key, const PrinterVO& printer, const ParameterMapVO& in,
                              ParameterMapVO& out, APPLICATION_ERROR& error) {
  if (key == READ_STATUS) {
    StatusReply status;
    if (!ReadStatusReply(printer, status, error)) return false;
    return CPrinterReply::AnalysisStatusReply(printer.deviceName(), in, status, out, error);
  }
  CPrinterCommand command;
  if (!command.Set(printer.deviceName(), key, in)) {
    error = ERROR_COMMAND;
    return false;
  }
  CommandVO reply;
  const auto transfer = [&](IPrinterLibrary& library) {
    return TransferRead(library, command, TransferTrace(printer.deviceName(), key), reply);
  };
  if (!OpenAndTransfer(printer, error, transfer)) return false;
  return CPrinterReply::AnalysisCommandReply(printer.deviceName(), key, reply, out, error);
}

bool CPrinterController::Write(COMMAND_KEY key, const PrinterVO& printer, const ParameterMapVO& in,
                               ParameterMapVO& /*out*/, APPLICATION_ERROR& error) {
  IPrinterLibrary library;
  if (!library.OpenLibrary(printer.printerName())) {
    error = ERROR_OPEN;
    return false;
  }
  CPrinterCommand command;
  const bool transferred =
      command.Set(printer.deviceName(), key, in) &&
      TransferWrite(library, command, TransferTrace(printer.deviceName(), key));
  if (!library.CloseLibrary()) {
    error = ERROR_CLOSE;
    return false;
  }
  if (transferred) error = ERROR_NONE;
  return transferred;
}

bool CPrinterController::ReadStatusReply(const PrinterVO& printer, StatusReply& status,
                                         APPLICATION_ERROR& error) {
  return OpenAndTransfer(printer, error,
                         [&](IPrinterLibrary& library) { return library.GetStatus(status); });
}

bool CPrinterController::SendCommand(const PrinterVO& printer, const CommandVO& command, bool d4,
                                     CommandVO* reply, APPLICATION_ERROR& error) {
  return OpenAndTransfer(printer, error, [&](IPrinterLibrary& library) {
    return d4 ? library.SendCommandD4(command, reply) : library.SendCommand(command, reply);
  });
}

bool CPrinterController::SendSpooler(const PrinterVO& printer, const CommandVO& command,
                                     APPLICATION_ERROR& error) {
  return OpenAndTransfer(printer, error,
                         [&](IPrinterLibrary& library) { return library.SendSpooler(command); });
}

int CPrinterController::Search(std::vector<PrinterVO>& printers) {
  return ISearchPrinter::Search(printers);
}

}  // namespace Ravik

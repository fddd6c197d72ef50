#include "printer_control/PrinterController.h"

#include "GantryCore/IPrinterLibrary.h"
#include "GantryCore/PrinterCommand.h"
#include "GantryCore/PrinterReply.h"
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

// Sends a write command on the path that the connection and the command call for.
bool TransferWrite(IPrinterLibrary& library, const CPrinterCommand& command) {
  if (library.IsNetworkAccess() && !command.IsBGJC()) {
    return library.SendSpooler(command.GetCommandForSpooler());
  }
  const auto send = [&](const CommandVO& bytes) {
    return command.IsRemote() ? library.SendCommand(bytes, nullptr)
                              : library.SendCommandD4(bytes, nullptr);
  };
  if (!send(command.GetCommand())) return false;
  return !command.IsSVCmd() || send(command.GetSVCommand());
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
  if (!SendCommand(printer, command.GetCommand(), !command.IsRemote(), &reply, error)) return false;
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
      command.Set(printer.deviceName(), key, in) && TransferWrite(library, command);
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

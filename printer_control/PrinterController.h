// Runs one read or one write of a printer command from end to end.
#ifndef PRINTER_CONTROL_PRINTERCONTROLLER_H_
#define PRINTER_CONTROL_PRINTERCONTROLLER_H_

#include <vector>

#include "GantryCore/CommandVO.h"
#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterVO.h"
#include "ModelInfomation/CommandInfoVO.h"
#include "printer_control/ApplicationError.h"
#include "printer_control/StatusReply.h"

namespace Ravik {

// The only door from the command handlers to a printer. Every operation opens the printer by its
// printer name, transfers and closes it again, once each, without retries of its own; it blocks as
// long as the printer's port allows. The device name selects the printer family.
//
// An operation that returns true has set error to ERROR_NONE, unless it says otherwise. Exceptions
// of lower layers pass through; the printer is closed on their way.
class CPrinterController {
 public:
  // Reads with the command that key names, built from in, into out. On failure error is
  // ERROR_COMMAND if the command could not be built, which is found out before the printer is
  // opened, or what the transfer or the reply's analysis left.
  // READ_STATUS copies those figures of the printer's status that in names and the printer reports.
  static bool Read(COMMAND_KEY key, const PrinterVO& printer, const ParameterMapVO& in,
                   ParameterMapVO& out, APPLICATION_ERROR& error);

  // Writes the command that key names, built from in; the reply is never filled. On failure error
  // is ERROR_OPEN or ERROR_CLOSE, or stays as it was if building or a transfer failed. The command
  // is built while the printer is open.
  static bool Write(COMMAND_KEY key, const PrinterVO& printer, const ParameterMapVO& in,
                    ParameterMapVO& out, APPLICATION_ERROR& error);

  // Reads the printer's status. On failure error is ERROR_OPEN, ERROR_TRANSFER or, before every
  // other, ERROR_CLOSE; so for the next two operations.
  static bool ReadStatusReply(const PrinterVO& printer, StatusReply& status,
                              APPLICATION_ERROR& error);

  // Sends a command, through the D4 channel if d4 is set, in remote mode otherwise. A reply is
  // appended to *reply unless that is null.
  static bool SendCommand(const PrinterVO& printer, const CommandVO& command, bool d4,
                          CommandVO* reply, APPLICATION_ERROR& error);

  // Sends a command as it stands to the printer's data port.
  static bool SendSpooler(const PrinterVO& printer, const CommandVO& command,
                          APPLICATION_ERROR& error);

  // Appends the printers that the machine reaches. 0 on success.
  static int Search(std::vector<PrinterVO>& printers);
};

}  // namespace Ravik

#endif  // PRINTER_CONTROL_PRINTERCONTROLLER_H_

// Runs the host's requests.
#ifndef NATIVEPROCESS_PRINTERPROCESS_H_
#define NATIVEPROCESS_PRINTERPROCESS_H_

#include <map>
#include <ostream>
#include <string>

#include "GantryCore/ParameterMapVO.h"
#include "GantryCore/PrinterVO.h"

namespace Ravik {

// The dispatcher and the handlers of the host's commands. Nothing carries over between requests.
//
// A handler runs one operation on one printer and returns its result code, 0 on success, as
// printer_control/ApplicationError.h lists them. It blocks as long as the printer's port allows.
class PrinterProcess {
 public:
  using Handler = long (*)(const PrinterVO& printer, const ParameterMapVO& in, ParameterMapVO& out);

  // The handlers by command name.
  static const std::map<std::string, Handler> NativeProcessFunction;

  // What answering a request takes up. Kept for the next one, the memory need not be found again.
  struct Workspace {
    ParameterMapVO params;
    ParameterMapVO reply;
    std::string answer;
  };

  // Runs one decoded request, a JSON object (RFC 8259), and leaves its answer, without a line
  // break, in the workspace; nothing else of what that held counts. Returns the answer's code; -1
  // also for a request that is not well formed, which is answered "syntax error".
  // Throws std::runtime_error for a request whose JSON value is no object, and whatever but
  // std::out_of_range a handler throws; there is no answer then.
  static long Answer(const std::string& request, Workspace& workspace);

  // The same, with the answer written to out.
  static long doFunction(const std::string& request, std::ostream& out);

  // Takes a request apart. True when it is well formed for its command, known or not. The
  // out-parameters hold what was read until then when it is not.
  static bool ParsePicojson(const std::string& request, std::string& command, PrinterVO& printer,
                            ParameterMapVO& params);

  // Writes one answer: the command, unescaped, with its code, and the reply where the code is 0
  // and there is one.
  static void PrintJson(const std::string& command, const ParameterMapVO& reply, long code,
                        std::ostream& out);

  // Lists the printers that the machine reaches.
  static long GetPrinterList(const PrinterVO& printer, const ParameterMapVO& in,
                             ParameterMapVO& out);

  // Reads those figures of the printer's status that in names.
  static long GetPrinterStatus(const PrinterVO& printer, const ParameterMapVO& in,
                               ParameterMapVO& out);

  // Reads numbers, names and registration flags of custom media records.
  static long GetCustomMediaName(const PrinterVO& printer, const ParameterMapVO& in,
                                 ParameterMapVO& out);

  // Reads a custom media record in the layout that "CommandVersion" names.
  static long GetCustomMediaInfo(const PrinterVO& printer, const ParameterMapVO& in,
                                 ParameterMapVO& out);

  // Writes a custom media record, then reads it back until it holds what was written. Blocks for
  // that until 10000 ticks of the process's own processor time are spent.
  static long SetCustomMediaInfo(const PrinterVO& printer, const ParameterMapVO& in,
                                 ParameterMapVO& out);

  // Resets custom media records to factory state; where "InitializeCustomMedia" is a number, reads
  // that record until it is no longer registered, for as long as SetCustomMediaInfo does.
  static long SetMediaInitialize(const PrinterVO& printer, const ParameterMapVO& in,
                                 ParameterMapVO& out);

  // Reads the printer's firmware version.
  static long GetFWVersion(const PrinterVO& printer, const ParameterMapVO& in, ParameterMapVO& out);
};

}  // namespace Ravik

#endif  // NATIVEPROCESS_PRINTERPROCESS_H_

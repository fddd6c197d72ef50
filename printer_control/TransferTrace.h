// Trace lines of what one operation sends to a printer and gets back.
#ifndef PRINTER_CONTROL_TRANSFERTRACE_H_
#define PRINTER_CONTROL_TRANSFERTRACE_H_

#include <string>
#include <string_view>

#include "GantryCore/CommandVO.h"
#include "ModelInfomation/CommandKey.h"
#include "printer_control/StatusReply.h"
#include "util/ProcessTrace.h"

namespace Ravik {

// Where nobody asked for a trace, a call costs one branch. port is what the bytes travel over:
// snmp, raw or local.
class TransferTrace {
 public:
  // The name must outlive the trace.
  TransferTrace(const std::string& deviceName, COMMAND_KEY key)
      : device_name_(deviceName), key_(key) {}

  void Command(const char* port, const CommandVO& command) const {
    if (ProcessTrace::IsOn()) WriteCommand(port, command);
  }

  // reply is what the transport delivered.
  void Reply(const char* port, const CommandVO& reply) const {
    if (ProcessTrace::IsOn()) WriteReply(port, reply);
  }

  // The command "SV".
  static void Save(const char* port, const CommandVO& command) {
    if (ProcessTrace::IsOn()) WriteSave(port, command);
  }

  // A printer that the last search has not listed.
  static void UnknownPrinter(const std::string& name) {
    if (ProcessTrace::IsOn()) WriteUnknownPrinter(name);
  }

  // A status text, zeros behind it, and what it tells.
  static void StatusRequest(const char* port) {
    if (ProcessTrace::IsOn()) ProcessTrace::Write({"worker", port, "command", {}, "read-status"});
  }
  static void Status(const char* port, std::string_view text, const StatusReply& status) {
    if (ProcessTrace::IsOn()) WriteStatus(port, text, status);
  }

 private:
  void WriteCommand(const char* port, const CommandVO& command) const;
  void WriteReply(const char* port, const CommandVO& reply) const;
  static void WriteSave(const char* port, const CommandVO& command);
  static void WriteUnknownPrinter(const std::string& name);
  static void WriteStatus(const char* port, std::string_view text, const StatusReply& status);

  const std::string& device_name_;
  COMMAND_KEY key_;
};

}  // namespace Ravik

#endif  // PRINTER_CONTROL_TRANSFERTRACE_H_

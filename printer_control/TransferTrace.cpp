#include "printer_control/TransferTrace.h"

#include "GantryCore/TransferText.h"
#include "ModelInfomation/ParameterName.h"

namespace Ravik {

namespace {

std::string_view View(const CommandVO& command) {
  return {reinterpret_cast<const char*>(command.bytes().data()), command.bytes().size()};
}

std::string Code(const char* name, int code) {
  return code < 0 ? "" : std::string(" ") + name + '=' + std::to_string(code);
}

std::string Warnings(const StatusReply& status) {
  std::string text;
  for (const unsigned char code : status.GetWarning()) {
    text += (text.empty() ? "" : ",") + std::to_string(code);
  }
  return text.empty() ? "" : std::string(" ") + STATUSREPLY_WARNINGCODE + '=' + text;
}

std::string SerialNumber(const StatusReply& status) {
  const std::string number = status.GetSerialNumber();
  return number.empty() ? ""
                        : std::string(" ") + STATUSREPLY_SERIALNUMBER + '=' + TraceQuoted(number);
}

}  // namespace

void TransferTrace::WriteCommand(const char* port, const CommandVO& command) const {
  const std::string text = TransferText::OfCommand(device_name_, key_, command);
  ProcessTrace::Write({"worker", port, "command", View(command), text});
}

void TransferTrace::WriteReply(const char* port, const CommandVO& reply) const {
  const std::string text = TransferText::OfReply(device_name_, key_, reply);
  ProcessTrace::Write(
      {"worker", port, "reply", TransferText::PrintersBytes(device_name_, key_, reply), text});
}

void TransferTrace::WriteSave(const char* port, const CommandVO& command) {
  ProcessTrace::Write({"worker", port, "command", View(command), "save name=SV length=0"});
}

void TransferTrace::WriteUnknownPrinter(const std::string& name) {
  const std::string text = "no printer " + TraceQuoted(name) + " in the list of the last search";
  ProcessTrace::Write({"worker", "host", "failed", {}, text});
}

void TransferTrace::WriteStatus(const char* port, std::string_view text,
                                const StatusReply& status) {
  const std::string figures = "read-status" + Code(STATUSREPLY_STATUSCODE, status.GetStatus()) +
                              Code(STATUSREPLY_ERRORCODE, status.GetErrorCode()) +
                              Warnings(status) + SerialNumber(status);
  text = text.substr(0, text.find_last_not_of('\0') + 1);
  ProcessTrace::Write({"worker", port, "reply", text, figures});
}

}  // namespace Ravik

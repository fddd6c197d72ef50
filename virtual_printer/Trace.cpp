// The trace: one line an event.
#include "virtual_printer/Trace.h"

#include "util/TraceLine.h"

namespace VirtualPrinter {
namespace {

const char* PortName(Port port) {
  switch (port) {
    case Port::kSnmp:
      return "snmp";
    case Port::kRaw:
      return "raw";
    case Port::kLocal:
      return "local";
  }
  return "";
}

}  // namespace

void Trace::Write(Port port, std::string_view event, const Bytes& bytes, std::string_view text) {
  if (out_ == nullptr) return;
  const std::string_view characters(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  *out_ << Ravik::TraceLine({"printer", PortName(port), event, characters, text}) << std::flush;
}

}  // namespace VirtualPrinter

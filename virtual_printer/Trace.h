// The trace: one line an event.
//
//   2026-01-01T00:00:00.000Z snmp recv 3082…
//   2026-01-01T00:00:00.000Z snmp command 455808… read-record name=EX length=8 format=010000001B …
//   2026-01-01T00:00:00.000Z snmp reply 45583A…
//   2026-01-01T00:00:00.000Z snmp send 3082…
//
// Columns are separated by one blank: UTC time, port (snmp, raw, local), event, bytes in
// upper-case hexadecimal digits ("-" for none) and, behind them, text. Events: recv and send (bytes
// that crossed the port), command and reply (one printer command and what it is answered), lost (a
// request that a fault takes away), ignored (bytes that are no request), reset (a connection).
#ifndef VIRTUAL_PRINTER_TRACE_H_
#define VIRTUAL_PRINTER_TRACE_H_

#include <ostream>
#include <string_view>

#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {

enum class Port { kSnmp, kRaw, kLocal };

class Trace {
 public:
  // Writes to `out`, which must outlive the trace; null writes nothing.
  explicit Trace(std::ostream* out) : out_(out) {}

  bool IsOn() const { return out_ != nullptr; }
  void Write(Port port, std::string_view event, const Bytes& bytes, std::string_view text = {});

 private:
  std::ostream* out_;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_TRACE_H_

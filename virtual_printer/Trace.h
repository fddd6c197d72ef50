// The trace: one line an event.
//
//   2026-01-01T00:00:00.000000Z printer[4711] snmp command 455808... read-record name=EX ...
//
// docs/trace.md describes the form, which the worker and the port driver share. Events: recv and
// send (bytes that crossed the port), command and reply (one printer command and what it is
// answered, field by field), lost (a request that a fault takes away), ignored (bytes that are no
// request), reset (a connection).
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

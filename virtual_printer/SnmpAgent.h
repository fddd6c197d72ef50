// The SNMP agent of the printer: turns one datagram into its answer.
//
// A printer command is asked for as the object 1.3.6.1.4.1.2718.1.2.2.40.1.1.2 followed by one
// sub-identifier (0 to 255) a byte of the payload: (n + 3) modulo 256, 8, n as two bytes,
// big-endian, and the n command bytes. The value is the reply, an OCTET STRING.
#ifndef VIRTUAL_PRINTER_SNMPAGENT_H_
#define VIRTUAL_PRINTER_SNMPAGENT_H_

#include <optional>
#include <string>

#include "virtual_printer/Faults.h"
#include "virtual_printer/Printer.h"
#include "virtual_printer/SnmpMessage.h"
#include "virtual_printer/Trace.h"

namespace VirtualPrinter {

class SnmpAgent {
 public:
  // Printer, faults and trace must outlive the agent.
  SnmpAgent(Printer& printer, Faults& faults, Trace& trace)
      : printer_(printer), faults_(faults), trace_(trace) {}

  // The answer to a datagram, or nothing if it gets none: it is no version-1 GetRequest, its
  // community is neither "orchid" nor "public", or a fault takes it away. To "public" only the
  // standard objects exist. No command is carried out when one of the objects does not exist.
  std::optional<Bytes> Answer(const Bytes& datagram);

 private:
  // Whether the object exists for this community: to the public one only the standard objects do.
  bool Exists(const ObjectId& object, const std::string& community) const;
  // The position of the first object that does not exist, counted from 1; 0 if all do.
  std::int32_t FirstUnknown(const SnmpRequest& request) const;
  Bytes Value(const ObjectId& object);
  SnmpResponse Respond(const SnmpRequest& request);
  void Distort(SnmpResponse& response);

  Printer& printer_;
  Faults& faults_;
  Trace& trace_;
};

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_SNMPAGENT_H_

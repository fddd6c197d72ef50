// SNMPv1 GetRequest and GetResponse messages (RFC 1157).
#ifndef VIRTUAL_PRINTER_SNMPMESSAGE_H_
#define VIRTUAL_PRINTER_SNMPMESSAGE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "virtual_printer/Ber.h"

namespace VirtualPrinter {

enum class SnmpError : std::int32_t { kNone = 0, kTooBig = 1, kNoSuchName = 2 };

struct SnmpRequest {
  std::string community;
  std::int32_t request_id = 0;
  std::vector<ObjectId> objects;
};

struct SnmpVariable {
  ObjectId object;
  Bytes value;  // one encoded element
};

struct SnmpResponse {
  std::string community;
  std::int32_t request_id = 0;
  SnmpError error = SnmpError::kNone;
  std::int32_t error_index = 0;  // counts from 1; 0 without an error
  std::vector<SnmpVariable> variables;
};

// Nothing for a datagram that is not, byte for byte, one whole version-1 GetRequest.
std::optional<SnmpRequest> ParseSnmpRequest(const Bytes& datagram);

Bytes EncodeSnmpResponse(const SnmpResponse& response);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_SNMPMESSAGE_H_

// SNMP messages (RFC 1157, in the basic encoding rules of ITU-T X.690): the reader by which an
// answer is matched with its request, and the one request that the driver makes itself.
#ifndef PORT_DRIVER_SNMPMESSAGE_H_
#define PORT_DRIVER_SNMPMESSAGE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZIOP {

// Longest message that a UDP datagram carries, in bytes, over IPv6 (over IPv4 it is 65507).
constexpr std::size_t kMaximumDatagram = 65527;

// Tags of the elements that the driver looks at.
enum SnmpTag : uint8_t {
  kSnmpInteger = 0x02,
  kSnmpOctetString = 0x04,
  kSnmpNull = 0x05,
  kSnmpObjectIdentifier = 0x06,
  kSnmpSequence = 0x30,
  kSnmpGetRequest = 0xA0,
  kSnmpGetResponse = 0xA2,
};

// One message. The views point into the bytes that it was read from.
struct SnmpMessage {
  int32_t version = 0;
  uint8_t pduType = 0;
  int32_t requestId = 0;
  int32_t errorStatus = 0;
  std::string_view name;   // content of the first object identifier; empty without bindings
  uint8_t valueTag = 0;    // of the value bound to it
  std::string_view value;  // content of that value
};

// Reads bytes as exactly one SNMP message. Null for anything else: bytes that are missing or left
// over at any level, indefinite lengths, integers of more than 32 bits, an object identifier that
// ends inside a sub-identifier. Lengths may be longer than they need to be, as agents write them.
std::optional<SnmpMessage> ReadSnmpMessage(std::string_view bytes);

// Whether answer is the GetResponse to request: same version and request-id and, unless
// matchesIdOnly, the same first object identifier. An answer that carries an error status is an
// answer.
bool AnswersRequest(const SnmpMessage& answer, const SnmpMessage& request, bool matchesIdOnly);

// GetRequest (SNMPv1, community "orchid") for the printer's status text,
// 1.3.6.1.4.1.2718.1.2.2.30.1.1.1. requestId is not negative.
std::string MakeStatusRequest(int32_t requestId);

}  // namespace ZIOP

#endif  // PORT_DRIVER_SNMPMESSAGE_H_

// Reading SNMP messages, and the status request.
#include "port_driver/SnmpMessage.h"

#include <iterator>

#include "port_driver/BerReader.h"

namespace ZIOP {
namespace {

// Byte index, counted from the least significant, of number.
uint8_t Byte(uint32_t number, int index) {
  return static_cast<uint8_t>(number >> (8 * index));
}

bool IsWholeObjectIdentifier(std::string_view content) {
  return !content.empty() && (static_cast<uint8_t>(content.back()) & 0x80U) == 0;
}

// Reads the variable-bindings list, every binding of it, and keeps the first.
bool ReadBindings(std::string_view list, SnmpMessage& message) {
  bool first = true;
  for (BerReader bindings(list); !bindings.atEnd(); first = false) {
    const auto binding = bindings.Next(kSnmpSequence);
    BerReader pair(binding.value_or(std::string_view()));
    const auto name = pair.Next(kSnmpObjectIdentifier);
    const auto value = pair.Next();
    if (!name || !value || !pair.atEnd() || !IsWholeObjectIdentifier(*name)) {
      return false;
    }
    if (first) {
      message.name = *name;
      message.valueTag = value->tag;
      message.value = value->content;
    }
  }
  return true;
}

bool ReadPdu(std::string_view content, SnmpMessage& message) {
  BerReader pdu(content);
  const auto requestId = pdu.NextInteger();
  const auto errorStatus = pdu.NextInteger();
  const auto errorIndex = pdu.NextInteger();
  const auto bindings = pdu.Next(kSnmpSequence);
  if (!requestId || !errorStatus || !errorIndex || !bindings || !pdu.atEnd()) {
    return false;
  }
  message.requestId = *requestId;
  message.errorStatus = *errorStatus;
  return ReadBindings(*bindings, message);
}

}  // namespace

[[gnu::flatten]] std::optional<SnmpMessage> ReadSnmpMessage(std::string_view bytes) {
  BerReader datagram(bytes);
  const auto content = datagram.Next(kSnmpSequence);
  BerReader body(content.value_or(std::string_view()));
  const auto version = body.NextInteger();
  const auto community = body.Next(kSnmpOctetString);
  const auto pdu = body.Next();
  if (!version || !community || !pdu || !body.atEnd() || !datagram.atEnd()) {
    return std::nullopt;
  }
  SnmpMessage message;
  message.version = *version;
  message.pduType = pdu->tag;
  if (!ReadPdu(pdu->content, message)) {
    return std::nullopt;
  }
  return message;
}

bool AnswersRequest(const SnmpMessage& answer, const SnmpMessage& request, bool matchesIdOnly) {
  return answer.pduType == kSnmpGetResponse && answer.version == request.version &&
         answer.requestId == request.requestId && (matchesIdOnly || answer.name == request.name);
}

std::string MakeStatusRequest(int32_t requestId) {
  const auto id = static_cast<uint32_t>(requestId);
  // clang-format off
  const uint8_t message[] = {
      kSnmpSequence, 47,
      kSnmpInteger, 1, 0,                                 // version: SNMPv1
      kSnmpOctetString, 6, 'o', 'r', 'c', 'h', 'i', 'd',  // community
      kSnmpGetRequest, 34,
      kSnmpInteger, 4, Byte(id, 3), Byte(id, 2), Byte(id, 1), Byte(id, 0),
      kSnmpInteger, 1, 0,                                 // error-status
      kSnmpInteger, 1, 0,                                 // error-index
      kSnmpSequence, 20, kSnmpSequence, 18,               // the list and its one binding
      kSnmpObjectIdentifier, 14, 0x2B, 6, 1, 4, 1, 0x95, 0x1E, 1, 2, 2, 30, 1, 1, 1,
      kSnmpNull, 0,
  };
  // clang-format on
  return {std::begin(message), std::end(message)};
}

}  // namespace ZIOP

// SNMPv1 GetRequest and GetResponse messages (RFC 1157).
#include "virtual_printer/SnmpMessage.h"

namespace VirtualPrinter {
namespace {

constexpr std::int32_t kSnmpVersion1 = 0;

bool ParseVariables(BerReader list, std::vector<ObjectId>& objects) {
  while (!list.AtEnd()) {
    auto binding = list.Read(kBerSequence);
    if (!binding) return false;
    auto object = binding->ReadObjectId();
    std::uint8_t tag = 0;
    BerReader value;
    // A GetRequest's values carry nothing, whatever their type.
    if (!object || !binding->ReadAny(tag, value) || !binding->AtEnd()) return false;
    objects.push_back(std::move(*object));
  }
  return true;
}

bool ParseGetRequest(BerReader pdu, SnmpRequest& request) {
  const auto request_id = pdu.ReadInteger();
  const auto error_status = pdu.ReadInteger();
  const auto error_index = pdu.ReadInteger();
  const auto variables = pdu.Read(kBerSequence);
  if (!request_id || !error_status || !error_index || !variables || !pdu.AtEnd()) return false;
  request.request_id = *request_id;
  return ParseVariables(*variables, request.objects);
}

}  // namespace

std::optional<SnmpRequest> ParseSnmpRequest(const Bytes& datagram) {
  BerReader reader(datagram.data(), datagram.data() + datagram.size());
  auto message = reader.Read(kBerSequence);
  if (!message || !reader.AtEnd()) return std::nullopt;
  const auto version = message->ReadInteger();
  const auto community = message->ReadOctets();
  const auto pdu = message->Read(kSnmpGetRequest);
  if (version != kSnmpVersion1 || !community || !pdu || !message->AtEnd()) return std::nullopt;
  SnmpRequest request;
  request.community.assign(community->begin(), community->end());
  if (!ParseGetRequest(*pdu, request)) return std::nullopt;
  return request;
}

Bytes EncodeSnmpResponse(const SnmpResponse& response) {
  Bytes variables;
  for (const auto& variable : response.variables) {
    Bytes binding = BerEncodeObjectId(variable.object);
    Append(binding, variable.value);
    Append(variables, BerElement(kBerSequence, binding));
  }
  Bytes pdu = BerEncodeInteger(response.request_id);
  Append(pdu, BerEncodeInteger(static_cast<std::int32_t>(response.error)));
  Append(pdu, BerEncodeInteger(response.error_index));
  Append(pdu, BerElement(kBerSequence, variables));

  Bytes message = BerEncodeInteger(kSnmpVersion1);
  Append(message, BerEncodeOctets(ToBytes(response.community)));
  Append(message, BerElement(kSnmpGetResponse, pdu));
  return BerElement(kBerSequence, message);
}

}  // namespace VirtualPrinter

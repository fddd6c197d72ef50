// The SNMP agent of the printer.
#include "virtual_printer/SnmpAgent.h"

#include <algorithm>

#include "virtual_printer/StandardObjects.h"

namespace VirtualPrinter {
namespace {

constexpr char kCommandCommunity[] = "orchid";
constexpr char kPublicCommunity[] = "public";
constexpr std::uint32_t kPayloadMark = 8;
constexpr std::size_t kPayloadHeadSize = 4;
constexpr std::size_t kLongestMessage = 16384;

const ObjectId kCommandPrefix = {1, 3, 6, 1, 4, 1, 2718, 1, 2, 2, 40, 1, 1, 2};
const ObjectId kStatus = {1, 3, 6, 1, 4, 1, 2718, 1, 2, 2, 30, 1, 1, 1};
const ObjectId kHrDevicePrinter = {1, 3, 6, 1, 2, 1, 25, 3, 1, 5};

// The command in an object identifier's payload; nothing if the payload's head disagrees with it.
std::optional<Bytes> CommandOf(const ObjectId& object) {
  const auto prefix_size = static_cast<std::ptrdiff_t>(kCommandPrefix.size());
  if (object.size() < kCommandPrefix.size() + kPayloadHeadSize) return std::nullopt;
  if (!std::equal(kCommandPrefix.begin(), kCommandPrefix.end(), object.begin())) {
    return std::nullopt;
  }
  Bytes payload;
  for (auto at = object.begin() + prefix_size; at != object.end(); ++at) {
    if (*at > 0xFF) return std::nullopt;
    payload.push_back(static_cast<std::uint8_t>(*at));
  }
  const std::size_t size = payload.size() - kPayloadHeadSize;
  const std::size_t told = payload[2] * std::size_t{256} + payload[3];
  if (payload[0] != (size + 3) % 256 || payload[1] != kPayloadMark || told != size) {
    return std::nullopt;
  }
  return Bytes(payload.begin() + kPayloadHeadSize, payload.end());
}

bool IsKnown(const std::string& community) {
  return community == kCommandCommunity || community == kPublicCommunity;
}

SnmpResponse Refusal(const SnmpRequest& request, SnmpError error, std::int32_t index) {
  SnmpResponse response{request.community, request.request_id, error, index, {}};
  for (const auto& object : request.objects) {
    response.variables.push_back({object, BerElement(kBerNull, {})});
  }
  return response;
}

std::string DeviceId(const Printer& printer) {
  return "MFG:ZARMO;MDL:" + printer.Model() + ";SN:" + printer.Serial() +
         ";CMD:REMOTE1;CLS:PRINTER;";
}

}  // namespace

std::optional<Bytes> SnmpAgent::Answer(const Bytes& datagram) {
  const auto request = ParseSnmpRequest(datagram);
  if (!request || !IsKnown(request->community)) {
    trace_.Write(Port::kSnmp, "ignored", datagram,
                 request ? "unknown community" : "not a version-1 GetRequest");
    return std::nullopt;
  }
  if (faults_.LosesRequest()) {
    trace_.Write(Port::kSnmp, "lost", datagram);
    return std::nullopt;
  }
  SnmpResponse response = Respond(*request);
  Distort(response);
  Bytes answer = EncodeSnmpResponse(response);
  if (answer.size() > kLongestMessage) {
    answer = EncodeSnmpResponse(Refusal(*request, SnmpError::kTooBig, 0));
  }
  faults_.Spoil(answer);
  return answer;
}

SnmpResponse SnmpAgent::Respond(const SnmpRequest& request) {
  if (const std::int32_t unknown = FirstUnknown(request); unknown != 0) {
    return Refusal(request, SnmpError::kNoSuchName, unknown);
  }
  SnmpResponse response{request.community, request.request_id, SnmpError::kNone, 0, {}};
  for (const auto& object : request.objects) {
    response.variables.push_back({object, Value(object)});
  }
  return response;
}

bool SnmpAgent::Exists(const ObjectId& object, const std::string& community) const {
  const StandardObject standard = FindStandardObject(object);
  if (standard != StandardObject::kNone) return !faults_.Lacks(standard);
  return community == kCommandCommunity && (object == kStatus || CommandOf(object));
}

std::int32_t SnmpAgent::FirstUnknown(const SnmpRequest& request) const {
  const auto unknown =
      std::find_if(request.objects.begin(), request.objects.end(),
                   [&](const ObjectId& object) { return !Exists(object, request.community); });
  if (unknown == request.objects.end()) return 0;
  return static_cast<std::int32_t>(unknown - request.objects.begin()) + 1;
}

Bytes SnmpAgent::Value(const ObjectId& object) {
  switch (FindStandardObject(object)) {
    case StandardObject::kSysDescr:
    case StandardObject::kHrDeviceDescr:
      return BerEncodeOctets(ToBytes(printer_.Model()));
    case StandardObject::kHrDeviceType:
      return BerEncodeObjectId(kHrDevicePrinter);
    case StandardObject::kPrtGeneralSerialNumber:
      return BerEncodeOctets(ToBytes(printer_.Serial()));
    case StandardObject::kPpmPrinterIeee1284DeviceId:
      return BerEncodeOctets(ToBytes(DeviceId(printer_)));
    case StandardObject::kNone:
      break;
  }
  if (object == kStatus) {
    Bytes status = printer_.StatusText();
    faults_.Pad(status);
    trace_.Write(Port::kSnmp, "command", {}, "read-status");
    trace_.Write(Port::kSnmp, "reply", status, "read-status");
    return BerEncodeOctets(status);
  }
  return BerEncodeOctets(printer_.Execute(Port::kSnmp, *CommandOf(object)));
}

void SnmpAgent::Distort(SnmpResponse& response) {
  if (faults_.Strikes(FaultKind::kWrongId)) {
    response.request_id =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(response.request_id) + 1);
  }
  if (faults_.Strikes(FaultKind::kWrongOid)) {
    for (auto& variable : response.variables) ++variable.object.back();
  }
}

}  // namespace VirtualPrinter

// Faults on demand.
#include "virtual_printer/Faults.h"

#include <algorithm>
#include <limits>

#include "virtual_printer/Numbers.h"

namespace VirtualPrinter {
namespace {

enum class ValueKind { kNone, kNumber, kTimes, kHex, kObject };

struct FaultRow {
  FaultKind kind;
  std::string_view name;
  ValueKind value;
  std::uint32_t limit;  // greatest number
  std::string_view help;
};

constexpr std::uint32_t kNoLimit = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint32_t kLongestDelay = 600000;  // milliseconds

// In the order of FaultKind.
constexpr std::array<FaultRow, kFaultKinds> kFaults = {{
    {FaultKind::kDrop, "drop", ValueKind::kNumber, kNoLimit,
     "drop=N           the first N requests are not received"},
    {FaultKind::kLoss, "loss", ValueKind::kNumber, 100,
     "loss=PERCENT     that share of the requests is not received; the same ones in every run\n"
     "                   with the same serial number"},
    {FaultKind::kDelay, "delay", ValueKind::kNumber, kLongestDelay,
     "delay=MS         every answer leaves that many milliseconds later"},
    {FaultKind::kTruncate, "truncate", ValueKind::kNumber, kNoLimit,
     "truncate=BYTES   answers end after that many bytes"},
    {FaultKind::kOversize, "oversize", ValueKind::kTimes, kNoLimit,
     "oversize[=N]     replies are padded with zero bytes to 600 bytes"},
    {FaultKind::kGarbage, "garbage", ValueKind::kTimes, kNoLimit,
     "garbage[=N]      answers keep their length, but hold arbitrary bytes"},
    {FaultKind::kWrongId, "wrong-id", ValueKind::kTimes, kNoLimit,
     "wrong-id[=N]     SNMP answers carry the next request-id"},
    {FaultKind::kWrongOid, "wrong-oid", ValueKind::kTimes, kNoLimit,
     "wrong-oid[=N]    SNMP answers carry object identifiers whose last part is 1 higher"},
    {FaultKind::kDuplicate, "duplicate", ValueKind::kTimes, kNoLimit,
     "duplicate[=N]    answers are sent twice"},
    {FaultKind::kNa, "na", ValueKind::kTimes, kNoLimit,
     "na[=N]           commands are refused with NA; and change nothing"},
    {FaultKind::kForget, "forget", ValueKind::kNone, 0,
     "forget           writes and initialisations are accepted, but not kept"},
    {FaultKind::kStatusText, "status-text", ValueKind::kHex, 0,
     "status-text=HEX  these bytes stand for the whole status text"},
    {FaultKind::kReset, "reset", ValueKind::kTimes, kNoLimit,
     "reset[=N]        raw connections are reset when their first bytes arrive"},
    {FaultKind::kLack, "lack", ValueKind::kObject, 0,
     "lack=OBJECT      a standard object is missing: sysDescr, hrDeviceType, hrDeviceDescr,\n"
     "                   prtGeneralSerialNumber, ppmPrinterIEEE1284DeviceId"},
}};

const FaultRow* FindFault(std::string_view name) {
  const auto* row = std::find_if(kFaults.begin(), kFaults.end(),
                                 [name](const FaultRow& fault) { return fault.name == name; });
  return row == kFaults.end() ? nullptr : row;
}

}  // namespace

std::string Faults::Add(std::string_view text) {
  const std::size_t equals = text.find('=');
  const bool has_value = equals != std::string_view::npos;
  const FaultRow* row = FindFault(text.substr(0, equals));
  if (row == nullptr) return "unknown fault";
  const std::string_view value = has_value ? text.substr(equals + 1) : std::string_view();
  if (row->value == ValueKind::kHex) {
    status_text_ = has_value ? FromHex(value) : std::nullopt;
    return status_text_ ? "" : "the value must be pairs of hexadecimal digits";
  }
  if (row->value == ValueKind::kObject) {
    const StandardObject object = FindStandardObject(value);
    if (object == StandardObject::kNone) return "the value must be the name of a standard object";
    lacking_.insert(object);
    return "";
  }
  const auto number = ParseNumber(value, row->limit);
  const bool needs_value = row->value == ValueKind::kNumber;
  if (has_value && row->value == ValueKind::kNone) return "this fault takes no value";
  if ((has_value || needs_value) && !number) {
    return "the value must be a number from 0 to " + std::to_string(row->limit);
  }
  Fault& fault = At(row->kind);
  fault.active = true;
  fault.value = number.value_or(0);
  if (row->kind == FaultKind::kDrop || row->value == ValueKind::kTimes) fault.times_left = number;
  return "";
}

void Faults::Seed(std::string_view text) {
  for (const char c : text) {
    random_state_ = random_state_ * 31U + static_cast<std::uint8_t>(c);
  }
}

bool Faults::LosesRequest() {
  if (Strikes(FaultKind::kDrop)) return true;
  const Fault& loss = At(FaultKind::kLoss);
  return loss.active && NextRandom() % 100 < loss.value;
}

bool Faults::Strikes(FaultKind kind) {
  Fault& fault = At(kind);
  if (!fault.active || fault.times_left == 0U) return false;
  if (fault.times_left) --*fault.times_left;
  return true;
}

std::chrono::milliseconds Faults::Delay() const {
  return std::chrono::milliseconds(faults_[static_cast<std::size_t>(FaultKind::kDelay)].value);
}

void Faults::Pad(Bytes& reply) {
  if (Strikes(FaultKind::kOversize)) reply.resize(std::max(reply.size(), kOversizedReply));
}

void Faults::Spoil(Bytes& answer) {
  if (Strikes(FaultKind::kGarbage)) {
    for (auto& byte : answer) byte = static_cast<std::uint8_t>(NextRandom() & 0xFF);
  }
  const Fault& truncate = At(FaultKind::kTruncate);
  if (truncate.active && answer.size() > truncate.value) answer.resize(truncate.value);
}

std::string Faults::Help() {
  std::string text;
  for (const auto& fault : kFaults) text += "  " + std::string(fault.help) + '\n';
  return text;
}

// A linear congruential generator (modulus 2^32, the constants of Knuth and Lewis) of which the
// upper bits are used, so that a run can be repeated anywhere.
std::uint32_t Faults::NextRandom() {
  random_state_ = random_state_ * 1664525U + 1013904223U;
  return random_state_ >> 16;
}

}  // namespace VirtualPrinter

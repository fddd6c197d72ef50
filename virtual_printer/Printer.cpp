// The printer behind its ports.
#include "virtual_printer/Printer.h"

#include <utility>

#include "util/Diagnostics.h"
#include "virtual_printer/Description.h"
#include "virtual_printer/StateFile.h"
#include "virtual_printer/StatusText.h"

namespace VirtualPrinter {
namespace {

constexpr std::size_t kFirmwareSize = 4;
constexpr std::uint8_t kAllSlots = 0x80;

bool IsSlot(std::uint8_t number) {
  return number >= 1 && number <= kSlotCount;
}

// The layout that a record command names, null unless device code and slot number fit as well.
const Layout* AddressedLayout(const Family& family, const Bytes& variable) {
  if (variable.size() < kRecordHeadSize) return nullptr;
  if (variable[0] != family.device_code || !IsSlot(variable[1])) return nullptr;
  return FindLayout(family, variable[2]);
}

Bytes Done() {
  return ToBytes("OK;");
}

Bytes Ended(Bytes body) {
  body.push_back(';');
  return body;
}

}  // namespace

Printer::Printer(PrinterSetup setup, const RecordTable& permanent, Faults& faults, Trace& trace)
    : setup_(std::move(setup)),
      family_(*FindFamily(setup_.model)),
      permanent_(permanent),
      records_(permanent),
      faults_(faults),
      trace_(trace) {}

Bytes Printer::Execute(Port port, const Bytes& bytes) {
  if (trace_.IsOn()) trace_.Write(port, "command", bytes, DescribeCommand(family_, bytes));
  const Command command = ParseCommand(bytes);
  Bytes reply;
  const Reply result = faults_.Strikes(FaultKind::kNa) ? std::nullopt : Run(command);
  if (!result || command.kind != CommandKind::kStatus) Append(reply, command.reply_header);
  Append(reply, result ? *result : ToBytes("NA;"));
  faults_.Pad(reply);
  if (trace_.IsOn()) trace_.Write(port, "reply", reply, DescribeReply(family_, command, reply));
  return reply;
}

Printer::Reply Printer::Run(const Command& command) {
  switch (command.kind) {
    case CommandKind::kWriteRecord:
      return WriteRecord(command.variable);
    case CommandKind::kReadRecord:
      return ReadRecord(command.variable);
    case CommandKind::kReadNames:
      return ReadNames(command.variable);
    case CommandKind::kInitialize:
      return Initialize(command.variable);
    case CommandKind::kFirmware:
      return ReadFirmware(command.variable);
    case CommandKind::kSave:
      return MakePermanent(command.variable);
    case CommandKind::kStatus:
      if (!command.variable.empty()) return std::nullopt;
      return StatusText();
    case CommandKind::kUnknown:
      break;
  }
  return std::nullopt;
}

Printer::Reply Printer::WriteRecord(const Bytes& variable) {
  const Layout* layout = AddressedLayout(family_, variable);
  if (layout == nullptr || !FitsLayout(*layout, variable.size())) return std::nullopt;
  if (!faults_.Strikes(FaultKind::kForget)) {
    StoreRecord(*layout, variable, records_[variable[1] - 1U]);
  }
  return Done();
}

Printer::Reply Printer::ReadRecord(const Bytes& variable) const {
  const Layout* layout = AddressedLayout(family_, variable);
  if (layout == nullptr || variable.size() != kRecordHeadSize) return std::nullopt;
  const std::uint8_t number = variable[1];
  return Ended(ReplyBody(family_, *layout, number, records_[number - 1U]));
}

// The variable part is the first slot number and a reserved byte.
Printer::Reply Printer::ReadNames(const Bytes& variable) const {
  if (variable.size() != 2 || !IsSlot(variable[0])) return std::nullopt;
  return Ended(NameListBody(records_, variable[0]));
}

// The variable part is the device code and 80 hex plus the slot number, 80 hex alone for all slots.
Printer::Reply Printer::Initialize(const Bytes& variable) {
  if (variable.size() != 2 || variable[0] != family_.device_code) return std::nullopt;
  const bool all = variable[1] == kAllSlots;
  const auto slot = static_cast<std::uint8_t>(variable[1] - kAllSlots);
  if (!all && !IsSlot(slot)) return std::nullopt;
  if (faults_.Strikes(FaultKind::kForget)) return Done();
  if (all) {
    records_ = FactoryRecords(family_);
  } else {
    records_[slot - 1U] = FactoryRecord(family_);
  }
  return Done();
}

// The reply is "VI:00", three characters that tell the part (000: the main firmware), the version.
Printer::Reply Printer::ReadFirmware(const Bytes& variable) const {
  if (!family_.tells_firmware || variable.size() != 1) return std::nullopt;
  std::string version = setup_.firmware;
  version.resize(kFirmwareSize, ' ');
  return ToBytes(
      "00"
      "000" +
      version + ';');
}

Printer::Reply Printer::MakePermanent(const Bytes& variable) {
  if (!variable.empty()) return std::nullopt;
  const RecordTable before = std::exchange(permanent_, records_);
  const std::string error = SaveState();
  if (error.empty()) return Done();
  Ravik::ReportLine("virtual-printer", Ravik::Printable(setup_.state_path + ": " + error));
  permanent_ = before;
  return std::nullopt;
}

Bytes Printer::StatusText() const {
  return faults_.StatusText() ? *faults_.StatusText() : MakeStatusText(setup_.serial);
}

std::string Printer::SaveState() const {
  if (setup_.state_path.empty()) return "";
  return VirtualPrinter::SaveState(setup_.state_path, family_, permanent_);
}

}  // namespace VirtualPrinter

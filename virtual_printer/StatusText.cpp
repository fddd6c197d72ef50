// The status text: a line of text, then status fields in binary form.
#include "virtual_printer/StatusText.h"

#include <string>

namespace VirtualPrinter {
namespace {

enum FieldId : std::uint8_t {
  kStatus = 0x01,
  kError = 0x02,
  kWarnings = 0x04,
  kMaintenanceTanks = 0x0D,
  kInk = 0x0F,
  kSerial = 0x1F,
  kUsb = 0x28,
  kHeaters = 0x2E,
};

constexpr std::uint8_t kReady = 0x04;
constexpr std::uint8_t kNoError = 0x00;
constexpr std::uint8_t kInkLow = 0x10;
constexpr std::uint8_t kTankNearlyFull = 0x11;
constexpr std::uint8_t kUsbAttached = 0x40;

void AppendField(Bytes& fields, FieldId id, const Bytes& data) {
  fields.push_back(id);
  fields.push_back(static_cast<std::uint8_t>(data.size()));
  Append(fields, data);
}

}  // namespace

Bytes MakeStatusText(std::string_view serial) {
  std::string padded(serial);
  padded.resize(kSerialSize, ' ');
  Bytes fields;
  AppendField(fields, kStatus, {kReady});
  AppendField(fields, kError, {kNoError});
  AppendField(fields, kWarnings, {kInkLow, kTankNearlyFull});
  AppendField(fields, kMaintenanceTanks, {0x45, 0x64});
  // The size of an entry, then for each ink: colour, cartridge type, remaining percent, state.
  AppendField(fields, kInk, {4, 0, 1,    0x50, 0, 1, 1,    0x32, 0, 2, 1,    0x08, 1,
                             3, 1, 0x64, 0,    4, 1, 0x4B, 0,    5, 1, 0x28, 0});
  AppendField(fields, kSerial, ToBytes(padded));
  AppendField(fields, kUsb, {kUsbAttached});
  AppendField(fields, kHeaters, {0x01, 0x28});
  AppendField(fields, kHeaters, {0x02, 0x28, 0x32});

  Bytes text = ToBytes("STATUS\r\n");
  text.push_back(static_cast<std::uint8_t>(fields.size() & 0xFF));
  text.push_back(static_cast<std::uint8_t>(fields.size() >> 8));
  Append(text, fields);
  return text;
}

}  // namespace VirtualPrinter

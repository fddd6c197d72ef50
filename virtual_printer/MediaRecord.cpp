// One custom media slot and the forms in which it crosses the wire.
#include "virtual_printer/MediaRecord.h"

#include <algorithm>

namespace VirtualPrinter {
namespace {

constexpr std::uint8_t kBlank = 0x20;
constexpr std::size_t kNameListSlots = 3;

void StoreByte(std::uint8_t written, std::uint8_t& stored) {
  if (written != kLeaveAsIs) stored = written;
}

std::array<std::uint8_t, kNameSize> BlankName() {
  std::array<std::uint8_t, kNameSize> name{};
  name.fill(kBlank);
  return name;
}

}  // namespace

MediaRecord FactoryRecord(const Family& family) {
  MediaRecord record;
  for (std::size_t i = 0; i < family.setting_count; ++i) {
    record.settings.push_back(family.settings[i].factory);
  }
  record.name = BlankName();
  return record;
}

RecordTable FactoryRecords(const Family& family) {
  RecordTable records;
  records.fill(FactoryRecord(family));
  return records;
}

bool FitsLayout(const Layout& layout, std::size_t size) {
  if (layout.IsBlock()) return size == kRecordHeadSize + kBlockSize;
  const std::size_t shortest = kRecordHeadSize + layout.settings + 1;
  return size >= shortest && size <= shortest + kNameSize;
}

void StoreRecord(const Layout& layout, const Bytes& variable, MediaRecord& record) {
  auto at = variable.begin() + kRecordHeadSize;
  if (layout.IsBlock()) {
    std::copy(at, variable.end(), record.block.begin());
    return;
  }
  for (std::size_t i = 0; i < layout.settings; ++i) StoreByte(*at++, record.settings[i]);
  StoreByte(*at++, record.flag);
  if (at == variable.end()) return;
  record.name = BlankName();
  std::copy(at, variable.end(), record.name.begin());
}

Bytes ReplyBody(const Family& family, const Layout& layout, std::uint8_t number,
                const MediaRecord& record) {
  Bytes raw = {family.device_code, number, layout.version};
  if (layout.IsBlock()) {
    raw.insert(raw.end(), record.block.begin(), record.block.end());
    return raw;
  }
  std::copy_n(record.settings.begin(), layout.settings, std::back_inserter(raw));
  raw.push_back(record.flag);
  raw.insert(raw.end(), record.name.begin(), record.name.end());
  return ToBytes(ToHex(raw));
}

Bytes NameListBody(const RecordTable& records, std::uint8_t first) {
  Bytes raw;
  for (std::size_t number = first; number < first + kNameListSlots; ++number) {
    const bool exists = number >= 1 && number <= records.size();
    const auto name = exists ? records[number - 1].name : BlankName();
    raw.push_back(exists ? records[number - 1].flag : 0);
    raw.push_back(exists ? static_cast<std::uint8_t>(number) : 0);
    raw.insert(raw.end(), name.begin(), name.end());
  }
  return ToBytes(ToHex(raw));
}

}  // namespace VirtualPrinter

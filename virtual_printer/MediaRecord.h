// One custom media slot and the forms in which it crosses the wire.
#ifndef VIRTUAL_PRINTER_MEDIARECORD_H_
#define VIRTUAL_PRINTER_MEDIARECORD_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "virtual_printer/Bytes.h"
#include "virtual_printer/Model.h"

namespace VirtualPrinter {

constexpr std::size_t kSlotCount = 30;
constexpr std::size_t kNameSize = 32;
constexpr std::size_t kBlockSize = 224;
// What stands before the settings or the block: device code, slot number, layout version.
constexpr std::size_t kRecordHeadSize = 3;
// A written setting byte that leaves the stored one as it is.
constexpr std::uint8_t kLeaveAsIs = 0xFF;

struct MediaRecord {
  Bytes settings;                            // as many as the family has
  std::uint8_t flag = 0;                     // registration flag
  std::array<std::uint8_t, kNameSize> name;  // padded with blanks
  std::array<std::uint8_t, kBlockSize> block{};
};

// Slot n stands at index n - 1.
using RecordTable = std::array<MediaRecord, kSlotCount>;

MediaRecord FactoryRecord(const Family& family);
RecordTable FactoryRecords(const Family& family);

// Whether a record write's variable part of `size` bytes fits `layout`: for a block the whole of
// it, otherwise all settings and the flag, and a name of up to 32 bytes.
bool FitsLayout(const Layout& layout, std::size_t size);

// Stores a record write's variable part, which must fit the layout. Setting and flag bytes FF
// leave what is stored, and so does a name that the variable part ends before.
void StoreRecord(const Layout& layout, const Bytes& variable, MediaRecord& record);

// The body of a record read's reply: raw bytes for a block, otherwise two digits a byte.
Bytes ReplyBody(const Family& family, const Layout& layout, std::uint8_t number,
                const MediaRecord& record);

// The body of a name list reply: three slots from `first` on; past the last slot, flag and number
// 0 and a blank name.
Bytes NameListBody(const RecordTable& records, std::uint8_t first);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_MEDIARECORD_H_

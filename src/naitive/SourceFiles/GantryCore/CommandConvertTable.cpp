#include "GantryCore/CommandConvertTable.h"

#include <cstddef>
#include <iterator>

#include "ModelInfomation/ParameterName.h"

namespace Ravik {

// parameter, named value, printer's byte
constexpr CTableElement kConvertTable[49] = {
    {CUSTOMMEDIA_PLATENGAP, "2.0", 1},
    {CUSTOMMEDIA_PLATENGAP, "1.5", 2},
    {CUSTOMMEDIA_PLATENGAP, "2.5", 5},
    {"Heater", "Off", 1},
    {CUSTOMMEDIA_PREHEATER, "Off", 1},
    {CUSTOMMEDIA_AFTER_HEATER, "Off", 1},
    {CUSTOMMEDIA_PLATEN_HEATER, "Off", 1},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, "Off", 1},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, "Mode1", 2},
    {CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT, "Mode2", 3},
    {CUSTOMMEDIA_PRINTE_DRY_FEED, "Off", 1},
    {CUSTOMMEDIA_PRINTE_DRY_FEED, "On", 2},
    {CUSTOMMEDIA_BROWER, "Off", 1},
    {CUSTOMMEDIA_BROWER, "On", 2},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, "DataWidth", 1},
    {CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE, "PrinterFullWidth", 2},
    {CUSTOMMEDIA_OVERWRITE_FREQUENCY, "Off", 0},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, "Lv1", 2},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, "Lv2", 1},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED, "Auto", 254},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC, "Lv1", 2},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC, "Lv2", 1},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC, "Auto", 254},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC, "Lv1", 2},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC, "Lv2", 1},
    {CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC, "Auto", 254},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, "Periodically", 1},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, "Off", 2},
    {CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE, "EveryPage", 3},
    {CUSTOMMEDIA_ROLLING_SETTING, "PrintableSideOut", 0},
    {CUSTOMMEDIA_ROLLING_SETTING, "PrintableSideIn", 1},
    {CUSTOMMEDIA_INITIALIZE, "All", 128},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, "Mode1", 1},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, "Mode2", 2},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, "Mode3", 3},
    {CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED, "Mode0", 15},
    {CUSTOMMEDIA_FEEDING_TENSION, "Auto", 254},
    {CUSTOMMEDIA_ROLLTENSION_MEASURE, "Auto", 254},
    {CUSTOMMEDIA_PREVENT_STICKING, "Off", 1},
    {CUSTOMMEDIA_PREVENT_STICKING, "On", 2},
    {CUSTOMMEDIA_PLATENGAP_D, "Wider", 1},
    {CUSTOMMEDIA_PLATENGAP_D, "Wide", 2},
    {CUSTOMMEDIA_PLATENGAP_D, "Standard", 3},
    {CUSTOMMEDIA_PLATENGAP_D, "Narrow", 4},
    {CUSTOMMEDIA_MEDIA_TENSIOM_D, "Normal", 1},
    {CUSTOMMEDIA_MEDIA_TENSIOM_D, "High", 2},
    {CUSTOMMEDIA_MEDIA_TENSIOM_D, "ExtraHigh", 3},
    {CUSTOMMEDIA_REMOVESKEW, "Off", 0},
    {CUSTOMMEDIA_REMOVESKEW, "On", 1},
};

// offset, parameter
constexpr CCorrectElement kCorrectTable[8] = {
    {+1, CUSTOMMEDIA_OVERWRITE_FREQUENCY},
    {-128, CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION},
    {-128, CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_ATC},
    {-128, CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_MTC},
    {-128, CUSTOMMEDIA_FEEDING_TENSION},
    {-128, CUSTOMMEDIA_ROLLTENSION_MEASURE},
    {-128, CUSTOMMEDIA_INITIALIZE},
    {-101, CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE},
};

namespace {

// The parameters of both tables by a hash of their names. A name that is taken stands in the next
// free slot. Most slots are free, and the search for a name ends at a free one.
class Conversions {
 public:
  constexpr Conversions() {
    for (std::size_t row = 0; row < std::size(kConvertTable); ++row) {
      CConversion& conversion = Insert(kConvertTable[row].name);
      if (conversion.row_count == 0) conversion.rows = &kConvertTable[row];
      ++conversion.row_count;
    }
    for (const CCorrectElement& row : kCorrectTable) {
      Insert(row.name).offset += static_cast<unsigned int>(row.offset);
    }
  }

  // A conversion without rows and offset for a parameter that has none.
  constexpr const CConversion& operator[](std::string_view name) const {
    return entries_[entry_of_slot_[SlotOf(name)]];
  }

  constexpr bool RowsAreTogether() const {
    for (const CConversion& conversion : entries_) {
      for (std::size_t i = 0; i < conversion.row_count; ++i) {
        if (conversion.rows[i].name != conversion.name) return false;
      }
    }
    return true;
  }

 private:
  static constexpr std::size_t kSlots = 128;  // a power of two

  // The slot that the name has, or that it would get. What tells these names apart is their length,
  // how they start, and in front of which two letters they differ: "FeedSpeedATC", "FeedSpeedMTC".
  constexpr std::size_t SlotOf(std::string_view name) const {
    constexpr std::size_t kTail = 3;
    const std::size_t size = name.size();
    std::size_t slot = 0;
    if (size >= kTail) {
      const std::size_t first = static_cast<unsigned char>(name[0]);
      slot = 2 * size + 5 * first + static_cast<unsigned char>(name[size - kTail]);
    }
    for (slot %= kSlots; entry_of_slot_[slot] != 0; slot = (slot + 1) % kSlots) {
      if (entries_[entry_of_slot_[slot]].name == name) break;
    }
    return slot;
  }

  constexpr CConversion& Insert(std::string_view name) {
    unsigned char& entry = entry_of_slot_[SlotOf(name)];
    if (entry == 0) {
      entry = ++size_;
      entries_[entry].name = name;
    }
    return entries_[entry];
  }

  unsigned char entry_of_slot_[kSlots] = {};
  unsigned char size_ = 0;
  // Entry 0 is that of the names that have none.
  CConversion entries_[1 + std::size(kConvertTable) + std::size(kCorrectTable)] = {};
};

constexpr Conversions kConversions;
static_assert(kConversions.RowsAreTogether());

}  // namespace

bool CCommandConvertTable::StringToBinary(const std::string& name, const std::string& text,
                                          unsigned int& value) {
  for (const CTableElement& row : kConversions[name]) {
    if (row.text != text) continue;
    value = row.byteValue;
    return true;
  }
  return false;
}

bool CCommandConvertTable::BinaryToString(const std::string& name, unsigned int value,
                                          std::string& text) {
  const std::string_view found = Of(name).ToUser(value).name;
  if (found.empty()) return false;
  text = found;
  return true;
}

const CConversion& CCommandConvertTable::Of(std::string_view name) {
  return kConversions[name];
}

int CCommandConvertTable::CorrectValue(const std::string& name, unsigned int value) {
  return static_cast<int>(value + kConversions[name].offset);
}

int CCommandConvertTable::InverseCorrectValue(const std::string& name, unsigned int value) {
  return static_cast<int>(value - kConversions[name].offset);
}

}  // namespace Ravik

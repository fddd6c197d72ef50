#include "GantryCore/CommandConvertTable.h"

#include <algorithm>
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

// The sum of the parameter's offsets; unsigned, so that what follows wraps around.
unsigned int Offset(const std::string& name) {
  unsigned int offset = 0;
  for (const CCorrectElement& row : kCorrectTable) {
    if (row.name == name) offset += static_cast<unsigned int>(row.offset);
  }
  return offset;
}

}  // namespace

bool CCommandConvertTable::StringToBinary(const std::string& name, const std::string& text,
                                          unsigned int& value) {
  const auto* const row =
      std::find_if(std::begin(kConvertTable), std::end(kConvertTable),
                   [&](const CTableElement& r) { return r.name == name && r.text == text; });
  if (row == std::end(kConvertTable)) return false;
  value = row->byteValue;
  return true;
}

bool CCommandConvertTable::BinaryToString(const std::string& name, unsigned int value,
                                          std::string& text) {
  const auto* const row =
      std::find_if(std::begin(kConvertTable), std::end(kConvertTable),
                   [&](const CTableElement& r) { return r.name == name && r.byteValue == value; });
  if (row == std::end(kConvertTable)) return false;
  text = row->text;
  return true;
}

int CCommandConvertTable::CorrectValue(const std::string& name, unsigned int value) {
  return static_cast<int>(value + Offset(name));
}

int CCommandConvertTable::InverseCorrectValue(const std::string& name, unsigned int value) {
  return static_cast<int>(value - Offset(name));
}

}  // namespace Ravik

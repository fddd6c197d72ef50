// The printers that can be played, as data.
#include "virtual_printer/Model.h"

#include <algorithm>
#include <iterator>

namespace VirtualPrinter {
namespace {

// name in layout 0, name in layout 1, factory value
constexpr Setting kSettingsD[] = {
    {"ReferenceMediaType", nullptr, 0}, {"PlatenGapD", nullptr, 3},
    {"PaperThickness", nullptr, 3},     {"PaperFeedAdjustmentValue", nullptr, 101},
    {"DryingTimePerPass", nullptr, 0},  {"MediaSuctionD", nullptr, 4},
    {"MediaTensionD", nullptr, 1},      {"Removeskew", nullptr, 1},
    {"Reserved1", nullptr, 0},          {"Reserved2", nullptr, 0},
    {"Reserved3", nullptr, 0},          {"Reserved4", nullptr, 0},
    {"Reserved5", nullptr, 0},          {"Reserved6", nullptr, 0},
    {"Reserved7", nullptr, 0},
};

constexpr Setting kSettingsI[] = {
    {"ReferenceMediaType", nullptr, 0},  {"PlatenGapI", nullptr, 2},
    {"PaperThickness", nullptr, 3},      {"PaperFeedAdjustmentValue", nullptr, 101},
    {"DryingTimePerPass", nullptr, 0},   {"MediaSuctionI", nullptr, 4},
    {"RollBackTensionI", nullptr, 1},    {"Removeskew", nullptr, 1},
    {"PaperFeedStabilizer", nullptr, 0}, {"FeedLateralAdjust", nullptr, 0},
    {"UsePaperEjectRoller", nullptr, 1}, {"RollPaperMargin", nullptr, 3},
    {"MarginPerPage", nullptr, 3},       {"Reserved1", nullptr, 0},
    {"Reserved2", nullptr, 0},
};

constexpr Setting kSettingsPlain[] = {
    {"PlatenGap", "PlatenGap", 2},
    {"PreHeater", "PreHeater", 40},
    {"PlatenHeater", "PlatenHeater", 40},
    {"AfterHeater", "AfterHeater", 50},
    {"DryingTimePerPass", "DryingTimePerPass", 0},
    {"AfterHeaterFeed", "AfterHeaterFeed", 1},
    {"AdditionalDryer", "AdditionalDryer", 1},
    {"MediaSuction", "MediaSuction", 4},
    {"HeadMovement", "HeadMovement", 1},
    {"MultiStrikePrinting", "MultiStrikePrinting", 0},
    {"MediaTension", "MediaTensionATC", 128},
    {"FeedSpeed", "FeedSpeedATC", 254},
    {"TensionMeasure", "TensionMeasure", 1},
    {"RollType", "RollType", 0},
    {"Reserved", "MediaTensionMTC", 128},
    {nullptr, "FeedSpeedMTC", 254},
    {nullptr, "Reserved", 0},
};

constexpr Setting kSettingsStad[] = {
    {"PlatenGap", nullptr, 2},         {"PreHeater", nullptr, 1},
    {"PlatenHeater", nullptr, 1},      {"AfterHeater", nullptr, 50},
    {"DryingTimePerPass", nullptr, 0}, {"PrintDryFeed", nullptr, 1},
    {"AdditionalDryer", nullptr, 1},   {"MediaSuction", nullptr, 4},
    {"HeadMovement", nullptr, 1},      {"MultiStrikePrinting", nullptr, 0},
    {"FeedingTension", nullptr, 254},  {"FeedSpeed", nullptr, 254},
    {"TensionMeasure", nullptr, 1},    {"RollType", nullptr, 0},
    {"TakeupTension", nullptr, 254},   {"BlankAreaFeed", nullptr, 15},
    {"PreventSticking", nullptr, 1},   {"Reserved", nullptr, 0},
};

// version, settings (0: an opaque block)
constexpr Layout kLayoutsD[] = {{0, std::size(kSettingsD)}};
constexpr Layout kLayoutsI[] = {{0, std::size(kSettingsI)}};
constexpr Layout kLayoutsPlain[] = {{0, 15}, {1, std::size(kSettingsPlain)}, {128, 0}};
constexpr Layout kLayoutsStad[] = {{0, std::size(kSettingsStad)}, {128, 0}};

template <std::size_t S, std::size_t L>
constexpr Family MakeFamily(const char* name, std::uint8_t device_code, bool tells_firmware,
                            const Setting (&settings)[S], const Layout (&layouts)[L]) {
  return {name, device_code, tells_firmware, settings, S, layouts, L};
}

// name, device code, firmware request, settings, layouts
constexpr Family kLunde = MakeFamily("Lunde", 0x38, false, kSettingsD, kLayoutsD);
constexpr Family kCorvel = MakeFamily("Corvel", 0x46, true, kSettingsI, kLayoutsI);
constexpr Family kOstrel = MakeFamily("Ostrel", 0x37, false, kSettingsPlain, kLayoutsPlain);
constexpr Family kParvane = MakeFamily("Parvane", 0x37, false, kSettingsPlain, kLayoutsPlain);
constexpr Family kTamsk = MakeFamily("Tamsk", 0x37, false, kSettingsPlain, kLayoutsPlain);
constexpr Family kTamskST = MakeFamily("TamskST", 0x37, false, kSettingsStad, kLayoutsStad);

struct Device {
  std::string_view name;
  const Family* family;
};

constexpr Device kDevices[] = {
    {"ZARMO QM-R410 Series Comm Driver", &kOstrel},
    {"QM-R410 Series", &kOstrel},
    {"ZARMO QM-R210 Series Comm Driver", &kParvane},
    {"QM-R210 Series", &kParvane},
    {"ZARMO QM-R310 Series Comm Driver", &kTamsk},
    {"QM-R310 Series", &kTamsk},
    {"ZARMO QM-T84 Series Comm Driver", &kTamskST},
    {"QM-T84 Series", &kTamskST},
    {"ZARMO QM-T64 Series Comm Driver", &kTamskST},
    {"QM-T64 Series", &kTamskST},
    {"ZARMO QM-T44 Series Comm Driver", &kLunde},
    {"QM-T44 Series", &kLunde},
    {"ZARMO QM-V5 Series", &kCorvel},
    {"QM-V5 Series", &kCorvel},
    {"ZARMO QM-V7 Series", &kCorvel},
    {"QM-V7 Series", &kCorvel},
    {"ZARMO QM-V5PS Series", &kCorvel},
    {"ZARMO QM-V7PS Series", &kCorvel},
};

}  // namespace

const Family* FindFamily(std::string_view device_name) {
  const auto* device =
      std::find_if(std::begin(kDevices), std::end(kDevices),
                   [device_name](const Device& row) { return row.name == device_name; });
  return device == std::end(kDevices) ? nullptr : device->family;
}

const Layout* FindLayout(const Family& family, std::uint8_t version) {
  const auto* end = family.layouts + family.layout_count;
  const auto* layout = std::find_if(
      family.layouts, end, [version](const Layout& row) { return row.version == version; });
  return layout == end ? nullptr : layout;
}

const char* SettingName(const Family& family, const Layout& layout, std::size_t index) {
  const Setting& setting = family.settings[index];
  return layout.version == 0 ? setting.name_in_layout0 : setting.name_in_layout1;
}

std::vector<std::string_view> DeviceNames() {
  std::vector<std::string_view> names;
  for (const auto& device : kDevices) names.push_back(device.name);
  return names;
}

}  // namespace VirtualPrinter

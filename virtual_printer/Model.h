// The printers that can be played: device names, families and the record layouts they know.
#ifndef VIRTUAL_PRINTER_MODEL_H_
#define VIRTUAL_PRINTER_MODEL_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace VirtualPrinter {

// One setting byte of a record. Layouts 0 and 1 show the same byte under their own names; null
// where a layout ends before it.
struct Setting {
  const char* name_in_layout0;
  const char* name_in_layout1;
  std::uint8_t factory;
};

// How a record crosses the wire: its settings, flag and name field by field, or, without
// settings, one opaque block.
struct Layout {
  std::uint8_t version;
  std::size_t settings;

  bool IsBlock() const { return settings == 0; }
};

struct Family {
  const char* name;
  std::uint8_t device_code;  // first byte of every record command
  bool tells_firmware;       // knows the firmware version request
  const Setting* settings;
  std::size_t setting_count;
  const Layout* layouts;
  std::size_t layout_count;
};

// Null for a name that no printer bears. Names are compared whole and case-sensitively.
const Family* FindFamily(std::string_view device_name);

// Null for a layout version that the family does not know.
const Layout* FindLayout(const Family& family, std::uint8_t version);

const char* SettingName(const Family& family, const Layout& layout, std::size_t index);

std::vector<std::string_view> DeviceNames();

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_MODEL_H_

// The status text: a line of text, then status fields in binary form.
//
//   text CR LF, N (two bytes, little-endian), N bytes of fields: id, data length, data
//
// For example 53 54 41 54 55 53 0D 0A 03 00 01 01 04: "STATUS", 3 bytes, field 01 (status) with
// the one byte 04 (ready).
#ifndef VIRTUAL_PRINTER_STATUSTEXT_H_
#define VIRTUAL_PRINTER_STATUSTEXT_H_

#include <cstddef>
#include <string_view>

#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {

constexpr std::size_t kSerialSize = 10;
constexpr std::size_t kStatusTextMax = 256;

// The status of a printer that is ready; `serial` is padded with blanks or cut to ten characters.
Bytes MakeStatusText(std::string_view serial);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_STATUSTEXT_H_

// The printer's command language: two letters, a length, format bytes and a variable part.
//
//   offset  size  content
//   0       2     name, two letters
//   2       2     L, little-endian: number of bytes that follow
//   4       F     format bytes, fixed for a command
//   4 + F   L-F   variable part
//
// For example 45 58 08 00 01 00 00 00 1B 37 03 00: "EX", 8 bytes, format 01 00 00 00 1B (read a
// record), device code 37, slot 3, layout 0.
#ifndef VIRTUAL_PRINTER_COMMAND_H_
#define VIRTUAL_PRINTER_COMMAND_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {

constexpr std::size_t kCommandHeadSize = 4;  // name and length

enum class CommandKind {
  kUnknown,
  kWriteRecord,
  kReadRecord,
  kReadNames,
  kInitialize,
  kFirmware,
  kSave,
  kStatus,
};

struct Command {
  CommandKind kind = CommandKind::kUnknown;
  std::string_view operation;  // in words: "read-record"; empty for an unknown command
  std::string reply_header;    // as far as the command could be recognised; may be empty
  Bytes format;
  Bytes variable;
};

// Takes one whole command apart. The kind is unknown when name or format are, or when the length
// field differs from what follows it.
Command ParseCommand(const Bytes& bytes);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_COMMAND_H_

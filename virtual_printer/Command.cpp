// The printer's command language.
#include "virtual_printer/Command.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace VirtualPrinter {
namespace {

struct CommandRow {
  CommandKind kind;
  std::string_view name;
  std::string_view format;
  std::string_view reply_header;
  std::string_view operation;
};

// Keeps the zero bytes of a literal.
template <std::size_t N>
constexpr std::string_view Format(const char (&literal)[N]) {
  return {literal, N - 1};
}

constexpr CommandRow kCommands[] = {
    {CommandKind::kWriteRecord, "EX", Format("\x00\x00\x00\x00\x1B"), "EX:0000001B",
     "write-record"},
    {CommandKind::kReadRecord, "EX", Format("\x01\x00\x00\x00\x1B"), "EX:0000001B", "read-record"},
    {CommandKind::kReadNames, "EX", Format("\x01\x00\x00\x00\x1D"), "EX:0000001D", "read-names"},
    {CommandKind::kInitialize, "EX", Format("\x00\x00\x00\x00\x1E"), "EX:0000001E", "initialize"},
    {CommandKind::kFirmware, "VI", Format("\x01"), "VI:", "read-firmware"},
    {CommandKind::kSave, "SV", "", "SV:", "save"},
    {CommandKind::kStatus, "ST", Format("\x01"), "ST:", "read-status"},
};

bool StartsWith(const Bytes& bytes, std::size_t from, std::string_view text) {
  return bytes.size() >= from + text.size() &&
         std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(from),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

const CommandRow* FindRow(const Bytes& bytes) {
  const auto* row = std::find_if(std::begin(kCommands), std::end(kCommands),
                                 [&bytes](const CommandRow& candidate) {
                                   return StartsWith(bytes, 0, candidate.name) &&
                                          StartsWith(bytes, kCommandHeadSize, candidate.format);
                                 });
  return row == std::end(kCommands) ? nullptr : row;
}

bool IsName(const Bytes& bytes) {
  const auto is_capital = [](std::uint8_t byte) { return byte >= 'A' && byte <= 'Z'; };
  return bytes.size() >= 2 && is_capital(bytes[0]) && is_capital(bytes[1]);
}

std::size_t LengthField(const Bytes& bytes) {
  return bytes[2] + std::size_t{bytes[3]} * 256;
}

}  // namespace

Command ParseCommand(const Bytes& bytes) {
  Command command;
  if (!IsName(bytes)) return command;
  command.reply_header = {static_cast<char>(bytes[0]), static_cast<char>(bytes[1]), ':'};
  const CommandRow* row = FindRow(bytes);
  if (row == nullptr) return command;
  command.reply_header = row->reply_header;
  if (bytes.size() < kCommandHeadSize) return command;
  if (LengthField(bytes) != bytes.size() - kCommandHeadSize) return command;
  command.kind = row->kind;
  command.operation = row->operation;
  const auto data = bytes.begin() + kCommandHeadSize;
  const auto variable = data + static_cast<std::ptrdiff_t>(row->format.size());
  command.format.assign(data, variable);
  command.variable.assign(variable, bytes.end());
  return command;
}

}  // namespace VirtualPrinter

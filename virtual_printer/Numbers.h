// Decimal numbers of the command line.
#ifndef VIRTUAL_PRINTER_NUMBERS_H_
#define VIRTUAL_PRINTER_NUMBERS_H_

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace VirtualPrinter {

// Digits alone, no greater than `limit`.
inline std::optional<std::uint32_t> ParseNumber(std::string_view text, std::uint32_t limit) {
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (text.empty() || error != std::errc() || stopped != end || number > limit) return std::nullopt;
  return number;
}

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_NUMBERS_H_

// Byte sequences and their hexadecimal text.
#ifndef VIRTUAL_PRINTER_BYTES_H_
#define VIRTUAL_PRINTER_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VirtualPrinter {

using Bytes = std::vector<std::uint8_t>;

void Append(Bytes& to, std::string_view text);
void Append(Bytes& to, const Bytes& bytes);
Bytes ToBytes(std::string_view text);

// Two upper-case digits a byte, no separators.
std::string ToHex(const std::uint8_t* bytes, std::size_t size);
std::string ToHex(const Bytes& bytes);
std::string ToHex(std::uint8_t byte);

// Reads digits of either case; nothing for an odd number of them or for any other character.
std::optional<Bytes> FromHex(std::string_view text);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_BYTES_H_

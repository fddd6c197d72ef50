// Byte sequences and their hexadecimal text.
#include "virtual_printer/Bytes.h"

namespace VirtualPrinter {
namespace {

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

}  // namespace

void Append(Bytes& to, std::string_view text) {
  to.insert(to.end(), text.begin(), text.end());
}

void Append(Bytes& to, const Bytes& bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

Bytes ToBytes(std::string_view text) {
  return Bytes(text.begin(), text.end());
}

std::string ToHex(const std::uint8_t* bytes, std::size_t size) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(size * 2);
  for (std::size_t i = 0; i < size; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

std::string ToHex(const Bytes& bytes) {
  return ToHex(bytes.data(), bytes.size());
}

std::string ToHex(std::uint8_t byte) {
  return ToHex(&byte, 1);
}

std::optional<Bytes> FromHex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = DigitValue(text[i]);
    const int low = DigitValue(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
  }
  return bytes;
}

}  // namespace VirtualPrinter

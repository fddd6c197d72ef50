// UTF-8 (RFC 3629), UTF-16 (RFC 2781) and Mac Roman. Shift-JIS is CodePage932's.
#include "corefoundation/TextEncoding.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "corefoundation/CodePage932.h"

namespace CoreFoundation {

namespace {

// Mac Roman, 80 to FF.
constexpr char16_t kMacRoman[] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1,  // 80
    0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5, 0x00E7, 0x00E9, 0x00E8,  // 88
    0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3,  // 90
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC,  // 98
    0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6, 0x00DF,  // A0
    0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8,  // A8
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211,  // B0
    0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8,  // B8
    0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB,  // C0
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153,  // C8
    0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA,  // D0
    0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02,  // D8
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,  // E0
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4,  // E8
    0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC,  // F0
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,  // F8
};
static_assert(std::size(kMacRoman) == 0x80);

bool IsASCII(unsigned char byte) {
  return byte < 0x80;
}

// Takes the ASCII that bytes begin with off their front.
std::u16string TakeASCII(std::string_view& bytes) {
  const auto* const end = std::find_if_not(bytes.begin(), bytes.end(), IsASCII);
  std::u16string units(bytes.begin(), end);
  bytes.remove_prefix(units.size());
  return units;
}

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void AppendCharacter(char32_t character, std::u16string& units) {
  if (character < 0x10000) {
    units.push_back(static_cast<char16_t>(character));
    return;
  }
  units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)));
  units.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF)));
}

// Well-formed sequences by their first byte: how many bytes follow it, its fixed bits, the bits of
// the character in it, and the least character for which the form is the shortest.
struct UTF8Form {
  unsigned char first;
  unsigned char last;
  std::size_t trailing;
  unsigned char mark;
  unsigned char mask;
  char32_t least;
};
constexpr UTF8Form kUTF8Forms[] = {
    {0x00, 0x7F, 0, 0x00, 0x7F, 0x0},
    {0xC2, 0xDF, 1, 0xC0, 0x1F, 0x80},
    {0xE0, 0xEF, 2, 0xE0, 0x0F, 0x800},
    {0xF0, 0xF4, 3, 0xF0, 0x07, 0x10000},
};

// Takes one character off the front of bytes, which is not empty; nullopt when it is ill-formed.
std::optional<char32_t> TakeUTF8Character(std::string_view& bytes) {
  const auto lead = static_cast<unsigned char>(bytes.front());
  const auto* form = std::find_if(std::begin(kUTF8Forms), std::end(kUTF8Forms), [lead](auto& row) {
    return lead >= row.first && lead <= row.last;
  });
  if (form == std::end(kUTF8Forms) || bytes.size() <= form->trailing) return std::nullopt;
  char32_t character = lead & form->mask;
  for (const char byte : bytes.substr(1, form->trailing)) {
    if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) return std::nullopt;
    character = (character << 6) | (static_cast<unsigned char>(byte) & 0x3F);
  }
  if (character < form->least || character > 0x10FFFF) return std::nullopt;
  if (character >= 0xD800 && character < 0xE000) return std::nullopt;
  bytes.remove_prefix(1 + form->trailing);
  return character;
}

std::optional<std::u16string> DecodeUTF8(std::string_view bytes) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    bytes.remove_prefix(kByteOrderMark.size());
  }
  std::u16string units = TakeASCII(bytes);
  units.reserve(units.size() + bytes.size());
  while (!bytes.empty()) {
    const std::optional<char32_t> character = TakeUTF8Character(bytes);
    if (!character) return std::nullopt;
    AppendCharacter(*character, units);
  }
  return units;
}

std::optional<std::u16string> DecodeUTF16LE(std::string_view bytes) {
  if (bytes.size() == 1) return std::nullopt;
  std::u16string units;
  for (std::size_t i = 0; bytes.size() - i >= 2; i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    units.push_back(static_cast<char16_t>(low | high << 8));
  }
  return units;
}

std::u16string DecodeMacRoman(std::string_view bytes) {
  std::u16string units = TakeASCII(bytes);
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    units.push_back(IsASCII(code) ? code : kMacRoman[code - 0x80]);
  }
  return units;
}

std::size_t EncodeUTF8(std::u16string_view text, std::string& bytes) {
  char32_t character = text.front();
  std::size_t taken = 1;
  if (IsHighSurrogate(character) && text.size() > 1 && IsLowSurrogate(text[1])) {
    character = 0x10000 + ((character - 0xD800) << 10) + (text[1] - 0xDC00U);
    taken = 2;
  } else if (IsHighSurrogate(character) || IsLowSurrogate(character)) {
    return 0;
  }
  const auto* form = std::prev(std::end(kUTF8Forms));
  while (character < form->least) --form;
  std::size_t shift = 6 * form->trailing;
  bytes.push_back(static_cast<char>(form->mark | (character >> shift)));
  while (shift > 0) {
    shift -= 6;
    bytes.push_back(static_cast<char>(0x80 | ((character >> shift) & 0x3F)));
  }
  return taken;
}

std::size_t EncodeUTF16LE(char16_t unit, std::string& bytes) {
  bytes.push_back(static_cast<char>(unit & 0xFF));
  bytes.push_back(static_cast<char>(unit >> 8));
  return 1;
}

std::size_t EncodeMacRoman(char16_t unit, std::string& bytes) {
  const auto* row = std::find(std::begin(kMacRoman), std::end(kMacRoman), unit);
  if (row == std::end(kMacRoman)) return 0;
  bytes.push_back(static_cast<char>(0x80 + std::distance(std::begin(kMacRoman), row)));
  return 1;
}

}  // namespace

std::optional<std::u16string> DecodeText(std::string_view bytes, CFStringEncoding encoding) {
  if (encoding == kCFStringEncodingUTF16LE) return DecodeUTF16LE(bytes);
  if (encoding == kCFStringEncodingUTF8) return DecodeUTF8(bytes);
  if (encoding == kCFStringEncodingMacRoman) return DecodeMacRoman(bytes);
  if (encoding == kCFStringEncodingDOSJapanese) return DecodeCodePage932(bytes);
  return std::nullopt;
}

std::size_t EncodeCharacter(std::u16string_view text, CFStringEncoding encoding,
                            std::string& bytes) {
  const char16_t unit = text.front();
  switch (encoding) {
    case kCFStringEncodingUTF16LE:
      return EncodeUTF16LE(unit, bytes);
    case kCFStringEncodingUTF8:
      return EncodeUTF8(text, bytes);
    case kCFStringEncodingMacRoman:
    case kCFStringEncodingDOSJapanese:
      break;
    default:
      return 0;
  }
  if (unit < 0x80) {
    bytes.push_back(static_cast<char>(unit));
    return 1;
  }
  if (encoding == kCFStringEncodingMacRoman) return EncodeMacRoman(unit, bytes);
  if (encoding == kCFStringEncodingDOSJapanese) return EncodeCodePage932(unit, bytes) ? 1 : 0;
  return 0;
}

}  // namespace CoreFoundation

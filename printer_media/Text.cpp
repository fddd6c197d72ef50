#include "printer_media/Text.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cwchar>

namespace PrinterMedia {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

unsigned char Byte(char character) {
  return static_cast<unsigned char>(character);
}

bool IsContinuation(char character) {
  return (Byte(character) & 0xC0U) == 0x80;
}

// Length of the well-formed UTF-8 sequence at the begin of text (RFC 3629), 0 if there is none.
std::size_t SequenceLength(std::string_view text) {
  const unsigned char lead = Byte(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  const unsigned char second = Byte(text[1]);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  const auto tail = text.substr(1, length - 1);
  return std::all_of(tail.begin(), tail.end(), IsContinuation) ? length : 0;
}

bool IsControl(char character) {
  return Byte(character) < 0x20 || Byte(character) == 0x7F;
}

// U+0080 to U+009F, some of which terminals obey.
bool IsControlSequence(std::string_view sequence) {
  return sequence.size() == 2 && Byte(sequence[0]) == 0xC2 && Byte(sequence[1]) < 0xA0;
}

}  // namespace

std::string Widened(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char character : bytes) {
    const unsigned int byte = Byte(character);
    if (byte < 0x80) {
      text += character;
    } else {
      text += static_cast<char>(0xC0U | byte >> 6);
      text += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
  return text;
}

std::string Narrowed(std::string_view characters) {
  std::string bytes;
  bytes.reserve(characters.size());
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const unsigned int lead = Byte(characters[i]);
    const bool is_byte = (lead & 0xFCU) == 0xC0 && i + 1 < characters.size();
    if (lead < 0x80) {
      bytes += characters[i];
    } else if (is_byte) {
      bytes += static_cast<char>((lead & 3U) << 6 | (Byte(characters[++i]) & 0x3FU));
    } else if (!IsContinuation(characters[i])) {
      bytes += '?';
    }
  }
  return bytes;
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = SequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string Printable(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = SequenceLength(bytes);
    const bool is_plain = length > 0 && (bytes[0] == '\n' || !IsControl(bytes[0])) &&
                          !IsControlSequence(bytes.substr(0, length));
    const std::string_view part = bytes.substr(0, std::max<std::size_t>(length, 1));
    if (is_plain) {
      text += part;
    } else {
      for (const char character : part) text += "\\x" + ToHex({&character, 1});
    }
    bytes.remove_prefix(part.size());
  }
  return text;
}

std::size_t Width(std::string_view printable) {
  // What a character takes is told by a locale that knows it, whichever is the user's.
  static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t users = uselocale(utf8);
  std::size_t width = 0;
  std::mbstate_t state{};
  while (!printable.empty()) {
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, printable.data(), printable.size(), &state);
    const bool is_read = length >= 1 && length <= printable.size();
    width += is_read ? static_cast<std::size_t>(std::max(0, wcwidth(character))) : 1;
    printable.remove_prefix(is_read ? length : 1);
  }
  uselocale(users);
  return width;
}

std::string ToHex(std::string_view bytes) {
  std::string text;
  for (const char character : bytes) {
    text += kDigits[Byte(character) >> 4];
    text += kDigits[Byte(character) & 0x0FU];
  }
  return text;
}

bool FromHex(std::string_view text, std::string& bytes) {
  if (text.size() % 2 != 0) return false;
  std::string read;
  unsigned int value = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto upper = static_cast<char>(std::toupper(Byte(text[i])));
    const std::size_t digit = std::string_view(kDigits).find(upper);
    if (digit == std::string_view::npos) return false;
    value = value << 4 | static_cast<unsigned int>(digit);
    if (i % 2 != 0) read += static_cast<char>(value & 0xFFU);
  }
  bytes = read;
  return true;
}

bool SameButCase(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](char a, char b) {
    return a == b ||
           (Byte(a) < 0x80 && Byte(b) < 0x80 && std::tolower(Byte(a)) == std::tolower(Byte(b)));
  });
}

std::string Counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

std::string OnOneLine(std::string_view text) {
  std::string line;
  for (const char character : text) {
    if (character == '\n') {
      line += "\\x0A";
    } else {
      line += character;
    }
  }
  return line;
}

std::string Quoted(std::string_view name) {
  return '"' + OnOneLine(name) + '"';
}

}  // namespace PrinterMedia

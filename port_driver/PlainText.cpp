// Texts of printers: blanks, characters of UTF-8, and their order.
#include "port_driver/PlainText.h"

#include <algorithm>

namespace ZIOP {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

unsigned ByteAt(std::string_view text, std::size_t place) {
  return place < text.size() ? static_cast<unsigned char>(text[place]) : 0U;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Length in bytes of the character that text begins with, 0 if it begins with none (RFC 3629: no
// overlong form, no surrogate, nothing past U+10FFFF).
std::size_t CharacterLength(std::string_view text) {
  const unsigned first = ByteAt(text, 0);
  const unsigned second = ByteAt(text, 1);
  if (first < 0x80) {
    return 1;
  }
  if (first < 0xC2 || first > 0xF4 || (first == 0xE0 && second < 0xA0) ||
      (first == 0xED && second > 0x9F) || (first == 0xF0 && second < 0x90) ||
      (first == 0xF4 && second > 0x8F)) {
    return 0;
  }
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i) {
    if ((ByteAt(text, i) & 0xC0U) != 0x80) {
      return 0;
    }
  }
  return length;
}

// The character that text begins with, as it is listed; takes its bytes off.
std::string_view TakeCharacter(std::string_view& text) {
  const std::size_t length = CharacterLength(text);
  const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
  text.remove_prefix(character.size());
  if (length == 0) {
    return kReplacement;
  }
  const bool is_control = length == 2 && character < "\xC2\xA0";  // U+0080 to U+009F
  const bool ends_line = character == "\xE2\x80\xA8" || character == "\xE2\x80\xA9";
  return is_control || ends_line ? " " : character;
}

// Cuts the digits that text begins with off, and gives them without leading zeros.
std::string_view TakeNumber(std::string_view& text) {
  const auto length =
      static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
  std::string_view number = text.substr(0, length);
  text.remove_prefix(length);
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number;
}

// Below 0, 0 or above 0, as left comes before, with or after right.
int Compare(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (IsDigit(left.front()) && IsDigit(right.front())) {
      const std::string_view first = TakeNumber(left);
      const std::string_view second = TakeNumber(right);
      if (first != second) {
        return first.size() != second.size() ? (first.size() < second.size() ? -1 : 1)
                                             : first.compare(second);
      }
      continue;
    }
    if (left.front() != right.front()) {
      return left.substr(0, 1).compare(right.substr(0, 1));
    }
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  return left.compare(right);
}

}  // namespace

std::string Tidy(std::string_view text) {
  std::string tidy;
  bool pending = false;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) <= 0x20 || c == 0x7F) {
      pending = !tidy.empty();
      continue;
    }
    if (pending) {
      tidy += ' ';
      pending = false;
    }
    tidy += c;
  }
  return tidy;
}

std::string ListedText(std::string_view text, std::size_t maximum) {
  std::string listed;
  while (!text.empty()) {
    listed += TakeCharacter(text);
  }
  listed = Tidy(listed);
  if (listed.size() > maximum) {
    std::size_t end = maximum;
    while (end > 0 && (ByteAt(listed, end) & 0xC0U) == 0x80) {
      --end;
    }
    listed = Tidy(listed.substr(0, end));
  }
  return listed;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  return lower;
}

bool ComesBefore(std::string_view left, std::string_view right) {
  const int order = Compare(left, right);
  return order != 0 ? order < 0 : left < right;
}

}  // namespace ZIOP

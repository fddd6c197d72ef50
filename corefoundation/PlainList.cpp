// A request for a known printer reads two lists, the bundle's and the preferences, which are plain
// unless somebody has edited them: it does without libplist.
#include "corefoundation/PlainList.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "corefoundation/Array.h"
#include "corefoundation/Data.h"
#include "corefoundation/Dictionary.h"
#include "corefoundation/Number.h"
#include "corefoundation/String.h"

namespace CoreFoundation {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

constexpr std::array<int, 256> MakeBase64Values() {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::array<int, 256> values{};
  for (auto& value : values) value = -1;
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values[static_cast<unsigned char>(kDigits[i])] = static_cast<int>(i);
  }
  return values;
}

constexpr std::array<int, 256> kBase64Values = MakeBase64Values();

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t bits = 0;
  std::size_t digits = 0;
  std::size_t paddings = 0;
  for (const char character : text) {
    if (kBlanks.find(character) != std::string_view::npos) continue;
    const int value = kBase64Values[static_cast<unsigned char>(character)];
    if (character == '=') {
      ++paddings;
      continue;
    }
    if (value < 0 || paddings != 0) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    if (digits++ % 4 != 0) bytes += static_cast<char>(bits >> (6 - 2 * ((digits - 1) % 4)) & 0xFF);
  }
  const bool is_whole = (digits + paddings) % 4 == 0 && paddings < 3;
  const std::uint32_t unused = (1U << 2 * paddings) - 1;
  return is_whole && (bits & unused) == 0 ? std::optional(bytes) : std::nullopt;
}

class PlainReader {
 public:
  explicit PlainReader(std::string_view text) : rest_(text) {}

  CFRef<CFTypeRef> Read() {
    if (!SkipProlog()) return {};
    CFRef<CFTypeRef> root = ReadValue();
    if (!root) return {};
    if (has_outer_tag_ && !Take("</plist>")) return {};
    SkipBlanks();
    if (!rest_.empty()) return {};
    return root;
  }

 private:
  void SkipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
  }

  // Takes the markup if it comes next, but for blanks.
  bool Take(std::string_view markup) {
    SkipBlanks();
    return TakeHere(markup);
  }

  bool TakeHere(std::string_view markup) {
    if (rest_.substr(0, markup.size()) != markup) return false;
    rest_.remove_prefix(markup.size());
    return true;
  }

  bool SkipPast(std::string_view end) {
    const std::size_t at = rest_.find(end);
    if (at == std::string_view::npos) return false;
    rest_.remove_prefix(at + end.size());
    return true;
  }

  bool SkipProlog() {
    if (Take("<?xml ") && !SkipPast("?>")) return false;
    if (Take("<!DOCTYPE ") && !SkipPast(">")) return false;
    has_outer_tag_ = Take("<plist");
    return !has_outer_tag_ || SkipPast(">");
  }

  // The text up to the tag that ends it.
  std::optional<std::string_view> TakeText(std::string_view end) {
    const std::string_view text = rest_.substr(0, rest_.find('<'));
    rest_.remove_prefix(text.size());
    if (text.find('&') != std::string_view::npos || !TakeHere(end)) return std::nullopt;
    return text;
  }

  CFRef<CFTypeRef> ReadValue() {
    if (Take("<string>")) return ReadString("</string>");
    if (Take("<dict>")) return ReadDictionary();
    if (Take("<array>")) return ReadArray();
    if (Take("<integer>")) return ReadInteger();
    if (Take("<data>")) return ReadData();
    if (Take("<true/>")) return CFRef<CFTypeRef>(kCFBooleanTrue);
    if (Take("<false/>")) return CFRef<CFTypeRef>(kCFBooleanFalse);
    return {};
  }

  CFRef<CFTypeRef> ReadString(std::string_view end) {
    const auto text = TakeText(end);
    if (!text) return {};
    return CFRef<CFTypeRef>(CreateString(*text));
  }

  CFRef<CFTypeRef> ReadInteger() {
    const auto text = TakeText("</integer>");
    if (!text || text->empty() || text->size() > 18) return {};
    if (text->find_first_not_of("0123456789") != std::string_view::npos) return {};
    if (text->front() == '0' && text->size() > 1) return {};  // libplist takes it for octal
    std::uint64_t value = 0;
    for (const char digit : *text) value = 10 * value + static_cast<std::uint64_t>(digit - '0');
    return CFRef<CFTypeRef>(RefTo(new Number(value)));
  }

  CFRef<CFTypeRef> ReadData() {
    const auto text = TakeText("</data>");
    auto bytes = text ? DecodeBase64(*text) : std::nullopt;
    if (!bytes) return {};
    return CFRef<CFTypeRef>(RefTo(new Data(std::move(*bytes))));
  }

  CFRef<CFTypeRef> ReadArray() {
    auto* const array = new Array;
    CFRef<CFTypeRef> owner(RefTo(array));
    while (!Take("</array>")) {
      const CFRef<CFTypeRef> value = ReadValue();
      if (!value) return {};
      array->Append(value.get());
    }
    return owner;
  }

  CFRef<CFTypeRef> ReadDictionary() {
    auto* const dictionary = new Dictionary;
    CFRef<CFTypeRef> owner(RefTo(dictionary));
    while (!Take("</dict>")) {
      if (!Take("<key>")) return {};
      const CFRef<CFTypeRef> key = ReadString("</key>");
      if (!key) return {};
      const CFRef<CFTypeRef> value = ReadValue();
      if (!value) return {};
      dictionary->Set(key.get(), value.get());
    }
    return owner;
  }

  std::string_view rest_;
  bool has_outer_tag_ = false;
};

}  // namespace

CFRef<CFTypeRef> ReadPlainList(std::string_view text) {
  return PlainReader(text).Read();
}

}  // namespace CoreFoundation

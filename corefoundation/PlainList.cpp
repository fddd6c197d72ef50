// A request for a known printer reads two lists, the bundle's and the preferences, which are plain
// unless somebody has edited them: it does without libplist.
#include "corefoundation/PlainList.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "corefoundation/Array.h"
#include "corefoundation/Data.h"
#include "corefoundation/Dictionary.h"
#include "corefoundation/ListBudget.h"
#include "corefoundation/Number.h"
#include "corefoundation/PropertyListCheck.h"
#include "corefoundation/String.h"

namespace CoreFoundation {

namespace {

constexpr bool IsBlank(char character) {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

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
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  std::size_t digits = 0;
  std::size_t paddings = 0;
  for (const char character : text) {
    if (IsBlank(character)) continue;
    const int value = kBase64Values[static_cast<unsigned char>(character)];
    if (character == '=') {
      if (++paddings > 2) return std::nullopt;
      continue;
    }
    if (value < 0 || paddings != 0) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
    if (digits++ % 4 != 0) bytes += static_cast<char>(bits >> (6 - 2 * ((digits - 1) % 4)) & 0xFF);
  }
  const bool is_whole = (digits + paddings) % 4 == 0;
  const std::uint32_t unused = (1U << 2 * paddings) - 1;
  return is_whole && (bits & unused) == 0 ? std::optional(bytes) : std::nullopt;
}

// Takes nothing that IsSoundXMLList refuses, and spends the same of the budget.
class PlainReader {
 public:
  explicit PlainReader(std::string_view text) : rest_(text), budget_(text.size()) {}

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
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
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

  // Skips the rest of a tag that has no end of its own and holds texts between double quotes alone.
  bool SkipTag(std::string_view end) {
    const std::size_t length = rest_.find(end);
    if (length == std::string_view::npos) return false;
    const std::string_view tag = rest_.substr(0, length);
    rest_.remove_prefix(length + end.size());
    const bool is_closed = !tag.empty() && tag.back() == '/';
    return !is_closed && std::count(tag.begin(), tag.end(), '"') % 2 == 0 &&
           tag.find_first_of("<['") == std::string_view::npos;
  }

  bool SkipProlog() {
    if (Take("<?xml ") && !SkipTag("?>")) return false;
    if (Take("<!DOCTYPE ") && !SkipTag(">")) return false;
    const bool has_attributes = Take("<plist ");
    has_outer_tag_ = has_attributes || Take("<plist>");
    return !has_attributes || SkipTag(">");
  }

  // The text up to the tag that ends it.
  std::optional<std::string_view> TakeText(std::string_view end) {
    const std::string_view text = rest_.substr(0, rest_.find('<'));
    rest_.remove_prefix(text.size());
    if (text.find('&') != std::string_view::npos || !TakeHere(end)) return std::nullopt;
    if (!budget_.TakeObject(text.size() + end.size())) return std::nullopt;
    return text;
  }

  CFRef<CFTypeRef> ReadValue() {
    if (Take("<string>")) return ReadString();
    if (Take("<dict>")) return ReadDictionary();
    if (Take("<array>")) return ReadArray();
    if (Take("<integer>")) return ReadInteger();
    if (Take("<data>")) return ReadData();
    if (Take("<true/>")) return ReadBoolean(kCFBooleanTrue);
    if (Take("<false/>")) return ReadBoolean(kCFBooleanFalse);
    return {};
  }

  CFRef<CFTypeRef> ReadBoolean(CFBooleanRef value) {
    return budget_.TakeObject(0) ? CFRef<CFTypeRef>(value) : CFRef<CFTypeRef>();
  }

  CFRef<CFTypeRef> ReadString() {
    const auto text = TakeText("</string>");
    return CFRef<CFTypeRef>(text ? CreateString(*text) : nullptr);
  }

  // The records of a list have the same keys. A byte-order mark is dropped only when a string is
  // made, so that of keys that differ in it libplist's order tells which one stands.
  CFRef<CFTypeRef> ReadKey() {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const auto text = TakeText("</key>");
    if (!text || text->substr(0, kByteOrderMark.size()) == kByteOrderMark) return {};
    CFRef<CFTypeRef>& key = keys_[*text];
    if (!key) key = CFRef<CFTypeRef>(CreateString(*text));
    return key;
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
    if (!Enter()) return {};
    auto* const array = new Array;
    CFRef<CFTypeRef> owner(RefTo(array));
    while (!Take("</array>")) {
      const CFRef<CFTypeRef> value = ReadValue();
      if (!value) return {};
      array->Append(value.get());
    }
    --depth_;
    return owner;
  }

  CFRef<CFTypeRef> ReadDictionary() {
    if (!Enter()) return {};
    auto* const dictionary = new Dictionary;
    CFRef<CFTypeRef> owner(RefTo(dictionary));
    std::uint64_t keys = 0;
    for (; !Take("</dict>"); ++keys) {
      if (!Take("<key>")) return {};
      const CFRef<CFTypeRef> key = ReadKey();
      if (!key) return {};
      const CFRef<CFTypeRef> value = ReadValue();
      if (!value) return {};
      dictionary->Set(key.get(), value.get());
    }
    --depth_;
    if (!budget_.TakeKeys(keys)) return {};
    return owner;
  }

  // Begins a container.
  bool Enter() { return budget_.TakeObject(0) && ++depth_ <= kMaximumListDepth; }

  std::string_view rest_;
  ListBudget budget_;
  std::size_t depth_ = 0;
  bool has_outer_tag_ = false;
  std::map<std::string_view, CFRef<CFTypeRef>> keys_;
};

}  // namespace

CFRef<CFTypeRef> ReadPlainList(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return {};
  return PlainReader(text).Read();
}

}  // namespace CoreFoundation

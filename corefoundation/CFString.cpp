// Strings.
#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

#include "corefoundation/String.h"
#include "corefoundation/TextEncoding.h"

namespace CoreFoundation {

namespace {

template <typename Character>
bool IsPlainASCII(Character character) {
  return character > 0 && character < 0x80;
}

// Appends characters to bytes up to the first that cannot be converted; returns the units taken.
std::size_t EncodePrefix(std::u16string_view text, CFStringEncoding encoding, std::string& bytes) {
  std::size_t done = 0;
  while (done < text.size()) {
    const std::size_t taken = EncodeCharacter(text.substr(done), encoding, bytes);
    if (taken == 0) break;
    done += taken;
  }
  return done;
}

// How much of text that does not fit stays in a buffer with room for this many bytes of it.
std::size_t PartLength(const std::string& bytes, std::size_t room, CFStringEncoding encoding) {
  if (room >= bytes.size()) return bytes.size();
  if (encoding == kCFStringEncodingUTF16LE) return room - room % 2;
  if (encoding == kCFStringEncodingUTF8) {
    while (room > 0 && (static_cast<unsigned char>(bytes[room]) & 0xC0) == 0x80) --room;
  }
  return room;
}

// The bytes that one UTF-16 unit takes at most; 0 for an encoding that is not known.
CFIndex MaximumUnitSize(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingMacRoman:
      return 1;
    case kCFStringEncodingDOSJapanese:
    case kCFStringEncodingUTF16LE:
      return 2;
    case kCFStringEncodingUTF8:
      return 3;
    default:
      return 0;
  }
}

// Whether ASCII is the same bytes in encoding.
bool ContainsASCII(CFStringEncoding encoding) {
  return encoding != kCFStringEncodingUTF16LE && MaximumUnitSize(encoding) != 0;
}

// The string of bytes; null when they are not valid in encoding.
String* MakeString(std::string_view bytes, CFStringEncoding encoding,
                   Lifetime lifetime = Lifetime::kCounted) {
  if (ContainsASCII(encoding) &&
      std::all_of(bytes.begin(), bytes.end(), IsPlainASCII<signed char>)) {
    return new String(std::string(bytes), lifetime);
  }
  auto units = DecodeText(bytes, encoding);
  return units ? new String(std::move(*units), lifetime) : nullptr;
}

}  // namespace

String::String(std::u16string units, Lifetime lifetime)
    : Object(Type::kString, lifetime),
      is_ascii_(std::all_of(units.begin(), units.end(), IsPlainASCII<char16_t>)),
      ascii_(is_ascii_ ? std::string(units.begin(), units.end()) : std::string()),
      units_(is_ascii_ ? std::u16string() : std::move(units)) {}

String::String(std::string ascii, Lifetime lifetime)
    : Object(Type::kString, lifetime), is_ascii_(true), ascii_(std::move(ascii)) {}

bool String::Equals(const Object& other) const {
  const auto& string = static_cast<const String&>(other);
  return is_ascii_ == string.is_ascii_ && ascii_ == string.ascii_ && units_ == string.units_;
}

std::size_t String::Hash() const {
  return is_ascii_ ? std::hash<std::string>()(ascii_) : std::hash<std::u16string>()(units_);
}

std::u16string String::units() const {
  return is_ascii_ ? std::u16string(ascii_.begin(), ascii_.end()) : units_;
}

CFStringRef CreateString(std::string_view utf8) {
  return RefTo(MakeString(utf8, kCFStringEncodingUTF8));
}

bool GetUTF8(const String& string, std::string& text) {
  if (string.ascii() != nullptr) {
    text += *string.ascii();
    return true;
  }
  return EncodePrefix(string.units(), kCFStringEncodingUTF8, text) == string.size();
}

}  // namespace CoreFoundation

using CoreFoundation::ObjectOf;
using CoreFoundation::RefTo;
using CoreFoundation::String;

CFStringRef __CFStringMakeConstantString(const char* literal) {
  static auto& mutex = *new std::mutex;
  static auto& strings = *new std::map<std::string, const String*, std::less<>>;
  const std::lock_guard<std::mutex> lock(mutex);
  const auto known = strings.find(literal);
  if (known != strings.end()) return RefTo(known->second);
  constexpr auto kLifetime = CoreFoundation::Lifetime::kConstant;
  const String* string = CoreFoundation::MakeString(literal, kCFStringEncodingUTF8, kLifetime);
  if (string == nullptr) string = new String(std::string(), kLifetime);
  strings.emplace(literal, string);
  return RefTo(string);
}

CFTypeID CFStringGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kString);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef /*allocator*/, const char* text,
                                      CFStringEncoding encoding) {
  return RefTo(CoreFoundation::MakeString(text, encoding));
}

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(ObjectOf<String>(string).size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 loss_byte, Boolean /*is_external_representation*/, UInt8* buffer,
                         CFIndex capacity, CFIndex* used) {
  const std::u16string units = ObjectOf<String>(string).units();
  const auto length = static_cast<CFIndex>(units.size());
  if (range.location < 0 || range.location > length) return 0;
  if (range.length < 0 || range.length > length - range.location) return 0;
  const std::u16string_view text(units.data() + range.location,
                                 static_cast<std::size_t>(range.length));
  std::string bytes;
  std::size_t done = 0;
  while (done < text.size()) {
    const std::size_t before = bytes.size();
    std::size_t taken = CoreFoundation::EncodeCharacter(text.substr(done), encoding, bytes);
    if (taken == 0) {
      if (loss_byte == 0) break;
      bytes.push_back(static_cast<char>(loss_byte));
      taken = 1;
    }
    if (buffer != nullptr && static_cast<CFIndex>(bytes.size()) > capacity) {
      bytes.resize(before);
      break;
    }
    done += taken;
  }
  if (buffer != nullptr) std::copy(bytes.begin(), bytes.end(), buffer);
  if (used != nullptr) *used = static_cast<CFIndex>(bytes.size());
  return static_cast<CFIndex>(done);
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size,
                           CFStringEncoding encoding) {
  if (size <= 0) return 0;
  const auto& text = ObjectOf<String>(string);
  const auto length = static_cast<CFIndex>(text.size());
  if (text.ascii() != nullptr && CoreFoundation::ContainsASCII(encoding) && length < size) {
    std::copy_n(text.ascii()->c_str(), length + 1, buffer);
    return 1;
  }
  std::string bytes;
  const bool whole = CoreFoundation::EncodePrefix(text.units(), encoding, bytes) == text.size();
  const auto room = static_cast<std::size_t>(size - 1);
  if (whole && bytes.size() <= room) {
    bytes.push_back('\0');
    std::copy(bytes.begin(), bytes.end(), buffer);
    return 1;
  }
  // Text of ASCII leaves nothing behind, except as UTF-16.
  if (text.ascii() == nullptr || encoding == kCFStringEncodingUTF16LE) {
    std::copy_n(bytes.begin(), CoreFoundation::PartLength(bytes, room, encoding), buffer);
  }
  buffer[0] = '\0';
  return 0;
}

const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding) {
  const std::string* const ascii = ObjectOf<String>(string).ascii();
  return ascii != nullptr && CoreFoundation::ContainsASCII(encoding) ? ascii->c_str() : nullptr;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  return length * CoreFoundation::MaximumUnitSize(encoding);
}

CFStringEncoding CFStringGetSystemEncoding(void) {
  return kCFStringEncodingUTF8;
}

CFStringEncoding CFStringConvertNSStringEncodingToEncoding(unsigned long encoding) {
  constexpr unsigned long kShiftJIS = 8;
  if (encoding == kShiftJIS) return kCFStringEncodingDOSJapanese;
  return kCFStringEncodingInvalidId;
}

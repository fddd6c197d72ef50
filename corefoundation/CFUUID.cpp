// Universally unique identifiers.
#include <CoreFoundation/CFUUID.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <mutex>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "corefoundation/String.h"
#include "corefoundation/UUID.h"

namespace CoreFoundation {

namespace {

constexpr int kNoDigit = -1;

// The values of hexadecimal digits by character.
constexpr auto kDigitValues = [] {
  std::array<std::int8_t, 0x80> values{};
  for (auto& value : values) value = kNoDigit;
  for (const std::string_view digits : {"0123456789abcdef", "0123456789ABCDEF"}) {
    for (std::size_t i = 0; i < digits.size(); ++i) {
      values[static_cast<unsigned char>(digits[i])] = static_cast<std::int8_t>(i);
    }
  }
  return values;
}();

int DigitValue(char16_t unit) {
  return unit < kDigitValues.size() ? kDigitValues[unit] : kNoDigit;
}

}  // namespace

bool UUID::Equals(const Object& other) const {
  return bytes_ == static_cast<const UUID&>(other).bytes_;
}

std::size_t UUID::Hash() const {
  return std::hash<std::string_view>()(
      {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()});
}

UUIDBytes ParseUUID(const std::u16string& text) {
  UUIDBytes bytes{};
  int digits[2 * std::tuple_size_v<UUIDBytes>] = {};
  auto* next = std::begin(digits);
  for (const char16_t unit : text) {
    const int value = DigitValue(unit);
    if (value == kNoDigit) continue;
    *next++ = value;
    if (next == std::end(digits)) break;
  }
  next = std::begin(digits);
  for (UInt8& byte : bytes) {
    byte = static_cast<UInt8>(next[0] << 4 | next[1]);
    next += 2;
  }
  return bytes;
}

namespace {

// The constant object of a constant string, which is read once.
const UUID& ConstantOf(const String& string) {
  static auto& mutex = *new std::mutex;
  static auto& constants = *new std::unordered_map<const String*, const UUID*>;
  const std::lock_guard<std::mutex> lock(mutex);
  const UUID*& uuid = constants[&string];
  if (uuid == nullptr) uuid = new UUID(ParseUUID(string.units()), Lifetime::kConstant);
  return *uuid;
}

}  // namespace

}  // namespace CoreFoundation

using CoreFoundation::RefTo;
using CoreFoundation::UUID;
using CoreFoundation::UUIDBytes;

CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef /*allocator*/, CFStringRef text) {
  if (text == nullptr || CFStringGetLength(text) == 0) return nullptr;
  const auto& string = CoreFoundation::ObjectOf<CoreFoundation::String>(text);
  if (string.IsConstant()) return RefTo(&CoreFoundation::ConstantOf(string));
  return RefTo(new UUID(CoreFoundation::ParseUUID(string.units())));
}

CFUUIDRef CFUUIDGetConstantUUIDWithBytes(CFAllocatorRef /*allocator*/, UInt8 byte0, UInt8 byte1,
                                         UInt8 byte2, UInt8 byte3, UInt8 byte4, UInt8 byte5,
                                         UInt8 byte6, UInt8 byte7, UInt8 byte8, UInt8 byte9,
                                         UInt8 byte10, UInt8 byte11, UInt8 byte12, UInt8 byte13,
                                         UInt8 byte14, UInt8 byte15) {
  const UUIDBytes bytes = {byte0, byte1, byte2,  byte3,  byte4,  byte5,  byte6,  byte7,
                           byte8, byte9, byte10, byte11, byte12, byte13, byte14, byte15};
  static auto& mutex = *new std::mutex;
  static auto& constants = *new std::map<UUIDBytes, const UUID*>;
  const std::lock_guard<std::mutex> lock(mutex);
  const UUID*& uuid = constants[bytes];
  if (uuid == nullptr) uuid = new UUID(bytes, CoreFoundation::Lifetime::kConstant);
  return RefTo(uuid);
}

CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid) {
  const UUIDBytes& bytes = CoreFoundation::ObjectOf<UUID>(uuid).bytes();
  CFUUIDBytes result;
  static_assert(sizeof(result) == sizeof(bytes));
  std::memcpy(&result, bytes.data(), sizeof(result));
  return result;
}

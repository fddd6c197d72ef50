// Numbers and booleans.
#include <CoreFoundation/CFNumber.h>

#include <cmath>
#include <functional>

#include "corefoundation/Number.h"

namespace CoreFoundation {

namespace {

Immortal<Boolean> true_object(true);
Immortal<Boolean> false_object(false);

constexpr double kTwoTo63 = 9223372036854775808.0;

// The integer part of value, held to the range of 64 bits; 0 for a NaN.
std::int64_t Truncate(double value) {
  if (std::isnan(value)) return 0;
  if (value >= kTwoTo63) return INT64_MAX;
  if (value < -kTwoTo63) return INT64_MIN;
  return static_cast<std::int64_t>(value);
}

// The number in 64 bits, truncated.
std::int64_t ToInteger(const Number::Value& value) {
  const auto* real = std::get_if<double>(&value);
  if (real != nullptr) return Truncate(*real);
  const auto* large = std::get_if<std::uint64_t>(&value);
  return large != nullptr ? static_cast<std::int64_t>(*large) : std::get<std::int64_t>(value);
}

}  // namespace

Number::Number(std::uint64_t value)
    : Number(value <= INT64_MAX ? Value(static_cast<std::int64_t>(value)) : Value(value)) {}

bool Number::Equals(const Object& other) const {
  return value_ == static_cast<const Number&>(other).value_;
}

std::size_t Number::Hash() const {
  return std::hash<Value>()(value_);
}

}  // namespace CoreFoundation

using CoreFoundation::Number;
using CoreFoundation::ObjectOf;
using CoreFoundation::RefTo;

const CFBooleanRef kCFBooleanTrue = RefTo(&CoreFoundation::true_object.object);
const CFBooleanRef kCFBooleanFalse = RefTo(&CoreFoundation::false_object.object);

CFTypeID CFBooleanGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kBoolean);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return ObjectOf<CoreFoundation::Boolean>(boolean).value() ? 1 : 0;
}

CFTypeID CFNumberGetTypeID(void) {
  return static_cast<CFTypeID>(CoreFoundation::Type::kNumber);
}

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
  if (type != kCFNumberSInt32Type) return nullptr;
  return RefTo(new Number(std::int64_t{*static_cast<const SInt32*>(value)}));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  if (type != kCFNumberSInt32Type) return 0;
  const Number::Value& held = ObjectOf<Number>(number).value();
  const auto truncated = static_cast<SInt32>(CoreFoundation::ToInteger(held));
  *static_cast<SInt32*>(value) = truncated;
  const bool is_exact = held == Number::Value(std::int64_t{truncated}) ||
                        held == Number::Value(static_cast<double>(truncated));
  return is_exact ? 1 : 0;
}

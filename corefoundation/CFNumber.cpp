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

// A number in 64 bits, and whether it is still the same.
struct Conversion {
  std::int64_t integer;
  bool exact;
};

Conversion ToInteger(const Number::Value& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return {*integer, true};
  if (const auto* integer = std::get_if<std::uint64_t>(&value)) {
    return {static_cast<std::int64_t>(*integer), false};
  }
  const double real = std::get<double>(value);
  return {Truncate(real), std::trunc(real) == real && real >= -kTwoTo63 && real < kTwoTo63};
}

double ToDouble(const Number::Value& value) {
  return std::visit([](auto number) { return static_cast<double>(number); }, value);
}

bool IsExactAsDouble(const Number::Value& value) {
  const double real = ToDouble(value);
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return real < kTwoTo63 && static_cast<std::int64_t>(real) == *integer;
  }
  if (const auto* integer = std::get_if<std::uint64_t>(&value)) {
    return real < 2 * kTwoTo63 && static_cast<std::uint64_t>(real) == *integer;
  }
  return true;
}

}  // namespace

Number::Number(std::uint64_t value)
    : Number(value <= INT64_MAX ? Value(static_cast<std::int64_t>(value)) : Value(value)) {}

bool Number::Equals(const Object& other) const {
  const Value& value = static_cast<const Number&>(other).value_;
  if (value_.index() == value.index()) return value_ == value;
  return IsExactAsDouble(value_) && IsExactAsDouble(value) && ToDouble(value_) == ToDouble(value);
}

CFHashCode Number::Hash() const {
  return std::hash<double>()(ToDouble(value_));
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
  switch (type) {
    case kCFNumberSInt32Type:
      return RefTo(new Number(std::int64_t{*static_cast<const SInt32*>(value)}));
    case kCFNumberSInt64Type:
      return RefTo(new Number(*static_cast<const SInt64*>(value)));
    case kCFNumberDoubleType:
      return RefTo(new Number(*static_cast<const double*>(value)));
    default:
      return nullptr;
  }
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const Number::Value& held = ObjectOf<Number>(number).value();
  const auto [integer, exact] = CoreFoundation::ToInteger(held);
  switch (type) {
    case kCFNumberSInt32Type: {
      const auto truncated = static_cast<SInt32>(integer);
      *static_cast<SInt32*>(value) = truncated;
      return exact && truncated == integer;
    }
    case kCFNumberSInt64Type:
      *static_cast<SInt64*>(value) = integer;
      return exact;
    case kCFNumberDoubleType:
      *static_cast<double*>(value) = CoreFoundation::ToDouble(held);
      return CoreFoundation::IsExactAsDouble(held);
    default:
      return 0;
  }
}

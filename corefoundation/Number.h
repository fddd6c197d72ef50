// The objects behind a CFNumberRef and a CFBooleanRef.
#ifndef COREFOUNDATION_NUMBER_H_
#define COREFOUNDATION_NUMBER_H_

#include <CoreFoundation/CFNumber.h>

#include <cstdint>
#include <variant>

#include "corefoundation/Object.h"

namespace CoreFoundation {

class Boolean final : public Object {
 public:
  using Ref = CFBooleanRef;

  constexpr explicit Boolean(bool value)
      : Object(Type::kBoolean, Lifetime::kConstant), value_(value) {}

  bool Equals(const Object& other) const override { return this == &other; }
  std::size_t Hash() const override { return value_ ? 1 : 0; }

  bool value() const { return value_; }

 private:
  const bool value_;
};

class Number final : public Object {
 public:
  using Ref = CFNumberRef;

  // An integer is unsigned only when it does not fit the signed type.
  using Value = std::variant<std::int64_t, std::uint64_t, double>;

  explicit Number(std::int64_t value) : Number(Value(value)) {}
  explicit Number(double value) : Number(Value(value)) {}
  explicit Number(std::uint64_t value);

  bool Equals(const Object& other) const override;
  std::size_t Hash() const override;

  const Value& value() const { return value_; }

 private:
  explicit Number(Value value) : Object(Type::kNumber), value_(value) {}

  const Value value_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_NUMBER_H_

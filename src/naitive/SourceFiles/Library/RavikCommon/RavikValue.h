// A JSON-like value: what a parameter map holds.
#ifndef RAVIKCOMMON_RAVIKVALUE_H_
#define RAVIKCOMMON_RAVIKVALUE_H_

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Ravik {

// A tagged value of one of seven kinds, copied by value and never changed but by assignment.
class value {
 public:
  using array = std::vector<value>;
  using object = std::map<std::string, value>;

  value() = default;  // null
  explicit value(bool boolean);
  explicit value(int integer);
  explicit value(double number);
  explicit value(std::string text);
  explicit value(std::string_view text);
  explicit value(const char* text);
  explicit value(array elements);
  explicit value(object members);

  // As the constructors; a text takes the place of a former one in its memory.
  value& operator=(int integer) {
    payload_ = integer;
    return *this;
  }
  value& operator=(std::string_view text);

  // Whether the value is of the kind that holds a T; T is int or std::string.
  template <typename T>
  bool is() const {
    return std::holds_alternative<T>(payload_);
  }

  // The payload of a value for which is<T>() holds; valid until the value is assigned to.
  template <typename T>
  const T& get() const {
    return std::get<T>(payload_);
  }

  // Text of the value: "null", "true", "false", decimal numbers, a text unchanged, and "array" or
  // "object" for the containers.
  std::string to_str() const;

  // JSON text of the value (RFC 8259) without blanks. As hosts expect it, control bytes without a
  // two-character escape stay raw, and keys of an object are not escaped.
  std::string serialize() const;

  // Writes what serialize() returns to json, and returns its end there. There must be room for
  // serialized_bound() characters.
  char* serialize_to(char* json) const;

  // As long as serialize() can be at most, whatever has to be escaped.
  std::size_t serialized_bound() const {
    if (is<int>()) return kIntegerBound;
    return is<std::string>() ? TextBound(get<std::string>().size()) : RareBound();
  }

  // The inside of a JSON string: backslash, slash, double quote, and the control bytes that have
  // a two-character escape become that; every other byte stays as it is.
  static std::string serialize_str(const std::string& text);

  // Equal kind and equal content. A null on the left is a programming error and ends the process.
  bool operator==(const value& other) const;

 private:
  // The tag of a kind is its index.
  enum Tag { kNull, kBoolean, kInt, kNumber, kString, kArray, kObject };

  static constexpr std::size_t kIntegerBound = std::string_view("-2147483648").size();

  // An escape is twice as long as what it stands for.
  static constexpr std::size_t TextBound(std::size_t size) {
    return 2 * size + std::string_view("\"\"").size();
  }

  // serialize_to() and serialized_bound() of the kinds that are rare.
  char* SerializeRare(char* json) const;
  std::size_t RareBound() const;

  Tag tag() const { return static_cast<Tag>(payload_.index()); }

  // An object is shared between copies, which nobody can tell because it is never changed.
  std::variant<std::monostate, bool, int, double, std::string, array, std::shared_ptr<const object>>
      payload_;
};

}  // namespace Ravik

#endif  // RAVIKCOMMON_RAVIKVALUE_H_

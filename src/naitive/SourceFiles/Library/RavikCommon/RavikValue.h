// A JSON-like value: what a parameter map holds.
#ifndef RAVIKCOMMON_RAVIKVALUE_H_
#define RAVIKCOMMON_RAVIKVALUE_H_

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

  // Appends what serialize() returns to json.
  void serialize_to(std::string& json) const;

  // The inside of a JSON string: backslash, slash, double quote, and the control bytes that have
  // a two-character escape become that; every other byte stays as it is.
  static std::string serialize_str(const std::string& text);

  // Equal kind and equal content. A null on the left is a programming error and ends the process.
  bool operator==(const value& other) const;

 private:
  // The tag of a kind is its index.
  enum Tag { kNull, kBoolean, kInt, kNumber, kString, kArray, kObject };

  Tag tag() const { return static_cast<Tag>(payload_.index()); }

  // An object is shared between copies, which nobody can tell because it is never changed.
  std::variant<std::monostate, bool, int, double, std::string, array, std::shared_ptr<const object>>
      payload_;
};

}  // namespace Ravik

#endif  // RAVIKCOMMON_RAVIKVALUE_H_

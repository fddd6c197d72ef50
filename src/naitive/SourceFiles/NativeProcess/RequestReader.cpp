#include "NativeProcess/RequestReader.h"

#include <picojson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace Ravik {

namespace {

constexpr std::string_view kCommand = "Command";
constexpr std::string_view kPrinterName = "PrinterName";
constexpr std::string_view kDeviceName = "DeviceName";
constexpr std::string_view kParameter = "Parameter";
constexpr std::string_view kFilePath = "FilePath";

// What may still be opened inside one another.
struct Nesting {
  int arrays = kMaximumArrayDepth;
  int objects = kMaximumObjectDepth;
};

// Where in the text picojson's parser reads.
struct Position {
  using Input = picojson::input<Position>;

  const char* at;
  const char* end;

  char operator*() const { return *at; }
  Position& operator++() {
    ++at;
    return *this;
  }
  bool operator==(const Position& other) const { return at == other.at; }
};

// Whether a character inside a text stands for itself.
constexpr std::array<bool, 256> MakePlain() {
  std::array<bool, 256> plain{};
  for (std::size_t i = ' '; i < plain.size(); ++i) plain[i] = i != '"' && i != '\\';
  return plain;
}

constexpr std::array<bool, 256> kPlain = MakePlain();

// What picojson's parser calls for every text and key. Takes the characters up to the first one
// that means something at once; unless that ends the text, the library's own function goes on.
bool _parse_string(std::string& text, Position::Input& in) {
  const auto is_plain = [](char c) { return kPlain[static_cast<unsigned char>(c)]; };
  const Position begin = in.cur();
  const char* const plain_end = std::find_if_not(begin.at, begin.end, is_plain);
  text.append(begin.at, plain_end);
  if (plain_end != begin.end && *plain_end == '"') {
    in = Position::Input({plain_end + 1, begin.end}, {begin.end, begin.end});
    return true;
  }
  in = Position::Input({plain_end, begin.end}, {begin.end, begin.end});
  return picojson::_parse_string<std::string, Position>(text, in);
}

// picojson's parser tells a context what one value consists of. This one keeps nothing of it; those
// below keep what is asked for.
class ValueContext {
 public:
  explicit ValueContext(Nesting nesting) : nesting_(nesting) {}

  static bool set_null() { return true; }
  static bool set_bool(bool /*boolean*/) { return true; }

  // The parser asks for no result.
  static void set_number(double number) {
    if (!std::isfinite(number)) throw std::overflow_error("a number beyond a double's range");
  }

  static bool parse_string(Position::Input& in) {
    struct {
      void push_back(int /*character*/) {}
    } nothing;
    return picojson::_parse_string(nothing, in);
  }

  bool parse_array_start() { return nesting_.arrays-- > 0; }
  static bool parse_array_stop(std::size_t /*size*/) { return true; }
  // picojson counts arrays alone, and opens nothing inside the last one.
  bool parse_object_start() { return nesting_.arrays > 0 && nesting_.objects-- > 0; }
  static bool parse_object_stop() { return true; }

  bool parse_array_item(Position::Input& in, std::size_t /*index*/) const {
    return Parse(ValueContext(nesting_), in);
  }

  bool parse_object_item(Position::Input& in, const std::string& /*key*/) const {
    return Parse(ValueContext(nesting_), in);
  }

 protected:
  Nesting nesting() const { return nesting_; }

  template <typename Context>
  static bool Parse(Context&& context, Position::Input& in) {
    return picojson::_parse(context, in);
  }

 private:
  Nesting nesting_;
};

// Keeps a text.
class TextContext : public ValueContext {
 public:
  TextContext(Nesting nesting, std::optional<std::string>& text)
      : ValueContext(nesting), text_(text) {
    text_.reset();
  }

  bool parse_string(Position::Input& in) { return _parse_string(text_.emplace(), in); }

 private:
  std::optional<std::string>& text_;
};

int ToInteger(double number) {
  constexpr double kTooSmall = -2147483649.0;
  constexpr double kTooLarge = 2147483648.0;
  const bool fits = number > kTooSmall && number < kTooLarge;
  return fits ? static_cast<int>(number) : std::numeric_limits<int>::min();
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Takes a number of few digits and nothing else, which most parameters are. False, with nothing
// taken, for any other value: the parser knows what to make of it.
bool TakeShortInteger(Position::Input& in, int& integer) {
  constexpr std::ptrdiff_t kDigits = 9;  // as many fit always
  in.skip_ws();
  const Position begin = in.cur();
  const bool is_negative = begin.at != begin.end && *begin.at == '-';
  const char* const digits = is_negative ? begin.at + 1 : begin.at;
  const char* const end = std::find_if_not(digits, begin.end, IsDigit);
  const bool is_short = end != digits && end - digits <= kDigits;
  // Fractions and exponents follow; what ends the text is an error for the parser to find.
  if (!is_short || end == begin.end ||
      std::string_view(".eE+-").find(*end) != std::string_view::npos) {
    return false;
  }
  std::from_chars(begin.at, end, integer);
  in = Position::Input({end, begin.end}, {begin.end, begin.end});
  return true;
}

// Keeps a number or a text; any other value is null.
class ParameterContext : public ValueContext {
 public:
  ParameterContext(Nesting nesting, value& parameter)
      : ValueContext(nesting), parameter_(parameter) {}

  void set_number(double number) {
    ValueContext::set_number(number);
    parameter_ = value(ToInteger(number));
  }

  bool parse_string(Position::Input& in) {
    std::string text;
    if (!_parse_string(text, in)) return false;
    parameter_ = value(std::move(text));
    return true;
  }

 private:
  value& parameter_;
};

using Parameters = RequestMembers::Parameters;

bool IsBefore(const Parameters::value_type& first, const Parameters::value_type& second) {
  return first.first < second.first;
}

// Sorts parameters by their keys; those with one key stay in order.
void Sort(Parameters& parameters) {
  constexpr std::size_t kFew = 16;
  if (parameters.size() > kFew) {
    std::stable_sort(parameters.begin(), parameters.end(), IsBefore);
    return;
  }
  // Without memory, which the library takes for two already.
  for (auto next = parameters.begin(); next != parameters.end(); ++next) {
    const auto place = std::upper_bound(parameters.begin(), next, *next, IsBefore);
    if (place == next) continue;
    auto parameter = std::move(*next);
    std::move_backward(place, next, next + 1);
    *place = std::move(parameter);
  }
}

// Puts parameters as they were given in the order of their keys. Of those with one key the last one
// stays, unless it is null.
void PutInOrder(Parameters& given) {
  const auto is_not_before = [](const auto& a, const auto& b) { return !IsBefore(a, b); };
  const auto has_same_key = [](const auto& a, const auto& b) { return a.first == b.first; };
  const auto is_null = [](const Parameters::value_type& parameter) {
    return !parameter.second.is<int>() && !parameter.second.is<std::string>();
  };
  // Hosts that walk a map send them in order.
  if (std::adjacent_find(given.begin(), given.end(), is_not_before) != given.end()) {
    Sort(given);
    given.erase(given.begin(), std::unique(given.rbegin(), given.rend(), has_same_key).base());
  }
  given.erase(std::remove_if(given.begin(), given.end(), is_null), given.end());
}

// Keeps what commands take as "Parameter".
class ParametersContext : public ValueContext {
 public:
  ParametersContext(Nesting nesting, RequestMembers& members)
      : ValueContext(nesting), members_(members) {
    members_.parameter_texts.reset();
    members_.parameters.reset();
  }

  bool parse_array_start() {
    members_.parameter_texts.emplace();
    return ValueContext::parse_array_start();
  }

  bool parse_array_item(Position::Input& in, std::size_t /*index*/) {
    std::optional<std::string> text;
    if (!Parse(TextContext(nesting(), text), in)) return false;
    if (text) members_.parameter_texts->push_back(*std::move(text));
    return true;
  }

  bool parse_object_start() {
    constexpr std::size_t kUsual = 8;  // as many as a request for a record has, and some
    members_.parameters.emplace().reserve(kUsual);
    return ValueContext::parse_object_start();
  }

  bool parse_object_item(Position::Input& in, const std::string& key) {
    value& parameter = members_.parameters->emplace_back(key, value()).second;
    int integer = 0;
    if (!TakeShortInteger(in, integer)) return Parse(ParameterContext(nesting(), parameter), in);
    parameter = integer;
    return true;
  }

  bool parse_object_stop() {
    PutInOrder(*members_.parameters);
    return true;
  }

 private:
  RequestMembers& members_;
};

class RequestContext : public ValueContext {
 public:
  explicit RequestContext(RequestMembers& members) : ValueContext({}), members_(members) {}

  bool IsNull() const { return is_null_; }
  bool IsObject() const { return is_object_; }

  bool set_null() {
    is_null_ = true;
    return true;
  }

  bool parse_object_start() {
    is_object_ = true;
    return ValueContext::parse_object_start();
  }

  bool parse_object_item(Position::Input& in, std::string_view key) {
    if (key == kCommand) return Parse(TextContext(nesting(), members_.command), in);
    if (key == kPrinterName) return Parse(TextContext(nesting(), members_.printer_name), in);
    if (key == kDeviceName) return Parse(TextContext(nesting(), members_.device_name), in);
    if (key == kFilePath) return Parse(TextContext(nesting(), members_.file_path), in);
    if (key == kParameter) return Parse(ParametersContext(nesting(), members_), in);
    return Parse(ValueContext(nesting()), in);
  }

 private:
  RequestMembers& members_;
  bool is_null_ = false;
  bool is_object_ = false;
};

}  // namespace

bool ReadRequest(const std::string& text, RequestMembers& members) {
  const char* const end = text.data() + text.size();
  Position::Input in({text.data(), end}, {end, end});
  RequestContext context(members);
  try {
    if (!picojson::_parse(context, in)) return false;
  } catch (const std::overflow_error&) {
    return false;
  }
  if (context.IsNull()) return false;
  if (!context.IsObject()) throw std::runtime_error("is<object>()");
  return true;
}

}  // namespace Ravik

// Reads the JSON text of a request.
#ifndef NATIVEPROCESS_REQUESTREADER_H_
#define NATIVEPROCESS_REQUESTREADER_H_

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Library/RavikCommon/RavikValue.h"

namespace Ravik {

// Objects inside objects that a request may hold, its own included, and arrays inside arrays. They
// are read by recursion, so that nesting without a bound would overflow the stack.
constexpr int kMaximumObjectDepth = 2048;
constexpr int kMaximumArrayDepth = 100;

// Those members of a request that some command reads. Of a member given twice the last one counts;
// one that is missing or of another kind is empty.
struct RequestMembers {
  // The numbers, as integers, and the texts of an object, in byte order of their keys, each once.
  using Parameters = std::vector<std::pair<std::string, value>>;

  std::optional<std::string> command;
  std::optional<std::string> printer_name;
  std::optional<std::string> device_name;
  std::optional<std::string> file_path;
  std::optional<std::vector<std::string>> parameter_texts;  // those of an array's elements
  std::optional<Parameters> parameters;
};

// Reads the first JSON value (RFC 8259) of text; what follows it does not count. A number becomes
// an integer by truncation toward zero, the smallest one where it lies outside 32 bits. False when
// there is no value, when it is null or nested past the bounds, or when a number is beyond a
// double's range; members is then unspecified.
// Throws std::runtime_error for a value that is neither an object nor null.
bool ReadRequest(const std::string& text, RequestMembers& members);

}  // namespace Ravik

#endif  // NATIVEPROCESS_REQUESTREADER_H_

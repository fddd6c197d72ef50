// Reads the JSON value of a request.
#ifndef NATIVEPROCESS_JSONREADER_H_
#define NATIVEPROCESS_JSONREADER_H_

#include <picojson.h>

#include <string>

namespace Ravik {

// Objects inside objects that a request may hold, its own included; arrays inside arrays are
// bounded by picojson, at 100. It takes and frees nested values by recursion, so that values
// without a bound would overflow the stack.
constexpr int kMaximumObjectDepth = 2048;

// Reads the first JSON value (RFC 8259) of text; what follows it does not count. False when there
// is none, when it is nested past the bounds, or when a number is beyond a double's range, where
// picojson's exception would end the process; json is then unspecified.
bool ReadJson(const std::string& text, picojson::value& json);

}  // namespace Ravik

#endif  // NATIVEPROCESS_JSONREADER_H_

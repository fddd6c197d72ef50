// What a property list must hold before libplist is given it.
//
// libplist reads, frees and writes nested containers by recursion, expands what a binary list
// refers to more than once, aborts on zero bytes in keys, takes XML whose end is missing, and takes
// minutes over dictionaries and texts that are large enough. The checks walk the same bytes
// iteratively and refuse those.
#ifndef COREFOUNDATION_PROPERTYLISTCHECK_H_
#define COREFOUNDATION_PROPERTYLISTCHECK_H_

#include <cstddef>
#include <string_view>

namespace CoreFoundation {

// Containers inside containers, the root included.
constexpr std::size_t kMaximumListDepth = 512;

// One whole XML property list within its ListBudget: matching tags, keys and values in turn,
// nothing behind the root.
bool IsSoundXMLList(std::string_view text);

// A binary property list ("bplist00") whose objects lie inside it and are within its ListBudget.
bool IsSoundBinaryList(std::string_view bytes);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_PROPERTYLISTCHECK_H_

// XML property lists in the plain form that programs write and that most are of.
#ifndef COREFOUNDATION_PLAINLIST_H_
#define COREFOUNDATION_PLAINLIST_H_

#include <string_view>

#include "corefoundation/Foundation.h"

namespace CoreFoundation {

// The object of a list, the same as ObjectFromNode makes of it, and only of one that IsSoundXMLList
// takes, which need not be asked. Null when the list is not plain: when it has an attribute (but
// the outermost tag's), a reference, a comment or a CDATA section, a key that begins with a
// byte-order mark, a date, a real, a number that is not of 1 to 18 digits or begins with a needless
// 0, or data that is not in canonical base64 (RFC 4648, section 4, with blanks anywhere), or has
// been written by hand in some other way.
CFRef<CFTypeRef> ReadPlainList(std::string_view text);

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_PLAINLIST_H_

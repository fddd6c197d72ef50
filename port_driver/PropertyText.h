// Strings of property lists.
#ifndef PORT_DRIVER_PROPERTYTEXT_H_
#define PORT_DRIVER_PROPERTYTEXT_H_

#include <string>

#include "corefoundation/Foundation.h"

namespace ZIOP {

// string in UTF-8, with "?" for what has no form in it.
std::string TextOf(CFStringRef string);

}  // namespace ZIOP

#endif  // PORT_DRIVER_PROPERTYTEXT_H_

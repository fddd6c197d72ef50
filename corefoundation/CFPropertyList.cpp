// Property lists.
#include <CoreFoundation/CFPropertyList.h>

#include "corefoundation/Data.h"
#include "corefoundation/PropertyList.h"

using CoreFoundation::Data;
using CoreFoundation::ObjectOf;

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef /*allocator*/, CFDataRef data,
                                               CFOptionFlags /*options*/,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
  if (error != nullptr) *error = nullptr;
  const std::string& bytes = ObjectOf<Data>(data).bytes();
  CFRef<CFTypeRef> list = CoreFoundation::ParseObject(bytes);
  if (list && format != nullptr) {
    *format =
        bytes.front() == 'b' ? kCFPropertyListBinaryFormat_v1_0 : kCFPropertyListXMLFormat_v1_0;
  }
  return list.release();
}

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

CFDataRef CFPropertyListCreateData(CFAllocatorRef /*allocator*/, CFPropertyListRef list,
                                   CFPropertyListFormat format, CFOptionFlags /*options*/,
                                   CFErrorRef* error) {
  if (error != nullptr) *error = nullptr;
  if (format != kCFPropertyListXMLFormat_v1_0 && format != kCFPropertyListBinaryFormat_v1_0) {
    return nullptr;
  }
  const CoreFoundation::Node node = CoreFoundation::NodeFromObject(list);
  if (!node) return nullptr;
  std::string bytes = format == kCFPropertyListBinaryFormat_v1_0
                          ? CoreFoundation::WriteBinary(node.get())
                          : CoreFoundation::WriteXML(node.get());
  return CoreFoundation::RefTo(new Data(std::move(bytes)));
}

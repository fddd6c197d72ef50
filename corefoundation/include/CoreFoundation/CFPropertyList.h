// Property lists, from their XML and binary forms.
#ifndef COREFOUNDATION_CFPROPERTYLIST_H_
#define COREFOUNDATION_CFPROPERTYLIST_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef CFIndex CFPropertyListFormat;
enum { kCFPropertyListXMLFormat_v1_0 = 100, kCFPropertyListBinaryFormat_v1_0 = 200 };

enum { kCFPropertyListImmutable = 0, kCFPropertyListMutableContainers = 1 };

// The list that data holds; its root may be of any type: check it. With
// kCFPropertyListMutableContainers its arrays and dictionaries may be changed. Null when data is
// not one whole list; *format (may be null) is set otherwise. error may be null and is set to null:
// no error is described.
CF_EXPORT CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data,
                                                         CFOptionFlags options,
                                                         CFPropertyListFormat* format,
                                                         CFErrorRef* error);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFPROPERTYLIST_H_

// Property lists, from and to their XML and binary forms.
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

// list in the given form. Null when it holds something that the form cannot express; options must
// be 0, and error is as above.
CF_EXPORT CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list,
                                             CFPropertyListFormat format, CFOptionFlags options,
                                             CFErrorRef* error);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFPROPERTYLIST_H_

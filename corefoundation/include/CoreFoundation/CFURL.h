// URLs of files.
#ifndef COREFOUNDATION_CFURL_H_
#define COREFOUNDATION_CFURL_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef CFIndex CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0 };

// Null for empty text and for another style than POSIX.
CF_EXPORT CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                                 CFURLPathStyle style, Boolean is_directory);

// From length bytes of UTF-8. Null when they are empty, not valid or length is negative.
CF_EXPORT CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator,
                                                           const UInt8* bytes, CFIndex length,
                                                           Boolean is_directory);

// The path as it was given, without a trailing "/". Null for another style than POSIX.
CF_EXPORT CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFURL_H_

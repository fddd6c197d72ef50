// Basic types, reference counting and equality of CoreFoundation objects.
//
// Ownership follows the names: a reference from a call with Create or Copy in its name belongs to
// the caller, who gives it back with CFRelease; one from a call with Get belongs to whoever it was
// got from and stays valid as long as that holds it. Objects are counted atomically; an object that
// is changed must not be used by two threads at once. Arguments must not be null unless a call says
// that they may.
#ifndef COREFOUNDATION_CFBASE_H_
#define COREFOUNDATION_CFBASE_H_

#include <stdint.h>

#define CF_EXPORT extern __attribute__((visibility("default")))

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

CF_EXTERN_C_BEGIN

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef int64_t SInt64;

typedef SInt64 CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;

// Any object.
typedef const void* CFTypeRef;

// NOLINTBEGIN(bugprone-reserved-identifier): the framework's own names of its structures
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFArray* CFArrayRef;
typedef struct __CFArray* CFMutableArrayRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef struct __CFBundle* CFPlugInRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef struct __CFError* CFErrorRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef const struct __CFUUID* CFUUIDRef;
// NOLINTEND(bugprone-reserved-identifier)

// A string, data, number, boolean, date, array or dictionary.
typedef CFTypeRef CFPropertyListRef;

typedef struct CFRange {
  CFIndex location;
  CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range;
  range.location = location;
  range.length = length;
  return range;
}

// Allocators are passed on to plug-in factories; objects always come from the C++ heap.
// kCFAllocatorDefault is null.
CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;
CF_EXPORT const CFAllocatorRef kCFAllocatorSystemDefault;

// Adds an owner; returns object.
CF_EXPORT CFTypeRef CFRetain(CFTypeRef object);

// Takes an owner away and destroys the object with the last one. Constants are never destroyed.
CF_EXPORT void CFRelease(CFTypeRef object);

// Tells objects of different types apart; compare with CFStringGetTypeID() and its like.
CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);

// Same type and same value.
CF_EXPORT Boolean CFEqual(CFTypeRef left, CFTypeRef right);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFBASE_H_

// Arrays of references.
#ifndef COREFOUNDATION_CFARRAY_H_
#define COREFOUNDATION_CFARRAY_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// How an array keeps its values. A null call leaves its step out.
typedef struct CFArrayCallBacks {
  CFIndex version;  // 0
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  CFStringRef (*copyDescription)(const void* value);  // never called
  Boolean (*equal)(const void* left, const void* right);
} CFArrayCallBacks;

// The values are objects, which the array owns.
CF_EXPORT const CFArrayCallBacks kCFTypeArrayCallBacks;

CF_EXPORT CFTypeID CFArrayGetTypeID(void);

// values may be null when count is 0. callbacks may be null: the array then holds plain pointers.
// Null for a negative count.
CF_EXPORT CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                                   const CFArrayCallBacks* callbacks);

// An empty array that grows; capacity is a hint.
CF_EXPORT CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFArrayCallBacks* callbacks);

CF_EXPORT CFIndex CFArrayGetCount(CFArrayRef array);

// Null for an index outside the array, which the system framework does not forgive.
CF_EXPORT const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CF_EXPORT void CFArrayAppendValue(CFMutableArrayRef array, const void* value);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFARRAY_H_

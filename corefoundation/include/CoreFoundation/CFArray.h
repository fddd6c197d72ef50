// Arrays of references.
#ifndef COREFOUNDATION_CFARRAY_H_
#define COREFOUNDATION_CFARRAY_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// How an array keeps its values. There is one way: they are objects, which the array owns.
typedef struct CFArrayCallBacks CFArrayCallBacks;
CF_EXPORT const CFArrayCallBacks kCFTypeArrayCallBacks;

CF_EXPORT CFTypeID CFArrayGetTypeID(void);

// values may be null when count is 0; callbacks is &kCFTypeArrayCallBacks. Null for a negative
// count and for other callbacks.
CF_EXPORT CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                                   const CFArrayCallBacks* callbacks);

// An empty array that grows; capacity is a hint, callbacks as above.
CF_EXPORT CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFArrayCallBacks* callbacks);

CF_EXPORT CFIndex CFArrayGetCount(CFArrayRef array);

// Null for an index outside the array, which the system framework does not forgive.
CF_EXPORT const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

CF_EXPORT void CFArrayAppendValue(CFMutableArrayRef array, const void* value);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFARRAY_H_

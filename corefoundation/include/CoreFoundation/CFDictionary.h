// Dictionaries of references.
#ifndef COREFOUNDATION_CFDICTIONARY_H_
#define COREFOUNDATION_CFDICTIONARY_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// How a dictionary keeps its keys and values. There is one way: they are objects, which the
// dictionary owns.
typedef struct CFDictionaryKeyCallBacks CFDictionaryKeyCallBacks;
typedef struct CFDictionaryValueCallBacks CFDictionaryValueCallBacks;
CF_EXPORT const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
CF_EXPORT const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CF_EXPORT CFTypeID CFDictionaryGetTypeID(void);

// keys and values may be null when count is 0; of equal keys the first counts. The callbacks are
// &kCFTypeDictionaryKeyCallBacks and &kCFTypeDictionaryValueCallBacks. Null for a negative count
// and for other callbacks.
CF_EXPORT CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys,
                                             const void** values, CFIndex count,
                                             const CFDictionaryKeyCallBacks* key_callbacks,
                                             const CFDictionaryValueCallBacks* value_callbacks);

// An empty dictionary that grows; capacity is a hint, the callbacks are as above.
CF_EXPORT CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef allocator, CFIndex capacity, const CFDictionaryKeyCallBacks* key_callbacks,
    const CFDictionaryValueCallBacks* value_callbacks);

// Null when the key is missing.
CF_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

// Adds the value or replaces the one that key has.
CF_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key,
                                    const void* value);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFDICTIONARY_H_

// Dictionaries of references.
#ifndef COREFOUNDATION_CFDICTIONARY_H_
#define COREFOUNDATION_CFDICTIONARY_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// How a dictionary keeps its keys. A null call leaves its step out; without equal and hash, keys
// are the same when their pointers are.
typedef struct CFDictionaryKeyCallBacks {
  CFIndex version;  // 0
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  CFStringRef (*copyDescription)(const void* value);  // never called
  Boolean (*equal)(const void* left, const void* right);
  CFHashCode (*hash)(const void* value);
} CFDictionaryKeyCallBacks;

// How a dictionary keeps its values.
typedef struct CFDictionaryValueCallBacks {
  CFIndex version;  // 0
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  CFStringRef (*copyDescription)(const void* value);  // never called
  Boolean (*equal)(const void* left, const void* right);
} CFDictionaryValueCallBacks;

// The keys and values are objects, which the dictionary owns.
CF_EXPORT const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
CF_EXPORT const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CF_EXPORT CFTypeID CFDictionaryGetTypeID(void);

// keys and values may be null when count is 0; of equal keys the first counts. Callbacks may be
// null: the dictionary then holds plain pointers. Null for a negative count.
CF_EXPORT CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys,
                                             const void** values, CFIndex count,
                                             const CFDictionaryKeyCallBacks* key_callbacks,
                                             const CFDictionaryValueCallBacks* value_callbacks);

// An empty dictionary that grows; capacity is a hint.
CF_EXPORT CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef allocator, CFIndex capacity, const CFDictionaryKeyCallBacks* key_callbacks,
    const CFDictionaryValueCallBacks* value_callbacks);

CF_EXPORT CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);

// Null when the key is missing.
CF_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

// Adds the value or replaces the one that key has.
CF_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key,
                                    const void* value);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFDICTIONARY_H_

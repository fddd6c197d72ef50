// Immutable byte blocks.
#ifndef COREFOUNDATION_CFDATA_H_
#define COREFOUNDATION_CFDATA_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CF_EXPORT CFTypeID CFDataGetTypeID(void);

// Copies length bytes. bytes may be null when length is 0; null for a negative length.
CF_EXPORT CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);

// The same object, retained: data never changes.
CF_EXPORT CFDataRef CFDataCreateCopy(CFAllocatorRef allocator, CFDataRef data);

// Valid as long as the object.
CF_EXPORT const UInt8* CFDataGetBytePtr(CFDataRef data);

// In bytes.
CF_EXPORT CFIndex CFDataGetLength(CFDataRef data);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFDATA_H_

// Numbers and booleans.
#ifndef COREFOUNDATION_CFNUMBER_H_
#define COREFOUNDATION_CFNUMBER_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef CFIndex CFNumberType;
enum { kCFNumberSInt32Type = 3 };

CF_EXPORT const CFBooleanRef kCFBooleanTrue;
CF_EXPORT const CFBooleanRef kCFBooleanFalse;

CF_EXPORT CFTypeID CFBooleanGetTypeID(void);
CF_EXPORT Boolean CFBooleanGetValue(CFBooleanRef boolean);

CF_EXPORT CFTypeID CFNumberGetTypeID(void);

// value points to an SInt32. Null for another type than kCFNumberSInt32Type.
CF_EXPORT CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type,
                                     const void* value);

// Stores the number in the SInt32 that value points to. False when it does not fit: the truncated
// number is stored all the same. False with nothing stored for another type than
// kCFNumberSInt32Type.
CF_EXPORT Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFNUMBER_H_

// Universally unique identifiers (RFC 4122).
#ifndef COREFOUNDATION_CFUUID_H_
#define COREFOUNDATION_CFUUID_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

// The 16 bytes in the order in which the text form writes them.
typedef struct CFUUIDBytes {
  UInt8 byte0;
  UInt8 byte1;
  UInt8 byte2;
  UInt8 byte3;
  UInt8 byte4;
  UInt8 byte5;
  UInt8 byte6;
  UInt8 byte7;
  UInt8 byte8;
  UInt8 byte9;
  UInt8 byte10;
  UInt8 byte11;
  UInt8 byte12;
  UInt8 byte13;
  UInt8 byte14;
  UInt8 byte15;
} CFUUIDBytes;

// Reads up to 32 hexadecimal digits of either case, past any other characters, and fills missing
// ones with zeros. Null for null or empty text alone.
CF_EXPORT CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef allocator, CFStringRef text);

// The one constant object of these bytes; it lives as long as the process and is not released.
CF_EXPORT CFUUIDRef CFUUIDGetConstantUUIDWithBytes(CFAllocatorRef allocator, UInt8 byte0,
                                                   UInt8 byte1, UInt8 byte2, UInt8 byte3,
                                                   UInt8 byte4, UInt8 byte5, UInt8 byte6,
                                                   UInt8 byte7, UInt8 byte8, UInt8 byte9,
                                                   UInt8 byte10, UInt8 byte11, UInt8 byte12,
                                                   UInt8 byte13, UInt8 byte14, UInt8 byte15);

CF_EXPORT CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFUUID_H_

// Strings: sequences of UTF-16 units, and their conversion from and to byte encodings.
#ifndef COREFOUNDATION_CFSTRING_H_
#define COREFOUNDATION_CFSTRING_H_

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef UInt32 CFStringEncoding;

#define kCFStringEncodingInvalidId ((CFStringEncoding)0xffffffffU)

enum {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingDOSJapanese = 0x0420,  // Shift-JIS, code page 932
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingUTF16LE = 0x14000100
};

// A constant string of an ASCII or UTF-8 literal: equal literals give one object, which lives as
// long as the process and need not be released.
#ifdef __cplusplus
// Each place asks once.
#define CFSTR(literal)                                                                  \
  ([]() -> CFStringRef {                                                                \
    static const CFStringRef cf_constant = __CFStringMakeConstantString("" literal ""); \
    return cf_constant;                                                                 \
  }())
#else
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")
#endif
// NOLINTNEXTLINE(bugprone-reserved-identifier): the framework's own name
CF_EXPORT CFStringRef __CFStringMakeConstantString(const char* literal);

CF_EXPORT CFTypeID CFStringGetTypeID(void);

// The string of the bytes up to the first zero byte. Null when they are not valid in encoding; a
// byte-order mark that begins UTF-8 text is dropped, an odd last byte of UTF-16 ignored.
CF_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                                CFStringEncoding encoding);

// In UTF-16 units.
CF_EXPORT CFIndex CFStringGetLength(CFStringRef string);

// Converts the units of range, which must lie inside the string (0 else), and returns how many of
// them were converted: up to the first that encoding cannot express, unless loss_byte is not 0 and
// stands for such characters, or the first whose bytes do not fit into capacity. buffer may be
// null, which converts without a bound; *used (may be null) gets the number of bytes. No terminator
// and no byte-order mark are written.
CF_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                   UInt8 loss_byte, Boolean is_external_representation,
                                   UInt8* buffer, CFIndex capacity, CFIndex* used);

// Writes the whole string and one zero byte into buffer, whose size is in bytes. False when it does
// not fit or cannot be converted: buffer[0] is then 0 (with a size of at least 1) and the bytes
// behind it may hold a part of the text.
CF_EXPORT Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size,
                                     CFStringEncoding encoding);

// The string's own bytes, zero-terminated, valid as long as the string; or null, which it always is
// for text that is not ASCII: convert then.
CF_EXPORT const char* CFStringGetCStringPtr(CFStringRef string, CFStringEncoding encoding);

// The most bytes that length UTF-16 units can take in encoding, without terminator.
CF_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

// UTF-8.
CF_EXPORT CFStringEncoding CFStringGetSystemEncoding(void);

// The encoding of a Foundation encoding number, 8 (Shift-JIS) for one; kCFStringEncodingInvalidId
// for those that have none here.
CF_EXPORT CFStringEncoding CFStringConvertNSStringEncodingToEncoding(unsigned long encoding);

CF_EXTERN_C_END

#endif  // COREFOUNDATION_CFSTRING_H_

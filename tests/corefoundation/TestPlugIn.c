/* A plug-in in plain C, whose one object is the type that it was made for last. */
#include <CoreFoundation/CFPlugIn.h>

CF_EXPORT CFUUIDBytes* MakeTestInstance(CFAllocatorRef allocator, CFUUIDRef type);

CFUUIDBytes* MakeTestInstance(CFAllocatorRef allocator, CFUUIDRef type) {
  static CFUUIDBytes instance;
  if (!allocator) instance = CFUUIDGetUUIDBytes(type);
  return &instance;
}

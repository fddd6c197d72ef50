/* A plug-in in plain C, whose factory gives one object again and again. */
#include "tests/corefoundation/TestPlugIn.h"

void* MakeTestInstance(CFAllocatorRef allocator, CFUUIDRef type) {
  static TestInstance instance;
  ++instance.calls;
  instance.allocator = allocator;
  instance.type = CFUUIDGetUUIDBytes(type);
  return &instance;
}

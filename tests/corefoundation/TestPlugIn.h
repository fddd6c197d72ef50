/* What the test plug-in's instances show of the factory's calls. */
#ifndef TESTS_COREFOUNDATION_TESTPLUGIN_H_
#define TESTS_COREFOUNDATION_TESTPLUGIN_H_

#include <CoreFoundation/CFPlugIn.h>

typedef struct TestInstance {
  int calls; /* as long as the code is loaded */
  CFAllocatorRef allocator;
  CFUUIDBytes type;
} TestInstance;

CF_EXPORT void* MakeTestInstance(CFAllocatorRef allocator, CFUUIDRef type);

#endif /* TESTS_COREFOUNDATION_TESTPLUGIN_H_ */

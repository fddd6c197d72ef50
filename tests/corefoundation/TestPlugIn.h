/* What the test plug-in's instances show of themselves. */
#ifndef TESTS_COREFOUNDATION_TESTPLUGIN_H_
#define TESTS_COREFOUNDATION_TESTPLUGIN_H_

#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFPlugInCOM.h>
#include <CoreFoundation/CoreFoundation.h>

#define TEST_TYPE_ID "11111111-2222-3333-4444-5555555555AA"
#define TEST_FACTORY_ID "11111111-2222-3333-4444-5555555555AB"
#define TEST_OTHER_FACTORY_ID "11111111-2222-3333-4444-5555555555AC"
#define TEST_INTERFACE_ID "11111111-2222-3333-4444-5555555555AD"

/* An instance, which is also its only interface. */
typedef struct TestInstance {
  const IUnknownVTbl* table;
  ULONG references;
  int serial;               /* counts the factory's calls from 1, as long as the code is loaded */
  CFAllocatorRef allocator; /* as the factory got it */
  CFUUIDBytes type;         /* likewise */
} TestInstance;

#endif /* TESTS_COREFOUNDATION_TESTPLUGIN_H_ */

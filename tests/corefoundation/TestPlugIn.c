/* A plug-in in plain C. */
#include "tests/corefoundation/TestPlugIn.h"

#include <stdlib.h>
#include <string.h>

static CFUUIDRef IdentifierOf(CFStringRef text) {
  return CFUUIDCreateFromString(kCFAllocatorDefault, text);
}

static Boolean IsInterface(CFUUIDBytes iid, CFUUIDRef identifier) {
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(identifier);
  return memcmp(&iid, &bytes, sizeof(bytes)) == 0;
}

static ULONG STDMETHODCALLTYPE AddRef(void* self) {
  return ++((TestInstance*)self)->references;
}

static ULONG STDMETHODCALLTYPE Release(void* self) {
  TestInstance* instance = self;
  const ULONG left = --instance->references;
  if (left == 0) {
    CFUUIDRef factory = IdentifierOf(CFSTR(TEST_FACTORY_ID));
    CFPlugInRemoveInstanceForFactory(factory);
    CFRelease(factory);
    free(instance);
  }
  return left;
}

static HRESULT STDMETHODCALLTYPE QueryInterface(void* self, REFIID iid, LPVOID* interface) {
  CFUUIDRef own = IdentifierOf(CFSTR(TEST_INTERFACE_ID));
  const Boolean known = IsInterface(iid, own) || IsInterface(iid, IUnknownUUID);
  CFRelease(own);
  *interface = known ? self : NULL;
  if (!known) return E_NOINTERFACE;
  AddRef(self);
  return S_OK;
}

static const IUnknownVTbl kTable = {NULL, QueryInterface, AddRef, Release};

__attribute__((visibility("default"))) void* MakeTestInstance(CFAllocatorRef allocator,
                                                              CFUUIDRef type);

void* MakeTestInstance(CFAllocatorRef allocator, CFUUIDRef type) {
  static int serial = 0;
  CFUUIDRef factory = IdentifierOf(CFSTR(TEST_FACTORY_ID));
  CFPlugInAddInstanceForFactory(factory);
  CFRelease(factory);
  TestInstance* instance = malloc(sizeof(*instance));
  if (instance == NULL) return NULL;
  instance->table = &kTable;
  instance->references = 1;
  instance->serial = ++serial;
  instance->allocator = allocator;
  instance->type = CFUUIDGetUUIDBytes(type);
  return instance;
}

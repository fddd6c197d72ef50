// A whole I/O plug-in in C11, to start one from: it lists one printer, whose port gives back what
// was written to it.
#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFPlugInCOM.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <string.h>

#include "printer_io/ZIOPlugin.h"

// Result codes of this plug-in: 0 or negative, but neither -1 nor -50, which are the worker's.
enum { kSuccess = 0, kBadCall = -2, kNoRoom = -3, kNoSuchOperation = -4 };

static const char kAddress[] = "example:1";

// ---- Port I/O ----

typedef struct Port {
  ZIOPortInterface interface;  // first, so that a pointer to one is a pointer to the other
  int isInitialised;
  int isOpen;
  char data[512];
  long length;
} Port;

static int PortRelease(ZIOPortInterface* self) {
  free(self);
  return kSuccess;
}

static int PortInitialise(ZIOPortInterface* self, int version, const ZIOOpenParameter* parameter) {
  CFDataRef address = parameter->portInformation;
  if (version != ZIO_INTERFACE_VERSION || address == NULL ||
      CFDataGetLength(address) != (CFIndex)strlen(kAddress) ||
      memcmp(CFDataGetBytePtr(address), kAddress, strlen(kAddress)) != 0) {
    char message[] = "this is not the address of an example printer";
    if (parameter->errorCallback != NULL) {
      parameter->errorCallback(parameter->context, kBadCall, message);
    }
    return kBadCall;
  }
  ((Port*)self)->isInitialised = 1;
  return kSuccess;
}

static int PortTerminate(ZIOPortInterface* self) {
  ((Port*)self)->isInitialised = 0;
  return kSuccess;
}

static int PortOpen(ZIOPortInterface* self) {
  Port* port = (Port*)self;
  if (!port->isInitialised || port->isOpen) {
    return kBadCall;
  }
  port->isOpen = 1;
  port->length = 0;
  return kSuccess;
}

static int PortClose(ZIOPortInterface* self) {
  Port* port = (Port*)self;
  const int was_open = port->isOpen;
  port->isOpen = 0;
  return was_open ? kSuccess : kBadCall;
}

static int PortIoctl(ZIOPortInterface* self, long selector, void* block) {
  (void)self, (void)selector, (void)block;
  return kNoSuchOperation;
}

// Nothing here ever waits.
static int PortCancel(ZIOPortInterface* self) {
  (void)self;
  return kSuccess;
}

static int PortWrite(ZIOPortInterface* self, char* bytes, long* length) {
  Port* port = (Port*)self;
  if (!port->isOpen || *length < 0) {
    return kBadCall;
  }
  if (*length > (long)sizeof port->data - port->length) {
    return kNoRoom;
  }
  memcpy(port->data + port->length, bytes, (size_t)*length);
  port->length += *length;
  return kSuccess;
}

static int PortFlush(ZIOPortInterface* self, unsigned char flag) {
  (void)flag;
  return ((Port*)self)->isOpen ? kSuccess : kBadCall;
}

static int PortTab(ZIOPortInterface* self) {
  return PortFlush(self, 0);
}

static int PortStatus(ZIOPortInterface* self, char* buffer) {
  if (!((Port*)self)->isOpen) {
    return kBadCall;
  }
  memcpy(buffer, "example\r\n", sizeof "example\r\n");
  return kSuccess;
}

static int PortRead(ZIOPortInterface* self, char* buffer, long* length) {
  Port* port = (Port*)self;
  if (!port->isOpen || *length < 0) {
    return kBadCall;
  }
  if (*length > port->length) {
    *length = port->length;
  }
  memcpy(buffer, port->data, (size_t)*length);
  port->length -= *length;
  memmove(port->data, port->data + *length, (size_t)port->length);
  return kSuccess;
}

static int PortControl(ZIOPortInterface* self, ControlElement* block) {
  long length = (long)block->commandLength;
  char* command = (char*)block->command;  // the write slot takes char*, and only reads
  const int code = PortWrite(self, command, &length);
  length = (long)block->replyLength;
  return code == kSuccess ? PortRead(self, block->reply, &length) : code;
}

static int PortGetInfo(ZIOPortInterface* self, ZIOXInfo* info) {
  (void)self, (void)info;
  return kNoSuchOperation;
}

static const ZIOPortTable kPortTable = {NULL,      PortRelease, PortInitialise, PortTerminate,
                                        PortOpen,  PortClose,   PortIoctl,      PortCancel,
                                        PortWrite, PortFlush,   PortTab,        PortStatus,
                                        PortRead,  PortControl, PortGetInfo};

static void* MakePort(void) {
  Port* port = calloc(1, sizeof *port);
  if (port != NULL) {
    port->interface.table = &kPortTable;
  }
  return port;
}

// ---- Port information ----

typedef struct PortInfo {
  ZIOPortInfoInterface interface;
  CFDictionaryRef list;  // owned; the worker only looks at it
} PortInfo;

static int InfoTerminate(ZIOPortInfoInterface* self) {
  PortInfo* info = (PortInfo*)self;
  if (info->list != NULL) {
    CFRelease(info->list);
  }
  info->list = NULL;
  return kSuccess;
}

static int InfoRelease(ZIOPortInfoInterface* self) {
  InfoTerminate(self);
  free(self);
  return kSuccess;
}

static int InfoInitialise(ZIOPortInfoInterface* self, int version, CFDictionaryRef information) {
  (void)self, (void)information;
  return version == ZIO_INTERFACE_VERSION ? kSuccess : kBadCall;
}

static CFDictionaryRef MakeDictionary(const void** keys, const void** values, CFIndex count) {
  return CFDictionaryCreate(kCFAllocatorDefault, keys, values, count,
                            &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
}

static CFDictionaryRef InfoGetList(ZIOPortInfoInterface* self) {
  const SInt32 type = ZIO_PORT_TYPE_LOCAL;
  CFDataRef address =
      CFDataCreate(kCFAllocatorDefault, (const UInt8*)kAddress, (CFIndex)strlen(kAddress));
  CFNumberRef number = CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &type);
  const void* keys[] = {CFSTR(ZIO_INFO_TARGET_NAME), CFSTR(ZIO_INFO_PRINTER_NAME),
                        CFSTR(ZIO_INFO_ADDRESS), CFSTR(ZIO_INFO_IOX_TYPE)};
  const void* values[] = {CFSTR("Example printer"), CFSTR("Example"), address, number};
  const void* record = MakeDictionary(keys, values, 4);
  CFArrayRef records = CFArrayCreate(kCFAllocatorDefault, &record, 1, &kCFTypeArrayCallBacks);
  const void* list_key = CFSTR(ZIO_INFO_PRINTER_LIST);
  const void* list_value = records;
  InfoTerminate(self);
  ((PortInfo*)self)->list = MakeDictionary(&list_key, &list_value, 1);
  CFRelease(records);
  CFRelease(record);
  CFRelease(number);
  CFRelease(address);
  return ((PortInfo*)self)->list;
}

static const ZIOPortInfoTable kInfoTable = {NULL, InfoRelease, InfoInitialise, InfoTerminate,
                                            InfoGetList};

static void* MakePortInfo(void) {
  PortInfo* info = calloc(1, sizeof *info);
  if (info != NULL) {
    info->interface.table = &kInfoTable;
  }
  return info;
}

// ---- The instance and its factory ----

typedef struct Instance {
  const IUnknownVTbl* table;
  atomic_uint references;
} Instance;

static int IsUUID(CFUUIDBytes id, CFStringRef text) {
  CFUUIDRef uuid = CFUUIDCreateFromString(kCFAllocatorDefault, text);
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(uuid);
  CFRelease(uuid);
  return memcmp(&id, &bytes, sizeof bytes) == 0;
}

static ULONG AddRef(void* self) {
  return atomic_fetch_add(&((Instance*)self)->references, 1) + 1;
}

static ULONG Release(void* self) {
  const ULONG left = atomic_fetch_sub(&((Instance*)self)->references, 1) - 1;
  if (left == 0) {
    free(self);
  }
  return left;
}

static HRESULT QueryInterface(void* self, REFIID id, LPVOID* interface) {
  const CFUUIDBytes unknown = CFUUIDGetUUIDBytes(IUnknownUUID);
  *interface = NULL;
  if (memcmp(&id, &unknown, sizeof unknown) == 0) {
    AddRef(self);
    *interface = self;
  } else if (IsUUID(id, CFSTR(ZIO_PORT_INTERFACE_ID))) {
    *interface = MakePort();
  } else if (IsUUID(id, CFSTR(ZIO_PORT_INFO_INTERFACE_ID))) {
    *interface = MakePortInfo();
  }
  return *interface != NULL ? S_OK : E_NOINTERFACE;
}

static const IUnknownVTbl kInstanceTable = {NULL, QueryInterface, AddRef, Release};

// Named in Info.plist.
__attribute__((visibility("default"))) void* ExampleFactory(CFAllocatorRef allocator,
                                                            CFUUIDRef type);
void* ExampleFactory(CFAllocatorRef allocator, CFUUIDRef type) {
  (void)allocator;
  Instance* instance = NULL;
  if (IsUUID(CFUUIDGetUUIDBytes(type), CFSTR(ZIO_PLUGIN_TYPE_ID))) {
    instance = malloc(sizeof *instance);
  }
  if (instance != NULL) {
    instance->table = &kInstanceTable;
    atomic_init(&instance->references, 1);
  }
  return instance;
}

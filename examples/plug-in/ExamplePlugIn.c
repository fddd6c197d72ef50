// A whole I/O plug-in in C11, to start one from: it lists one printer, whose port gives back what
// was written to it. The worker makes no call out of order, so that no function looks for one.
#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFPlugInCOM.h>
#include <stdlib.h>
#include <string.h>

#include "printer_io/ZIOPlugin.h"

// Result codes of this plug-in: 0 or negative, but neither -1 nor -50, which are the worker's.
enum { kSuccess = 0, kNoRoom = -2, kNoSuchOperation = -3 };

// ---- Port I/O ----

typedef struct Port {
  ZIOPortInterface interface;  // first, so that a pointer to one is a pointer to the other
  char data[512];
  long length;
} Port;

static int PortRelease(ZIOPortInterface* self) {
  free(self);
  return kSuccess;
}

static int PortInitialise(ZIOPortInterface* self, int version, const ZIOOpenParameter* parameter) {
  (void)self, (void)parameter;  // whose portInformation says which printer
  return version == ZIO_INTERFACE_VERSION ? kSuccess : kNoSuchOperation;
}

// Terminate, open, close, cancel and tab: there is nothing to do, and nothing ever waits.
static int PortDone(ZIOPortInterface* self) {
  (void)self;
  return kSuccess;
}

static int PortIoctl(ZIOPortInterface* self, long selector, void* block) {
  (void)self, (void)selector, (void)block;
  return kNoSuchOperation;
}

static int PortWrite(ZIOPortInterface* self, char* bytes, long* length) {
  Port* port = (Port*)self;
  if (*length < 0 || *length > (long)sizeof port->data - port->length) {
    return kNoRoom;
  }
  memcpy(port->data + port->length, bytes, (size_t)*length);
  port->length += *length;
  return kSuccess;
}

static int PortFlush(ZIOPortInterface* self, unsigned char flag) {
  (void)self, (void)flag;
  return kSuccess;
}

static int PortStatus(ZIOPortInterface* self, char* buffer) {
  (void)self;
  memcpy(buffer, "example\r\n", sizeof "example\r\n");
  return kSuccess;
}

static int PortRead(ZIOPortInterface* self, char* buffer, long* length) {
  Port* port = (Port*)self;
  if (*length < port->length) {
    return kNoRoom;
  }
  memcpy(buffer, port->data, (size_t)port->length);
  *length = port->length;
  port->length = 0;
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

static const ZIOPortTable kPortTable = {
    NULL,      PortRelease, PortInitialise, PortDone,   PortDone, PortDone,    PortIoctl,  PortDone,
    PortWrite, PortFlush,   PortDone,       PortStatus, PortRead, PortControl, PortGetInfo};

// ---- Port information ----

// The address is "example:1" in Base64.
static const char kList[] =
    "<plist version=\"1.0\"><dict><key>" ZIO_INFO_PRINTER_LIST
    "</key><array><dict>"
    "<key>" ZIO_INFO_TARGET_NAME
    "</key><string>Example printer</string>"
    "<key>" ZIO_INFO_PRINTER_NAME
    "</key><string>Example</string>"
    "<key>" ZIO_INFO_ADDRESS
    "</key><data>ZXhhbXBsZTox</data>"
    "<key>" ZIO_INFO_IOX_TYPE "</key><integer>1</integer></dict></array></dict></plist>";

typedef struct PortInfo {
  ZIOPortInfoInterface interface;
  CFPropertyListRef list;  // owned; the worker only looks at it
} PortInfo;

static int InfoInitialise(ZIOPortInfoInterface* self, int version, CFDictionaryRef information) {
  (void)information;  // the printers could be configured in it
  CFDataRef text = CFDataCreate(kCFAllocatorDefault, (const UInt8*)kList, (CFIndex)strlen(kList));
  ((PortInfo*)self)->list =
      CFPropertyListCreateWithData(kCFAllocatorDefault, text, kCFPropertyListImmutable, NULL, NULL);
  CFRelease(text);
  return version == ZIO_INTERFACE_VERSION ? kSuccess : kNoSuchOperation;
}

static int InfoTerminate(ZIOPortInfoInterface* self) {
  if (((PortInfo*)self)->list != NULL) {
    CFRelease(((PortInfo*)self)->list);
  }
  ((PortInfo*)self)->list = NULL;
  return kSuccess;
}

static int InfoRelease(ZIOPortInfoInterface* self) {
  free(self);
  return kSuccess;
}

static CFDictionaryRef InfoGetList(ZIOPortInfoInterface* self) {
  return ((PortInfo*)self)->list;
}

static const ZIOPortInfoTable kInfoTable = {NULL, InfoRelease, InfoInitialise, InfoTerminate,
                                            InfoGetList};

// ---- The instance and its factory ----

static int IsUUID(CFUUIDBytes id, CFStringRef text) {
  CFUUIDRef uuid = CFUUIDCreateFromString(kCFAllocatorDefault, text);
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(uuid);
  CFRelease(uuid);
  return memcmp(&id, &bytes, sizeof bytes) == 0;
}

// The one instance is static, so that nothing depends on its references.
static ULONG Count(void* self) {
  (void)self;
  return 1;
}

// A zeroed object of size bytes whose first member points to table; null when memory is short.
static void* MakeObject(size_t size, const void* table) {
  const void** object = calloc(1, size);
  if (object != NULL) {
    *object = table;
  }
  return object;
}

static HRESULT QueryInterface(void* self, REFIID id, LPVOID* interface) {
  *interface = NULL;
  if (IsUUID(id, CFSTR("00000000-0000-0000-C000-000000000046"))) {
    *interface = self;
  } else if (IsUUID(id, CFSTR(ZIO_PORT_INTERFACE_ID))) {
    *interface = MakeObject(sizeof(Port), &kPortTable);
  } else if (IsUUID(id, CFSTR(ZIO_PORT_INFO_INTERFACE_ID))) {
    *interface = MakeObject(sizeof(PortInfo), &kInfoTable);
  }
  return *interface != NULL ? S_OK : E_NOINTERFACE;
}

static const IUnknownVTbl kTable = {NULL, QueryInterface, Count, Count};
static const IUnknownVTbl* instance = &kTable;

// Named in Info.plist.
__attribute__((visibility("default"))) void* ExampleFactory(CFAllocatorRef, CFUUIDRef);
void* ExampleFactory(CFAllocatorRef allocator, CFUUIDRef type) {
  (void)allocator;
  return IsUUID(CFUUIDGetUUIDBytes(type), CFSTR(ZIO_PLUGIN_TYPE_ID)) ? &instance : NULL;
}

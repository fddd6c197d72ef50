// Binary interface between the worker and its I/O plug-in, the bundle "ZIO/ZIOP.plugin".
//
// The plug-in is a CoreFoundation plug-in. The worker finds the factory for ZIO_PLUGIN_TYPE_ID in
// the bundle's Info.plist, creates an instance (an IUnknown), and asks it through QueryInterface
// for one of the two interfaces below. An interface pointer points to a structure whose first
// member points to the function table, as in COM; every function takes the interface pointer as
// its first argument.
//
// Plain C: the header compiles as C11 and as C++17, and no exception crosses a slot. All calls on
// one interface but cancel come from one thread, one at a time. A thread that the plug-in starts
// blocks all signals, which are the worker's. Results are 0 or a negative code of the plug-in's
// own, neither -1 nor -50, unless a slot says otherwise. Every slot but the reserved ones must be
// filled.
#ifndef PRINTER_IO_ZIOPLUGIN_H_
#define PRINTER_IO_ZIOPLUGIN_H_

#include <CoreFoundation/CoreFoundation.h>
#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#define ZIO_PLUGIN_TYPE_ID "5C0D2E11-7A42-4B19-9F63-2D8E4A71C305"
#define ZIO_PORT_INTERFACE_ID "5C0D2E12-7A42-4B19-9F63-2D8E4A71C305"
#define ZIO_PORT_INFO_INTERFACE_ID "5C0D2E13-7A42-4B19-9F63-2D8E4A71C305"

// Keys of the dictionaries that cross the interface. ZIO_INFO_PRINTER_LIST names the array of
// printer records in the list; a record holds the next four; ZIO_INFO_PLUGIN_PATH is read from the
// supported-printer dictionary.
#define ZIO_INFO_PRINTER_LIST "InfoPrinterList"
#define ZIO_INFO_TARGET_NAME "InfoTargetName"  // string: the printer's name, by which it is opened
#define ZIO_INFO_PRINTER_NAME "InfoPrinterName"   // string: the device (model) name
#define ZIO_INFO_ADDRESS "InfoAddress"            // data: opaque to the worker, handed back on open
#define ZIO_INFO_IOX_TYPE "InfoIOXType"           // number: one of enum ZIOPortType
#define ZIO_INFO_PLUGIN_PATH "InfoZIOPluginPath"  // string: the bundle's path

// The version that the worker passes to both initialise slots.
enum ZIOInterfaceVersion { ZIO_INTERFACE_VERSION = 2 };

// Port types, as a printer record tells them.
enum ZIOPortType { ZIO_PORT_TYPE_LOCAL = 1, ZIO_PORT_TYPE_TCPIP = 4 };

// Selectors of the ioctl slot.
enum ZIOControlSelector { ZIO_IOCTL_SNMP_EXCHANGE = 6 };

// Size of the buffer behind the status slot: up to 256 bytes of status text and a terminating zero.
enum ZIOStatusSize { ZIO_STATUS_BUFFER_SIZE = 257 };

#ifdef __cplusplus
extern "C" {
#endif

// Told by the plug-in, from inside any call and on the calling thread, when an operation goes
// wrong. context is the one of the open parameters; message is zero-terminated, UTF-8, and the
// caller's. The answer is ignored.
typedef int (*ZIOErrorCallback)(void* context, int code, char* message);

// Block of the port interface's initialise slot. Everything in it stays the worker's.
typedef struct ZIOOpenParameter {
  CFDataRef portInformation;       // the record's InfoAddress; retain it to keep it
  const void* reserved1;           // 0
  const void* reserved2;           // 0
  ZIOErrorCallback errorCallback;  // may be called until release returns
  void* context;                   // first argument of errorCallback
  const char* pluginPath;          // freed as soon as initialise returns: copy it to keep it
} ZIOOpenParameter;

// Block of the ioctl slot with ZIO_IOCTL_SNMP_EXCHANGE.
typedef struct ZIOSnmpExchange {
  const char* request;    // one whole SNMP message
  int64_t requestLength;  // bytes
  char* answer;          // in: the worker's buffer; out: that one or a buffer of the plug-in's own,
                         // valid until the next call on the interface
  int64_t answerLength;  // in: capacity of the worker's buffer; out: length of the answer, which
                         // may be more than the capacity only in a buffer of the plug-in's own
} ZIOSnmpExchange;

// Block of the control slot: bytes to write, then a reply to read, both in the worker's buffers.
typedef struct ControlElement {
  const char* command;
  int64_t commandLength;  // bytes
  char* reply;
  int64_t replyLength;  // capacity, bytes; what is left of it stays as the worker filled it
} ControlElement;

// Block of the get-information slot, the plug-in's own; the worker only passes pointers.
typedef struct ZIOXInfo ZIOXInfo;

typedef struct ZIOPortInterface ZIOPortInterface;

// Port I/O: one port to one printer.
//
// Life of an interface: created by QueryInterface, then initialise, open, any operations, close,
// terminate, release. The worker calls close only on an open port and terminate only after a
// successful initialise; release ends every interface, whatever came before.
typedef struct ZIOPortTable {
  // Slot 0 is never called.
  void* reserved;

  // Slot 1. Ends the interface and everything it holds. The last call, legal in every state.
  int (*release)(ZIOPortInterface* self);

  // Slot 2. Takes the port's description. The first call, made once; does not block. version is
  // ZIO_INTERFACE_VERSION; parameter is valid during the call. After a failure only release comes.
  int (*initialise)(ZIOPortInterface* self, int version, const ZIOOpenParameter* parameter);

  // Slot 3. Undoes initialise. Legal once after a successful initialise, on a closed port.
  int (*terminate)(ZIOPortInterface* self);

  // Slot 4. Opens the port. Legal when initialised and not open. May block, for a bounded time.
  // After a failure the port is not open.
  int (*open)(ZIOPortInterface* self);

  // Slot 5. Closes the port in order: what was flushed is not lost. Legal when open; the port is
  // closed afterwards, whatever the result. May block, for a bounded time.
  int (*close)(ZIOPortInterface* self);

  // Slot 6. Runs the operation that selector names on block, whose type the selector fixes.
  // Legal when open. Blocks until the answer is there or the port's own time is over; on failure
  // the block's output members are left as they were.
  int (*ioctl)(ZIOPortInterface* self, long selector, void* block);

  // Slot 7. Ends the wait in progress, and the operation that waits, with a failure. Without one it
  // does nothing and leaves no trace: an operation that begins later is not ended. Legal when
  // initialised, also when not open. The one slot that may be called from the error callback and,
  // until terminate, from other threads and from a signal handler, which may have interrupted any
  // other slot: it neither allocates nor locks nor throws, and calls async-signal-safe functions
  // (POSIX.1) alone. Does not block and never calls the error callback.
  int (*cancel)(ZIOPortInterface* self);

  // Slot 8. Takes *length bytes for the printer. Legal when open. On success *length holds the
  // number of bytes taken, which is all of them; on failure it is left, and how much of the bytes
  // reached the printer is not known. Blocks as long as the printer goes on taking bytes, for a
  // bounded time at each standstill.
  int (*write)(ZIOPortInterface* self, char* bytes, long* length);

  // Slot 9. Sends everything that was written. Legal when open; the argument is 0. Blocks until
  // the bytes are on their way or the port's own time is over.
  int (*flush)(ZIOPortInterface* self, unsigned char flag);

  // Slot 10. Marks the end of a unit of data. Legal when open. A port that keeps bytes together has
  // to let them go; otherwise there is nothing to do.
  int (*tab)(ZIOPortInterface* self);

  // Slot 11. Fills buffer, ZIO_STATUS_BUFFER_SIZE bytes zeroed by the worker, with the printer's
  // status text, which may hold zero bytes, and a terminating zero. Legal when open. Blocks until
  // the answer is there or the port's own time is over; on failure buffer is left as it was.
  int (*status)(ZIOPortInterface* self, char* buffer);

  // Slot 12. Reads at most *length bytes into buffer; on success *length holds how many, on failure
  // it is left. Legal when open. Returns when the printer pauses after its first byte or the buffer
  // is full; nothing at all in the port's own time is a failure.
  int (*read)(ZIOPortInterface* self, char* buffer, long* length);

  // Slot 13. Writes a command and reads its reply in one operation. Legal when open. Blocks as
  // write and read do.
  int (*control)(ZIOPortInterface* self, ControlElement* block);

  // Slot 14. Fills the plug-in's own information record. Legal when open; does not block. A plug-in
  // without such a record answers with a failure.
  int (*getInfo)(ZIOPortInterface* self, ZIOXInfo* info);
} ZIOPortTable;

struct ZIOPortInterface {
  const ZIOPortTable* table;
};

typedef struct ZIOPortInfoInterface ZIOPortInfoInterface;

// Port information: the list of the printers that the plug-in can reach.
typedef struct ZIOPortInfoTable {
  // Slot 0 is never called.
  void* reserved;

  // Slot 1. Ends the interface and everything it holds. The last call, legal in every state.
  int (*release)(ZIOPortInfoInterface* self);

  // Slot 2. Takes the supported-printer dictionary, which stays the worker's: retain it to keep it.
  // The first call, made once; does not block. version is ZIO_INTERFACE_VERSION.
  int (*initialise)(ZIOPortInfoInterface* self, int version, CFDictionaryRef information);

  // Slot 3. Undoes initialise. Called once before release, also when initialise failed.
  int (*terminate)(ZIOPortInfoInterface* self);

  // Slot 4. Lists the printers: a dictionary whose ZIO_INFO_PRINTER_LIST is an array of printer
  // records, or null. It follows the Get rule: the plug-in owns it and keeps it until the next call
  // of this slot or until terminate. Legal after a successful initialise. Blocks while it searches,
  // for a bounded time.
  CFDictionaryRef (*getList)(ZIOPortInfoInterface* self);
} ZIOPortInfoTable;

struct ZIOPortInfoInterface {
  const ZIOPortInfoTable* table;
};

#ifdef __cplusplus
}
#endif

// The layout that both sides were built for.
#define ZIO_SLOT(table, slot, index) \
  static_assert(offsetof(table, slot) == (index) * sizeof(void*), #table "." #slot " has moved")

static_assert(sizeof(void*) == 8 && sizeof(long) == 8, "the interface is defined for LP64");

ZIO_SLOT(ZIOPortTable, reserved, 0);
ZIO_SLOT(ZIOPortTable, release, 1);
ZIO_SLOT(ZIOPortTable, initialise, 2);
ZIO_SLOT(ZIOPortTable, terminate, 3);
ZIO_SLOT(ZIOPortTable, open, 4);
ZIO_SLOT(ZIOPortTable, close, 5);
ZIO_SLOT(ZIOPortTable, ioctl, 6);
ZIO_SLOT(ZIOPortTable, cancel, 7);
ZIO_SLOT(ZIOPortTable, write, 8);
ZIO_SLOT(ZIOPortTable, flush, 9);
ZIO_SLOT(ZIOPortTable, tab, 10);
ZIO_SLOT(ZIOPortTable, status, 11);
ZIO_SLOT(ZIOPortTable, read, 12);
ZIO_SLOT(ZIOPortTable, control, 13);
ZIO_SLOT(ZIOPortTable, getInfo, 14);
static_assert(sizeof(ZIOPortTable) == 15 * sizeof(void*), "ZIOPortTable has 15 slots");

ZIO_SLOT(ZIOPortInfoTable, reserved, 0);
ZIO_SLOT(ZIOPortInfoTable, release, 1);
ZIO_SLOT(ZIOPortInfoTable, initialise, 2);
ZIO_SLOT(ZIOPortInfoTable, terminate, 3);
ZIO_SLOT(ZIOPortInfoTable, getList, 4);
static_assert(sizeof(ZIOPortInfoTable) == 5 * sizeof(void*), "ZIOPortInfoTable has 5 slots");

static_assert(sizeof(ZIOOpenParameter) == 48, "six pointer-sized members");
static_assert(offsetof(ZIOOpenParameter, errorCallback) == 24, "fourth member");
static_assert(offsetof(ZIOOpenParameter, pluginPath) == 40, "sixth member");
static_assert(sizeof(ZIOSnmpExchange) == 32 && offsetof(ZIOSnmpExchange, answer) == 16,
              "four 64-bit members");
static_assert(sizeof(ControlElement) == 32 && offsetof(ControlElement, reply) == 16,
              "four 64-bit members");

#undef ZIO_SLOT

#endif  // PRINTER_IO_ZIOPLUGIN_H_

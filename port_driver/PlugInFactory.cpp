// The plug-in's factory, its one exported function, and the instances that it makes.
#include <CoreFoundation/CFPlugInCOM.h>

#include <atomic>
#include <cstring>
#include <new>

#include "corefoundation/Foundation.h"
#include "port_driver/PortInfoInterface.h"
#include "port_driver/PortInterface.h"
#include "util/ProcessTrace.h"

namespace ZIOP {
namespace {

// An instance in COM's layout: its first member is the function table. The interfaces that it hands
// out are objects of their own, which live until their own release slot, also without the instance.
struct Instance {
  explicit Instance(const IUnknownVTbl* functions) : table(functions) {}

  const IUnknownVTbl* table;
  std::atomic<ULONG> references{1};
};

ULONG AddRef(void* instance) noexcept {
  return ++static_cast<Instance*>(instance)->references;
}

ULONG Release(void* instance) noexcept {
  auto* self = static_cast<Instance*>(instance);
  const ULONG left = --self->references;
  if (left == 0) {
    delete self;
  }
  return left;
}

// Constant for the life of the process.
struct Identifiers {
  CFUUIDRef type = MakeUUID(CFSTR(ZIO_PLUGIN_TYPE_ID));
  CFUUIDRef port = MakeUUID(CFSTR(ZIO_PORT_INTERFACE_ID));
  CFUUIDRef port_info = MakeUUID(CFSTR(ZIO_PORT_INFO_INTERFACE_ID));

  static CFUUIDRef MakeUUID(CFStringRef text) {
    return CFUUIDCreateFromString(kCFAllocatorDefault, text);
  }
};

const Identifiers& Known() {
  static const Identifiers known;
  return known;
}

bool IsInterface(const CFUUIDBytes& id, CFUUIDRef interface) {
  const CFUUIDBytes bytes = CFUUIDGetUUIDBytes(interface);
  return std::memcmp(&id, &bytes, sizeof bytes) == 0;
}

void* MakeInterface(void* instance, const CFUUIDBytes& id) {
  if (IsInterface(id, Known().port)) {
    return MakePortInterface();
  }
  if (IsInterface(id, Known().port_info)) {
    return MakePortInfoInterface();
  }
  if (IsInterface(id, IUnknownUUID)) {
    AddRef(instance);
    return instance;
  }
  return nullptr;
}

HRESULT QueryInterface(void* instance, REFIID id, LPVOID* interface) noexcept {
  try {
    *interface = MakeInterface(instance, id);
  } catch (const std::bad_alloc&) {
    *interface = nullptr;
  }
  return *interface != nullptr ? S_OK : E_NOINTERFACE;
}

constexpr IUnknownVTbl kTable = {nullptr, QueryInterface, AddRef, Release};

}  // namespace
}  // namespace ZIOP

// Named in Info.plist. Null for any type but ZIO_PLUGIN_TYPE_ID and when memory is short.
extern "C" __attribute__((visibility("default"))) void* ZIOPlugInFactory(CFAllocatorRef,
                                                                         CFUUIDRef type) noexcept {
  if (type == nullptr || !CFEqual(type, ZIOP::Known().type)) {
    return nullptr;
  }
  Ravik::ProcessTrace::Start("ZIOP");
  return new (std::nothrow) ZIOP::Instance(&ZIOP::kTable);
}

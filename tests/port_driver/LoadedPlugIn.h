// A plug-in bundle, loaded and asked for interfaces in the order of calls that the worker keeps.
#ifndef TESTS_PORT_DRIVER_LOADEDPLUGIN_H_
#define TESTS_PORT_DRIVER_LOADEDPLUGIN_H_

#include <CoreFoundation/CFPlugIn.h>
#include <CoreFoundation/CFPlugInCOM.h>

#include <stdexcept>
#include <string>

#include "corefoundation/Foundation.h"
#include "printer_io/ZIOPlugin.h"

namespace ZIOP {

class LoadedPlugIn {
 public:
  // Throws when the bundle makes no instance.
  explicit LoadedPlugIn(const char* path) {
    const CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path),
        static_cast<CFIndex>(std::char_traits<char>::length(path)), true));
    plugin_ = CFRef<CFPlugInRef>(CFPlugInCreate(kCFAllocatorDefault, url.get()));
    const auto type = MakeUUID(CFSTR(ZIO_PLUGIN_TYPE_ID));
    const CFRef<CFArrayRef> factories(
        CFPlugInFindFactoriesForPlugInTypeInPlugIn(type.get(), plugin_.get()));
    if (!factories || CFArrayGetCount(factories.get()) != 1) {
      throw std::runtime_error("no factory");
    }
    factory_ = CFRef<CFUUIDRef>::Retain(
        static_cast<CFUUIDRef>(CFArrayGetValueAtIndex(factories.get(), 0)));
    instance_ = static_cast<Instance*>(CFPlugInInstanceCreate(nullptr, factory_.get(), type.get()));
    if (instance_ == nullptr) {
      throw std::runtime_error("no instance");
    }
  }
  ~LoadedPlugIn() { (*instance_)->Release(instance_); }
  LoadedPlugIn(const LoadedPlugIn&) = delete;
  LoadedPlugIn& operator=(const LoadedPlugIn&) = delete;

  static CFRef<CFUUIDRef> MakeUUID(CFStringRef text) {
    return CFRef<CFUUIDRef>(CFUUIDCreateFromString(kCFAllocatorDefault, text));
  }

  // Null when the plug-in has no such interface; result, if wanted, gets what QueryInterface said.
  template <typename Interface>
  Interface* GetInterface(CFUUIDRef id, HRESULT* result = nullptr) {
    if (!CFEqual(id, IUnknownUUID)) {
      (*instance_)->AddRef(instance_);
    }
    void* interface = this;
    const HRESULT code =
        (*instance_)->QueryInterface(instance_, CFUUIDGetUUIDBytes(id), &interface);
    left_ = (*instance_)->Release(instance_);
    if (result != nullptr) {
      *result = code;
    }
    return static_cast<Interface*>(interface);
  }

  ZIOPortInterface* GetPort() {
    return GetInterface<ZIOPortInterface>(MakeUUID(CFSTR(ZIO_PORT_INTERFACE_ID)).get());
  }
  ZIOPortInfoInterface* GetPortInfo() {
    return GetInterface<ZIOPortInfoInterface>(MakeUUID(CFSTR(ZIO_PORT_INFO_INTERFACE_ID)).get());
  }

  // References left after the last GetInterface.
  ULONG left() const { return left_; }
  CFUUIDRef factory() const { return factory_.get(); }
  void* instance() const { return instance_; }

 private:
  using Instance = const IUnknownVTbl*;

  CFRef<CFPlugInRef> plugin_;
  CFRef<CFUUIDRef> factory_;
  Instance* instance_ = nullptr;
  ULONG left_ = 0;
};

}  // namespace ZIOP

#endif  // TESTS_PORT_DRIVER_LOADEDPLUGIN_H_

#include "printer_io/CPluginLoader.h"

namespace {

CFRef<CFStringRef> MacRomanText(const char* text) {
  if (text == nullptr || *text == '\0') return {};
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingMacRoman));
}

CFRef<CFURLRef> BundleURL(CFStringRef path) {
  if (path == nullptr) return {};
  return CFRef<CFURLRef>(
      CFURLCreateWithFileSystemPath(kCFAllocatorDefault, path, kCFURLPOSIXPathStyle, true));
}

}  // namespace

CPluginLoader::CPluginLoader(const char* path, const char* type)
    : CPluginLoader(MacRomanText(path).get(), MacRomanText(type).get()) {}

CPluginLoader::CPluginLoader(const __CFString* path, const __CFString* type)
    : CPluginLoader(BundleURL(path).get(), type) {}

CPluginLoader::CPluginLoader(const __CFURL* bundle, const __CFString* type) {
  LoadPluginCommon(bundle, type);
}

CPluginLoader::~CPluginLoader() {
  if (HasInstance()) (*instance_)->Release(instance_);
}

void CPluginLoader::LoadPluginCommon(const __CFURL* bundle, const __CFString* type) {
  if (bundle == nullptr || type == nullptr) return;
  const CFRef<CFUUIDRef> type_id(CFUUIDCreateFromString(kCFAllocatorDefault, type));
  if (!type_id) return;
  bundle_ = CFRef<CFPlugInRef>(CFPlugInCreate(kCFAllocatorDefault, bundle));
  if (!bundle_) return;
  const CFRef<CFArrayRef> factories(
      CFPlugInFindFactoriesForPlugInTypeInPlugIn(type_id.get(), bundle_.get()));
  if (!factories || CFArrayGetCount(factories.get()) < 1) return;
  const auto factory = static_cast<CFUUIDRef>(CFArrayGetValueAtIndex(factories.get(), 0));
  instance_ = static_cast<IUnknownVTbl**>(CFPlugInInstanceCreate(nullptr, factory, type_id.get()));
}

bool CPluginLoader::HasInstance() const {
  return bundle_ && instance_ != nullptr && *instance_ != nullptr;
}

void* CPluginLoader::GetInterface(const char* interface_id) {
  if (!HasInstance()) return nullptr;
  return GetInterface(MacRomanText(interface_id).get());
}

void* CPluginLoader::GetInterface(const __CFString* interface_id) {
  if (!HasInstance() || interface_id == nullptr) return nullptr;
  const CFRef<CFUUIDRef> id(CFUUIDCreateFromString(kCFAllocatorDefault, interface_id));
  if (!id) return nullptr;
  static const CFUUIDRef unknown = IUnknownUUID;
  // The Release below takes back a reference of its own, except for IUnknown itself.
  if (!CFEqual(id.get(), unknown)) (*instance_)->AddRef(instance_);
  void* interface = nullptr;
  const HRESULT result =
      (*instance_)->QueryInterface(instance_, CFUUIDGetUUIDBytes(id.get()), &interface);
  (*instance_)->Release(instance_);
  return result == S_OK ? interface : nullptr;
}

// The bundles of the process, and the instances that their factories make.
#include <CoreFoundation/CFPlugIn.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

#include "corefoundation/Bundle.h"
#include "corefoundation/String.h"
#include "corefoundation/URL.h"

namespace CoreFoundation {

namespace {

// Every bundle that was ever created, owned for the life of the process.
class Registry {
 public:
  static Registry& Shared() {
    static auto& registry = *new Registry;
    return registry;
  }

  // path is absolute.
  Bundle& BundleAt(const std::string& path) {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    Bundle*& bundle = bundles_[path];
    if (bundle == nullptr) bundle = new Bundle(path);
    for (const auto& [factory, function] : bundle->functions()) factories_[factory] = bundle;
    return *bundle;
  }

  CFPlugInFactoryFunction FunctionOf(const UUIDBytes& factory, const UUIDBytes& type) {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    const auto entry = factories_.find(factory);
    if (entry == factories_.end()) return nullptr;
    Bundle& bundle = *entry->second;
    const auto makers = bundle.FactoriesFor(type);
    if (std::find(makers.begin(), makers.end(), factory) == makers.end()) return nullptr;
    return reinterpret_cast<CFPlugInFactoryFunction>(
        bundle.FindFunction(bundle.functions().at(factory)));
  }

 private:
  std::recursive_mutex mutex_;  // code that is being loaded may come back
  std::map<std::string, Bundle*> bundles_;
  std::map<UUIDBytes, Bundle*> factories_;
};

// The folder that a URL names, absolute and without links; empty when there is none.
std::string FolderAt(const URL& url) {
  std::string path;
  if (!GetUTF8(url.path(), path)) return {};
  const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), free);
  struct stat status;
  if (!resolved || stat(resolved.get(), &status) != 0 || !S_ISDIR(status.st_mode)) return {};
  return resolved.get();
}

}  // namespace

}  // namespace CoreFoundation

using CoreFoundation::Bundle;
using CoreFoundation::ObjectOf;
using CoreFoundation::Registry;
using CoreFoundation::UUID;

CFPlugInRef CFPlugInCreate(CFAllocatorRef /*allocator*/, CFURLRef url) {
  if (url == nullptr) return nullptr;
  const std::string path = CoreFoundation::FolderAt(ObjectOf<CoreFoundation::URL>(url));
  if (path.empty()) return nullptr;
  Bundle& bundle = Registry::Shared().BundleAt(path);
  bundle.Retain();
  return CoreFoundation::MutableRefTo<CFPlugInRef>(&bundle);
}

CFArrayRef CFPlugInFindFactoriesForPlugInTypeInPlugIn(CFUUIDRef type, CFPlugInRef plugin) {
  const auto& bundle = CoreFoundation::MutableObjectOf<Bundle>(plugin);
  CFRef<CFMutableArrayRef> factories;
  for (const auto& bytes : bundle.FactoriesFor(ObjectOf<UUID>(type).bytes())) {
    if (!factories) factories = CFRef(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    const CFRef<CFUUIDRef> factory(CoreFoundation::RefTo(new UUID(bytes)));
    CFArrayAppendValue(factories.get(), factory.get());
  }
  return factories.release();
}

void* CFPlugInInstanceCreate(CFAllocatorRef allocator, CFUUIDRef factory, CFUUIDRef type) {
  const auto function =
      Registry::Shared().FunctionOf(ObjectOf<UUID>(factory).bytes(), ObjectOf<UUID>(type).bytes());
  return function != nullptr ? function(allocator, type) : nullptr;
}

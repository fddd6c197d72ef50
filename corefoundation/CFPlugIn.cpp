// The bundles of the process, and the instances that their factories make.
#include <CoreFoundation/CFPlugIn.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

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

  // The bundle of the folder at path; null when there is none.
  Bundle* BundleAt(const std::string& path) {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    struct stat folder;
    if (stat(path.c_str(), &folder) != 0 || !S_ISDIR(folder.st_mode)) return nullptr;
    Place& place = places_[path];
    if (place.bundle == nullptr || place.device != folder.st_dev || place.number != folder.st_ino) {
      place = {folder.st_dev, folder.st_ino, BundleOf(path)};
    }
    // Of bundles with the same factory, the one that was asked for last makes the instances.
    if (place.bundle != nullptr && place.bundle != latest_) {
      for (const auto& [factory, function] : place.bundle->functions()) {
        factories_[factory] = place.bundle;
      }
      latest_ = place.bundle;
    }
    return place.bundle;
  }

  CFPlugInFactoryFunction FunctionOf(const UUIDBytes& factory, const UUIDBytes& type) {
    const std::lock_guard<std::recursive_mutex> lock(mutex_);
    const auto entry = factories_.find(factory);
    if (entry == factories_.end()) return nullptr;
    Bundle& bundle = *entry->second;
    if (!Holds(bundle.FactoriesFor(type), factory)) return nullptr;
    return reinterpret_cast<CFPlugInFactoryFunction>(bundle.FindFunction(factory));
  }

 private:
  static bool Holds(CFArrayRef factories, const UUIDBytes& factory) {
    const CFIndex count = factories != nullptr ? CFArrayGetCount(factories) : 0;
    for (CFIndex i = 0; i < count; ++i) {
      const auto uuid = static_cast<CFUUIDRef>(CFArrayGetValueAtIndex(factories, i));
      if (ObjectOf<UUID>(uuid).bytes() == factory) return true;
    }
    return false;
  }

  // What a path has led to: as long as it leads to the same folder, that has the same bundle.
  struct Place {
    dev_t device;
    ino_t number;
    Bundle* bundle;
  };

  // The bundle by the path's absolute form without links; null when that cannot be told.
  Bundle* BundleOf(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), free);
    if (!resolved) return nullptr;
    Bundle*& bundle = bundles_[resolved.get()];
    if (bundle == nullptr) bundle = new Bundle(resolved.get());
    return bundle;
  }

  std::recursive_mutex mutex_;  // code that is being loaded may come back
  std::map<std::string, Place> places_;
  std::map<std::string, Bundle*> bundles_;
  std::map<UUIDBytes, Bundle*> factories_;
  const Bundle* latest_ = nullptr;
};

}  // namespace

}  // namespace CoreFoundation

using CoreFoundation::Bundle;
using CoreFoundation::ObjectOf;
using CoreFoundation::Registry;
using CoreFoundation::UUID;

CFPlugInRef CFPlugInCreate(CFAllocatorRef /*allocator*/, CFURLRef url) {
  if (url == nullptr) return nullptr;
  const CoreFoundation::String& text = ObjectOf<CoreFoundation::URL>(url).path();
  std::string path;
  if (text.ascii() == nullptr && !GetUTF8(text, path)) return nullptr;
  const std::string& utf8 = text.ascii() != nullptr ? *text.ascii() : path;
  Bundle* const bundle = Registry::Shared().BundleAt(utf8);
  if (bundle == nullptr) return nullptr;
  bundle->Retain();
  return CoreFoundation::MutableRefTo<CFPlugInRef>(bundle);
}

CFArrayRef CFPlugInFindFactoriesForPlugInTypeInPlugIn(CFUUIDRef type, CFPlugInRef plugin) {
  const auto& bundle = CoreFoundation::MutableObjectOf<Bundle>(plugin);
  return CFRef<CFArrayRef>::Retain(bundle.FactoriesFor(ObjectOf<UUID>(type).bytes())).release();
}

void* CFPlugInInstanceCreate(CFAllocatorRef allocator, CFUUIDRef factory, CFUUIDRef type) {
  const auto function =
      Registry::Shared().FunctionOf(ObjectOf<UUID>(factory).bytes(), ObjectOf<UUID>(type).bytes());
  return function != nullptr ? function(allocator, type) : nullptr;
}

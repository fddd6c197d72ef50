#include "corefoundation/Bundle.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "corefoundation/Array.h"
#include "corefoundation/Dictionary.h"
#include "corefoundation/ObjectFile.h"
#include "corefoundation/PropertyList.h"
#include "corefoundation/String.h"
#include "util/Diagnostics.h"
#include "util/WholeFile.h"

namespace CoreFoundation {

namespace {

bool IsFile(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// The file name of path without its extension.
std::string Stem(const std::string& path) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return name.substr(0, name.rfind('.'));
}

// Empty for what is no string.
std::string TextOf(CFTypeRef value) {
  const auto string = CFCast<CFStringRef>(value);
  std::string text;
  if (string != nullptr) GetUTF8(ObjectOf<String>(string), text);
  return text;
}

// Nothing for what is no string or empty.
std::optional<UUIDBytes> UUIDOf(CFTypeRef value) {
  const auto string = CFCast<CFStringRef>(value);
  if (string == nullptr || CFStringGetLength(string) == 0) return std::nullopt;
  return ParseUUID(ObjectOf<String>(string).units());
}

}  // namespace

Bundle::Bundle(std::string path)
    : Object(Type::kBundle), path_(std::move(path)), executable_name_(Stem(path_)) {
  std::error_code error;
  const CFRef<CFTypeRef> list =
      ParseObject(Ravik::ReadWholeFile(path_ + "/Contents/Info.plist", error));
  const auto information = CFCast<CFDictionaryRef>(list.get());
  if (information != nullptr) ReadInformation(information);
}

void Bundle::ReadInformation(CFDictionaryRef information) {
  const std::string name = TextOf(CFDictionaryGetValue(information, CFSTR("CFBundleExecutable")));
  if (!name.empty()) executable_name_ = name;
  const auto dictionary = [information](CFStringRef key) {
    return CFCast<CFDictionaryRef>(CFDictionaryGetValue(information, key));
  };
  ReadFactories(dictionary(CFSTR("CFPlugInFactories")));
  ReadTypes(dictionary(CFSTR("CFPlugInTypes")));
}

void Bundle::ReadFactories(CFDictionaryRef factories) {
  if (factories == nullptr) return;
  for (const auto& [key, value] : ObjectOf<Dictionary>(factories).entries()) {
    const auto factory = UUIDOf(key.get());
    std::string name = TextOf(value.get());
    if (factory && !name.empty()) functions_.emplace(*factory, Function{std::move(name)});
  }
}

void Bundle::ReadTypes(CFDictionaryRef types) {
  if (types == nullptr) return;
  for (const auto& [key, value] : ObjectOf<Dictionary>(types).entries()) {
    const auto type = UUIDOf(key.get());
    const auto list = CFCast<CFArrayRef>(value.get());
    if (!type || list == nullptr) continue;
    for (const auto& item : ObjectOf<Array>(list).values()) {
      const auto factory = UUIDOf(item.get());
      if (!factory || functions_.count(*factory) == 0) continue;
      auto& factories = types_[*type];
      if (!factories) factories = CFRef(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
      const CFRef<CFUUIDRef> object(RefTo(new UUID(*factory)));
      CFArrayAppendValue(factories.get(), object.get());
    }
  }
}

CFArrayRef Bundle::FactoriesFor(const UUIDBytes& type) const {
  const auto factories = types_.find(type);
  return factories != types_.end() ? factories->second.get() : nullptr;
}

std::string Bundle::ExecutablePath() const {
  // A name, and no path that leads out of the bundle.
  if (executable_name_.find('/') != std::string::npos) return {};
  for (const char* folder : {"/Contents/Linux/", "/Contents/"}) {
    for (const std::string& file : {executable_name_, "lib" + executable_name_ + ".so"}) {
      std::string path = path_ + folder + file;
      if (IsFile(path)) return path;
    }
  }
  return {};
}

bool Bundle::Load() {
  if (code_ != nullptr) return true;
  const std::string executable = ExecutablePath();
  if (executable.empty()) {
    Report("the executable " + Ravik::Printable(executable_name_) + " is missing");
    return false;
  }
  if (IsCutShort(executable)) {
    Report("the executable is cut short");
    return false;
  }
  code_ = dlopen(executable.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (code_ == nullptr) Report(Ravik::Printable(dlerror()));
  return code_ != nullptr;
}

void Bundle::Report(const std::string& what) const {
  Ravik::ReportLine("CoreFoundation", "bundle " + Ravik::Printable(path_) + ": " + what);
}

void* Bundle::FindFunction(const UUIDBytes& factory) {
  Function& function = functions_.at(factory);
  if (function.code == nullptr && Load()) function.code = dlsym(code_, function.name.c_str());
  return function.code;
}

}  // namespace CoreFoundation

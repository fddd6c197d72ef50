#include "corefoundation/Preferences.h"

#include <cerrno>
#include <utility>

#include "corefoundation/Dictionary.h"
#include "corefoundation/FolderLock.h"
#include "corefoundation/ListFile.h"
#include "corefoundation/PropertyList.h"
#include "corefoundation/String.h"

namespace CoreFoundation {

namespace {

// The folder and those above it that are missing, for the user alone.
void MakeFolder(const std::string& folder) {
  if (mkdir(folder.c_str(), S_IRWXU) == 0 || errno != ENOENT) return;
  const std::size_t slash = folder.rfind('/');
  if (slash == 0 || slash == std::string::npos) return;
  MakeFolder(folder.substr(0, slash));
  mkdir(folder.c_str(), S_IRWXU);
}

bool IsSame(const struct timespec& left, const struct timespec& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

bool IsSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino &&
         left.st_size == right.st_size && IsSame(left.st_mtim, right.st_mtim) &&
         IsSame(left.st_ctim, right.st_ctim);
}

CFRef<CFMutableDictionaryRef> NewList() {
  return CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

// The dictionary in bytes, which is empty when they hold something else.
CFRef<CFDictionaryRef> ParseDictionary(const std::string& bytes) {
  const CFRef<CFTypeRef> list = ParseObject(bytes);
  const auto dictionary = CFCast<CFDictionaryRef>(list.get());
  if (dictionary == nullptr) return NewList();
  return CFRef<CFDictionaryRef>::Retain(dictionary);
}

}  // namespace

Preferences::Preferences(std::string path) : path_(std::move(path)) {}

void Preferences::Set(CFStringRef key, CFRef<CFTypeRef> value) {
  changes_.insert_or_assign(ObjectOf<String>(key).units(),
                            Change{CFRef<CFStringRef>::Retain(key), std::move(value)});
}

CFRef<CFTypeRef> Preferences::Get(CFStringRef key) {
  const auto change = changes_.find(ObjectOf<String>(key).units());
  if (change != changes_.end()) return change->second.value;
  Load();
  return CFRef<CFTypeRef>::Retain(CFDictionaryGetValue(list_.get(), key));
}

bool Preferences::Synchronise() {
  if (!changes_.empty() && !Write()) return false;
  changes_.clear();
  list_ = {};
  return true;
}

bool Preferences::Write() {
  if (path_.empty()) return false;
  const std::string folder = path_.substr(0, path_.rfind('/'));
  MakeFolder(folder);
  const FolderLock lock(folder);
  if (lock.IsHeld()) RemoveLeftovers(path_);
  std::error_code error;
  const std::string bytes = ReadListFile(path_, error);
  const bool absent = error == std::errc::no_such_file_or_directory;
  const bool no_list = error == std::errc::invalid_argument;
  // A list that may not be read is not replaced: its other keys would be lost.
  if (error && !absent && !no_list) return false;
  const Node list = NodeFromObject(Merge(ParseDictionary(bytes).get()).get());
  return list && ReplaceListFile(path_, WriteXML(list.get()));
}

CFRef<CFDictionaryRef> Preferences::Merge(CFDictionaryRef list) const {
  CFRef<CFMutableDictionaryRef> merged = NewList();
  for (const auto& [key, value] : ObjectOf<Dictionary>(list).entries()) {
    const auto change =
        changes_.find(ObjectOf<String>(static_cast<CFStringRef>(key.get())).units());
    if (change == changes_.end()) CFDictionarySetValue(merged.get(), key.get(), value.get());
  }
  for (const auto& [units, change] : changes_) {
    if (change.value) CFDictionarySetValue(merged.get(), change.key.get(), change.value.get());
  }
  return merged;
}

void Preferences::Load() {
  struct stat status = {};
  if (stat(path_.c_str(), &status) != 0) status = {};
  if (list_ && IsSameFile(status, status_)) return;
  std::error_code error;
  list_ = ParseDictionary(ReadListFile(path_, error));
  status_ = status;
}

}  // namespace CoreFoundation

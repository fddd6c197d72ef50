#include "corefoundation/Preferences.h"

#include <sys/stat.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "corefoundation/Dictionary.h"
#include "corefoundation/FolderLock.h"
#include "corefoundation/PropertyList.h"
#include "corefoundation/PropertyListCheck.h"
#include "corefoundation/String.h"
#include "util/Diagnostics.h"
#include "util/WholeFile.h"

namespace CoreFoundation {

namespace {

bool MakeOneFolder(const std::string& folder) {
  return mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
}

// The folder and those above it that are missing, for the user alone.
void MakeFolder(const std::string& folder) {
  if (MakeOneFolder(folder)) return;
  const std::size_t slash = folder.rfind('/');
  if (errno == ENOENT && slash != 0 && slash != std::string::npos) {
    MakeFolder(folder.substr(0, slash));
    if (MakeOneFolder(folder)) return;
  }
  throw std::system_error(errno, std::generic_category(), "mkdir " + Ravik::Printable(folder));
}

CFRef<CFMutableDictionaryRef> NewList() {
  return CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

}  // namespace

Preferences::Preferences(std::string path) : path_(std::move(path)) {}

void Preferences::Set(CFStringRef key, CFRef<CFTypeRef> value) {
  changes_.insert_or_assign(ObjectOf<String>(key).units(),
                            Change{CFRef<CFStringRef>::Retain(key), std::move(value)});
}

CFRef<CFTypeRef> Preferences::Get(CFStringRef key) {
  if (!changes_.empty()) {
    const auto change = changes_.find(ObjectOf<String>(key).units());
    if (change != changes_.end()) return change->second.value;
  }
  try {
    return CFRef<CFTypeRef>::Retain(CFDictionaryGetValue(Current(), key));
  } catch (const std::system_error& error) {
    Report(std::string("not read: ") + error.what());
    return {};
  }
}

bool Preferences::Synchronise() {
  try {
    if (!changes_.empty()) Write();
  } catch (const std::exception& error) {
    Report(std::string("not written: ") + error.what());
    return false;
  }
  changes_.clear();
  return true;
}

// What the file holds, which is read again unless it is provably the one that was read before and
// holds something: there is a line to be written about one that may not.
CFDictionaryRef Preferences::Current() {
  const FileStamp stamp(path_);
  if (stamp == stamp_) return list_.get();
  stamp_ = FileStamp();
  list_ = Read();
  const bool is_empty = ObjectOf<Dictionary>(list_.get()).entries().empty();
  if (!is_empty && stamp.IsUnique(path_)) stamp_ = stamp;
  return list_.get();
}

void Preferences::Write() const {
  if (path_.empty()) throw std::runtime_error("the user has no folder for settings");
  const std::string folder = path_.substr(0, path_.rfind('/'));
  MakeFolder(folder);
  const FolderLock lock(folder);
  if (lock.IsHeld()) Ravik::RemoveLeftovers(path_);
  if (lock.IsKeptByAnother()) {
    Report("written without the lock of the folder: another process has kept it for " +
           std::to_string(FolderLock::kPatience.count()) + " s");
  }
  const Node list = NodeFromObject(Merge(Read().get()).get());
  if (!list) throw std::runtime_error("there is no property list of them");
  const std::string xml = WriteXML(list.get());
  if (!IsSoundXMLList(xml)) throw std::runtime_error("they would cost too much to read");
  Ravik::ReplaceWholeFile(path_, xml);
}

// Throws std::system_error for a file that may not be read: it is not to be replaced, for its other
// keys would be lost.
CFRef<CFDictionaryRef> Preferences::Read() const {
  std::error_code error;
  const CFRef<CFTypeRef> list = ParseObject(Ravik::ReadWholeFile(path_, error));
  if (error == std::errc::no_such_file_or_directory) return NewList();
  if (error && error != std::errc::invalid_argument) throw std::system_error(error, "open");
  const auto dictionary = CFCast<CFDictionaryRef>(list.get());
  if (dictionary != nullptr) return CFRef<CFDictionaryRef>::Retain(dictionary);
  Report("empty: the file holds no dictionary of a property list");
  return NewList();
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

void Preferences::Report(const std::string& what) const {
  Ravik::ReportLine("CoreFoundation",
                    "preferences " + (path_.empty() ? "" : Ravik::Printable(path_) + ' ') + what);
}

}  // namespace CoreFoundation

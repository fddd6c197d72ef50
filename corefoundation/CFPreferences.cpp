// The application's defaults, and where they are kept.
#include <CoreFoundation/CFPreferences.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "corefoundation/Preferences.h"
#include "corefoundation/PropertyList.h"

namespace {

using CoreFoundation::Node;
using CoreFoundation::Preferences;

// The file name of the executable; empty when the system does not tell.
std::string ExecutableName() {
  constexpr std::string_view kDeleted = " (deleted)";  // appended while a newer one is installed
  char target[4096];
  const ssize_t length = readlink("/proc/self/exe", target, sizeof(target));
  if (length <= 0) return {};
  std::string_view path(target, static_cast<std::size_t>(length));
  if (path.size() > kDeleted.size() && path.substr(path.size() - kDeleted.size()) == kDeleted) {
    path.remove_suffix(kDeleted.size());
  }
  return std::string(path.substr(path.rfind('/') + 1));
}

// The folder of the user's settings (XDG base directories: a relative path does not count); empty
// when there is none. Without HOME, or a relative one, the user database tells.
std::string SettingsFolder() {
  const char* folder = std::getenv("XDG_CONFIG_HOME");
  if (folder != nullptr && folder[0] == '/') return folder;
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') {
    const struct passwd* user = getpwuid(getuid());
    home = user != nullptr ? user->pw_dir : nullptr;
  }
  return home != nullptr && home[0] == '/' ? std::string(home) + "/.config" : std::string();
}

std::mutex& PreferencesMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

// The file name of an application's defaults, without its ending; empty when it has none.
std::string FileName(CFStringRef application) {
  static const auto& own = *new std::string(ExecutableName());
  if (CFEqual(application, kCFPreferencesCurrentApplication) != 0) return own;
  char name[256];
  const bool fits = CFStringGetCString(application, name, sizeof(name), kCFStringEncodingUTF8) != 0;
  return fits && std::string_view(name).find('/') == std::string_view::npos ? name : "";
}

// The application's defaults at the place that the environment names now. The mutex is held.
Preferences& PreferencesOf(CFStringRef application) {
  // By folder and name.
  static auto& all = *new std::map<std::pair<std::string, std::string>, Preferences>;
  std::pair place(SettingsFolder(), FileName(application));
  const auto known = all.find(place);
  if (known != all.end()) return known->second;
  std::string path;
  if (!place.first.empty() && !place.second.empty()) {
    path = place.first + "/" + place.second + ".plist";
  }
  return all.try_emplace(std::move(place), path).first->second;
}

// A copy that later changes of list do not reach; null when it is no property list.
CFRef<CFTypeRef> CopyOf(CFTypeRef list) {
  const Node node = CoreFoundation::NodeFromObject(list, 1);
  if (!node) return {};
  return CoreFoundation::ObjectFromNode(node.get());
}

}  // namespace

const CFStringRef kCFPreferencesCurrentApplication = CFSTR("kCFPreferencesCurrentApplication");

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
  CFRef<CFTypeRef> copy;
  if (value != nullptr) {
    copy = CopyOf(value);
    if (!copy) return;
  }
  const std::lock_guard<std::mutex> lock(PreferencesMutex());
  PreferencesOf(application).Set(key, std::move(copy));
}

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  const std::lock_guard<std::mutex> lock(PreferencesMutex());
  return PreferencesOf(application).Get(key).release();
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
  const std::lock_guard<std::mutex> lock(PreferencesMutex());
  return PreferencesOf(application).Synchronise() ? 1 : 0;
}

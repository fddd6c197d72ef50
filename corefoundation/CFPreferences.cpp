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

// The folder of the user's settings, in two parts, the second of which is constant.
struct SettingsFolder {
  std::string_view base;
  std::string_view rest;

  std::string Path() const { return std::string(base).append(rest); }
};

// By the XDG base directories: a relative path does not count. Without HOME, or a relative one, the
// user database tells. Empty when there is none.
SettingsFolder FindSettingsFolder() {
  const char* folder = std::getenv("XDG_CONFIG_HOME");
  if (folder != nullptr && folder[0] == '/') return {folder, ""};
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] != '/') {
    const struct passwd* user = getpwuid(getuid());
    home = user != nullptr ? user->pw_dir : nullptr;
  }
  if (home == nullptr || home[0] != '/') return {};
  return {home, "/.config"};
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

// The defaults of every application and folder that was asked for.
class AllPreferences {
 public:
  Preferences& At(const SettingsFolder& folder, CFStringRef application) {
    if (latest_ != nullptr && latest_application_ == application && latest_base_ == folder.base &&
        latest_rest_.data() == folder.rest.data()) {
      return *latest_;
    }
    const std::string name = FileName(application);
    std::string path;
    if (!folder.base.empty() && !name.empty()) path = folder.Path() + "/" + name + ".plist";
    Preferences& preferences = all_.try_emplace(path, path).first->second;
    const bool is_constant = application == kCFPreferencesCurrentApplication;
    latest_ = is_constant ? &preferences : nullptr;
    latest_application_ = application;
    latest_base_ = folder.base;
    latest_rest_ = folder.rest;
    return preferences;
  }

 private:
  std::map<std::string, Preferences> all_;  // by path
  // What was asked for last, with a constant string.
  Preferences* latest_ = nullptr;
  CFStringRef latest_application_ = nullptr;
  std::string latest_base_;
  std::string_view latest_rest_;
};

// The application's defaults at the place that the environment names now. The mutex is held.
Preferences& PreferencesOf(CFStringRef application) {
  static auto& all = *new AllPreferences;
  return all.At(FindSettingsFolder(), application);
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

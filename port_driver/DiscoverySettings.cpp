// Reader of the searches' settings.
#include "port_driver/DiscoverySettings.h"

#include <algorithm>

#include "port_driver/PropertyText.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

constexpr SInt32 kShortestTimeout = 100;
constexpr SInt32 kLongestTimeout = 60000;

void Report(const std::string& name, const char* fault) {
  Ravik::ReportLine("ZIOP", name + " left out: it is no " + fault);
}

// The value of the key as a T; null if it is absent or, with a line that says it should be
// expected, of another class.
template <typename T>
T Take(CFDictionaryRef dictionary, const char* key, const char* expected) {
  const CFRef<CFStringRef> name(
      CFStringCreateWithCString(kCFAllocatorDefault, key, kCFStringEncodingUTF8));
  const CFTypeRef value = CFDictionaryGetValue(dictionary, name.get());
  const T object = CFCast<T>(value);
  if (object == nullptr && value != nullptr) {
    Report(key, expected);
  }
  return object;
}

bool TakeFlag(CFDictionaryRef dictionary, const char* key) {
  const auto flag = Take<CFBooleanRef>(dictionary, key, "boolean");
  return flag != nullptr && CFBooleanGetValue(flag) != 0;
}

std::vector<std::string> TakeTexts(CFDictionaryRef dictionary, const char* key) {
  std::vector<std::string> texts;
  const auto array = Take<CFArrayRef>(dictionary, key, "array");
  const CFIndex count = array == nullptr ? 0 : CFArrayGetCount(array);
  for (CFIndex i = 0; i < count; ++i) {
    const auto string = CFCast<CFStringRef>(CFArrayGetValueAtIndex(array, i));
    if (string == nullptr) {
      Report(key + (" entry " + std::to_string(i + 1)), "string");
    } else {
      texts.push_back(TextOf(string));
    }
  }
  return texts;
}

void TakeTimeout(CFDictionaryRef dictionary, std::chrono::milliseconds& timeout) {
  constexpr char kKey[] = "TimeoutMilliseconds";
  const auto number = Take<CFNumberRef>(dictionary, kKey, "number");
  SInt32 milliseconds = 0;
  if (number == nullptr) {
    return;
  }
  if (CFNumberGetValue(number, kCFNumberSInt32Type, &milliseconds) == 0) {
    Report(kKey, "integer of 32 bits");
    return;
  }
  timeout = std::chrono::milliseconds(std::clamp(milliseconds, kShortestTimeout, kLongestTimeout));
}

}  // namespace

DiscoverySettings DiscoverySettings::Read(CFDictionaryRef information) {
  DiscoverySettings settings;
  const auto discovery = Take<CFDictionaryRef>(information, "Discovery", "dictionary");
  if (discovery == nullptr) {
    return settings;
  }
  settings.network = TakeFlag(discovery, "Network");
  settings.queues = TakeFlag(discovery, "CUPS");
  settings.local = TakeFlag(discovery, "USB");
  settings.addresses = TakeTexts(discovery, "Addresses");
  TakeTimeout(discovery, settings.timeout);
  settings.models = TakeTexts(information, "SupportedPrinters");
  return settings;
}

}  // namespace ZIOP

// The test's side: script, log, and the user's stored printer list.
#include <stdlib.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "tests/fake_plugin/FakePluginState.h"

namespace fake_plugin {
namespace {

CFStringRef StoredListKey() {
  return CFSTR("infoPrinterList");
}

// Keeps the user's real defaults out of the tests, from the first use to the end of the process.
class TemporaryDefaults {
 public:
  TemporaryDefaults() {
    std::string folder = (std::filesystem::temp_directory_path() / "defaults-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) abort();
    folder_ = folder;
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  }

  ~TemporaryDefaults() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  TemporaryDefaults(const TemporaryDefaults&) = delete;
  TemporaryDefaults& operator=(const TemporaryDefaults&) = delete;

 private:
  std::filesystem::path folder_;
};

void StartAfresh() {
  const int live_objects = state().live_objects;
  state() = State{};
  state().live_objects = live_objects;
}

}  // namespace

State& state() {
  static State instance;
  return instance;
}

Script& script() {
  return state().script;
}

std::vector<std::string> TakeCalls() {
  return std::exchange(state().calls, {});
}

std::string TakeLog() {
  std::string log;
  for (const std::string& call : TakeCalls()) log += (log.empty() ? "" : ", ") + call;
  return log;
}

const std::string& LastPath() {
  return state().path;
}

const void* LastContext() {
  return state().context;
}

int LiveObjects() {
  return state().live_objects;
}

Session::Session() {
  static const TemporaryDefaults defaults;
  StartAfresh();
  StoreList(nullptr);
}

Session::~Session() {
  StartAfresh();
}

CFRef<CFStringRef> MakeText(const std::string& text) {
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

CFRef<CFDataRef> MakeData(const std::string& bytes) {
  return CFRef<CFDataRef>(CFDataCreate(kCFAllocatorDefault,
                                       reinterpret_cast<const UInt8*>(bytes.data()),
                                       static_cast<CFIndex>(bytes.size())));
}

CFRef<CFNumberRef> MakeNumber(int number) {
  return CFRef<CFNumberRef>(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &number));
}

CFRef<CFArrayRef> MakeArray(const std::vector<CFRef<CFTypeRef>>& objects) {
  CFRef<CFMutableArrayRef> array(
      CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
  for (const auto& object : objects) CFArrayAppendValue(array.get(), object.get());
  return array;
}

CFRef<CFDictionaryRef> MakeDictionary(const std::map<std::string, CFRef<CFTypeRef>>& entries) {
  CFRef<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  for (const auto& [key, value] : entries) {
    CFDictionarySetValue(dictionary.get(), MakeText(key).get(), value.get());
  }
  return dictionary;
}

CFRef<CFDictionaryRef> MakeRecord(const Printer& printer) {
  return MakeDictionary({{ZIO_INFO_TARGET_NAME, MakeText(printer.name)},
                         {ZIO_INFO_PRINTER_NAME, MakeText(printer.device)},
                         {ZIO_INFO_ADDRESS, MakeData(printer.address)},
                         {ZIO_INFO_IOX_TYPE, MakeNumber(printer.port_type)}});
}

CFRef<CFDictionaryRef> MakeList(const std::vector<CFRef<CFTypeRef>>& records) {
  return MakeDictionary({{ZIO_INFO_PRINTER_LIST, MakeArray(records)}});
}

void StoreList(CFTypeRef value) {
  CFPreferencesSetAppValue(StoredListKey(), value, kCFPreferencesCurrentApplication);
  CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

void StorePrinters(const std::vector<Printer>& printers) {
  std::vector<CFRef<CFTypeRef>> records;
  records.reserve(printers.size());
  for (const Printer& printer : printers) records.emplace_back(MakeRecord(printer));
  StoreList(MakeArray(records).get());
}

CFRef<CFPropertyListRef> StoredList() {
  return CFRef<CFPropertyListRef>(
      CFPreferencesCopyAppValue(StoredListKey(), kCFPreferencesCurrentApplication));
}

}  // namespace fake_plugin

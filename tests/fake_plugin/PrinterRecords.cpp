// Printer records, and the user's stored list of them.

#include "tests/fake_plugin/FakePlugin.h"

namespace fake_plugin {

CFRef<CFStringRef> MakeText(const std::string& text) {
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
}

CFRef<CFDataRef> MakeData(const std::string& bytes) {
  const auto* const data = reinterpret_cast<const UInt8*>(bytes.data());
  return CFRef<CFDataRef>(
      CFDataCreate(kCFAllocatorDefault, data, static_cast<CFIndex>(bytes.size())));
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
  CFPreferencesSetAppValue(CFSTR("infoPrinterList"), value, kCFPreferencesCurrentApplication);
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
      CFPreferencesCopyAppValue(CFSTR("infoPrinterList"), kCFPreferencesCurrentApplication));
}

}  // namespace fake_plugin

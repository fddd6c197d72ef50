// From the entries of the list to printer records.
#include "port_driver/ConfiguredPrinters.h"

#include <string>

#include "port_driver/DeviceURI.h"
#include "port_driver/DriverError.h"
#include "printer_io/ZIOPlugin.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

std::string TextOf(CFStringRef string) {
  const CFRange whole = CFRangeMake(0, CFStringGetLength(string));
  CFIndex size = 0;
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false, nullptr, 0, &size);
  std::string text(static_cast<std::size_t>(size), '\0');
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, '?', false,
                   reinterpret_cast<UInt8*>(text.data()), size, nullptr);
  return text;
}

// The string that entry has for key.
CFStringRef Take(CFDictionaryRef entry, const char* name, CFStringRef key) {
  const CFTypeRef value = CFDictionaryGetValue(entry, key);
  const CFStringRef text = CFCast<CFStringRef>(value);
  if (text == nullptr) {
    throw DriverError(DriverCode::kParameter,
                      std::string(name) + (value == nullptr ? " is missing" : " is no string"));
  }
  return text;
}

CFRef<CFDictionaryRef> MakeRecord(CFTypeRef value) {
  const CFDictionaryRef entry = CFCast<CFDictionaryRef>(value);
  if (entry == nullptr) {
    throw DriverError(DriverCode::kParameter, "it is no dictionary");
  }
  const CFStringRef target = Take(entry, ZIO_INFO_TARGET_NAME, CFSTR(ZIO_INFO_TARGET_NAME));
  const CFStringRef device = Take(entry, ZIO_INFO_PRINTER_NAME, CFSTR(ZIO_INFO_PRINTER_NAME));
  const std::string uri = TextOf(Take(entry, "DeviceURI", CFSTR("DeviceURI")));
  const bool is_local = DeviceURI::Parse(uri).isLocal();
  const CFRef<CFDataRef> address(CFDataCreate(kCFAllocatorDefault,
                                              reinterpret_cast<const UInt8*>(uri.data()),
                                              static_cast<CFIndex>(uri.size())));
  const SInt32 port_type = is_local ? ZIO_PORT_TYPE_LOCAL : ZIO_PORT_TYPE_TCPIP;
  const CFRef<CFNumberRef> type(
      CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &port_type));
  const void* keys[] = {CFSTR(ZIO_INFO_TARGET_NAME), CFSTR(ZIO_INFO_PRINTER_NAME),
                        CFSTR(ZIO_INFO_ADDRESS), CFSTR(ZIO_INFO_IOX_TYPE)};
  const void* values[] = {target, device, address.get(), type.get()};
  return CFRef<CFDictionaryRef>(CFDictionaryCreate(kCFAllocatorDefault, keys, values, 4,
                                                   &kCFTypeDictionaryKeyCallBacks,
                                                   &kCFTypeDictionaryValueCallBacks));
}

// How a line on standard error calls an entry: by its place, from 1, and its name if it has one.
std::string NameOf(CFTypeRef value, CFIndex index) {
  const CFDictionaryRef entry = CFCast<CFDictionaryRef>(value);
  const CFStringRef name =
      entry == nullptr
          ? nullptr
          : CFCast<CFStringRef>(CFDictionaryGetValue(entry, CFSTR(ZIO_INFO_TARGET_NAME)));
  return "Printers entry " + std::to_string(index + 1) +
         (name == nullptr ? "" : " \"" + Ravik::Printable(TextOf(name)) + "\"");
}

}  // namespace

void AppendConfiguredPrinters(CFDictionaryRef information, CFMutableArrayRef records) {
  const CFTypeRef value = CFDictionaryGetValue(information, CFSTR("Printers"));
  const CFArrayRef entries = CFCast<CFArrayRef>(value);
  if (entries == nullptr && value != nullptr) {
    Ravik::ReportLine("ZIOP", "Printers left out: it is no array");
  }
  const CFIndex count = entries == nullptr ? 0 : CFArrayGetCount(entries);
  for (CFIndex i = 0; i < count; ++i) {
    const CFTypeRef entry = CFArrayGetValueAtIndex(entries, i);
    try {
      CFArrayAppendValue(records, MakeRecord(entry).get());
    } catch (const DriverError& error) {
      Ravik::ReportLine("ZIOP", NameOf(entry, i) + " left out: " + error.what());
    }
  }
}

}  // namespace ZIOP

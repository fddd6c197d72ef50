// From the entries of the list to printer records.
#include "port_driver/ConfiguredPrinters.h"

#include <string>

#include "port_driver/DriverError.h"
#include "port_driver/PrinterRecord.h"
#include "port_driver/PropertyText.h"
#include "printer_io/ZIOPlugin.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

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
  const CFStringRef name = Take(entry, ZIO_INFO_TARGET_NAME, CFSTR(ZIO_INFO_TARGET_NAME));
  const CFStringRef model = Take(entry, ZIO_INFO_PRINTER_NAME, CFSTR(ZIO_INFO_PRINTER_NAME));
  return MakePrinterRecord(name, model, TextOf(Take(entry, "DeviceURI", CFSTR("DeviceURI"))));
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

#include "printer_io/ZIOSearchPrinter.h"

#include <utility>

#include "printer_io/FoundationCast.h"
#include "printer_io/StoredPrinters.h"
#include "printer_io/ZIOPlugin.h"

namespace {

// Lower-case i, unlike the plug-in's own ZIO_INFO_PRINTER_LIST.
CFStringRef StoredListKey() {
  return CFSTR("infoPrinterList");
}

CFRef<CFArrayRef> StoredList() {
  const CFRef<CFPropertyListRef> stored(
      CFPreferencesCopyAppValue(StoredListKey(), kCFPreferencesCurrentApplication));
  return CFRef<CFArrayRef>::Retain(CFCast<CFArrayRef>(stored.get()));
}

}  // namespace

ZIOSearchPrinter::ZIOSearchPrinter(const NSString* path, const NSDictionary* supported_printers)
    : port_info_(std::make_unique<MakeZIOPortInfo>(path, supported_printers)) {}

CFRef<CFArrayRef> ZIOSearchPrinter::GetPrinterList() {
  const auto list = Ravik::CastOrRaise<CFDictionaryRef>(port_info_->GetList());
  auto records =
      CFRef<CFArrayRef>::Retain(Ravik::RecordValue<CFArrayRef>(list, CFSTR(ZIO_INFO_PRINTER_LIST)));
  SavePrinterInfoList(records.get());
  return records;
}

void ZIOSearchPrinter::SavePrinterInfoList(const NSArray* records) {
  CFPreferencesSetAppValue(StoredListKey(), records, kCFPreferencesCurrentApplication);
  CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

CFRef<CFDictionaryRef> ZIOSearchPrinter::GetPrinterInfo(const NSString* name) {
  if (name == nullptr) return {};
  // The defaults give the same list until somebody stores another.
  static auto& latest = *new StoredPrinters;
  CFRef<CFArrayRef> records = StoredList();
  if (records.get() != latest.records()) latest = StoredPrinters(std::move(records));
  return CFRef<CFDictionaryRef>::Retain(latest.Find(name));
}

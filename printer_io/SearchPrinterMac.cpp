#include "printer_io/SearchPrinterMac.h"

#include <stdexcept>
#include <string>

#include "corefoundation/Foundation.h"
#include "printer_io/FoundationCast.h"
#include "printer_io/PropertyListFile.h"
#include "printer_io/ZIOPlugin.h"
#include "printer_io/ZIOSearchPrinter.h"
#include "util/CFText.h"
#include "util/Diagnostics.h"
#include "util/ZIOLibrary.h"

namespace Ravik {
namespace {

std::string RecordText(const NSDictionary* record, const NSString* key) {
  std::string text;
  if (!CopyText(RecordValue<CFStringRef>(record, key), kCFStringEncodingUTF8, text)) {
    throw std::logic_error("printer record without a name");
  }
  return text;
}

void AppendPrinter(std::vector<PrinterVO>& printers, CFTypeRef object) {
  const auto record = CastOrRaise<CFDictionaryRef>(object);
  const std::string device_name = RecordText(record, CFSTR(ZIO_INFO_PRINTER_NAME));
  const std::string printer_name = RecordText(record, CFSTR(ZIO_INFO_TARGET_NAME));
  printers.emplace_back(printer_name, device_name);
}

void ReportUnreadable(const NSString* path) {
  std::string text;
  if (!CopyText(path, kCFStringEncodingUTF8, text)) return;
  ReportLine("PrinterNativeProcess", "no property list: " + Printable(text));
}

void SearchPrinters(std::vector<PrinterVO>& printers) {
  const CFRef<CFStringRef> list_path = ZIOLibrary::GetSupportPrinterListPath();
  const CFRef<CFStringRef> plugin_path = ZIOLibrary::GetLibraryPath();
  const CFRef<CFDictionaryRef> supported_printers = ReadPropertyListFile(list_path.get());
  if (!supported_printers) ReportUnreadable(list_path.get());
  ZIOSearchPrinter search(plugin_path.get(), supported_printers.get());
  const CFRef<CFArrayRef> records = search.GetPrinterList();
  const CFIndex count = records ? CFArrayGetCount(records.get()) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    AppendPrinter(printers, CFArrayGetValueAtIndex(records.get(), i));
  }
}

}  // namespace

int ISearchPrinter::Search(std::vector<PrinterVO>& printers) {
  try {
    SearchPrinters(printers);
  } catch (const NSException&) {
    // What was appended so far is the answer.
  }
  return 0;
}

}  // namespace Ravik

// The list of reachable printers: searched by the I/O plug-in, stored in the user's defaults.
#ifndef PRINTER_IO_ZIOSEARCHPRINTER_H_
#define PRINTER_IO_ZIOSEARCHPRINTER_H_

#include <CoreFoundation/CoreFoundation.h>

#include <memory>

#include "corefoundation/Foundation.h"
#include "printer_io/MakeZIOPortInfo.h"

// A printer record is a dictionary with the ZIO_INFO_ keys; the list is stored as the plug-in made
// it, under "infoPrinterList" in the standard user defaults. Operations throw NSException for a
// value whose class is not the one that the key calls for.
class ZIOSearchPrinter {
 public:
  // Loads the plug-in at path and hands it the supported-printer dictionary. Both may be null; then
  // there is nothing to list.
  ZIOSearchPrinter(const NSString* path, const NSDictionary* supported_printers);

  virtual ~ZIOSearchPrinter() = default;

  ZIOSearchPrinter(const ZIOSearchPrinter&) = delete;
  ZIOSearchPrinter& operator=(const ZIOSearchPrinter&) = delete;

  // The plug-in's printer records, or null when it lists nothing. Replaces the stored list by them,
  // or removes it. Blocks while the plug-in searches. After an exception the stored list is as
  // before.
  CFRef<CFArrayRef> GetPrinterList();

  // Replaces the stored list; null removes it. On disk when it returns; when that
  // fails, this process goes by the new list all the same, and others by the old one.
  void SavePrinterInfoList(const NSArray* records);

  // The first stored record whose target name is name, letter case included; null for a null name
  // and when there is none. A record without a target name or an address hides all behind it.
  static CFRef<CFDictionaryRef> GetPrinterInfo(const NSString* name);

 private:
  std::unique_ptr<MakeZIOPortInfo> port_info_;
};

#endif  // PRINTER_IO_ZIOSEARCHPRINTER_H_

// Printer records, as the port-information interface lists them.
#ifndef PORT_DRIVER_PRINTERRECORD_H_
#define PORT_DRIVER_PRINTERRECORD_H_

#include <string>

#include "corefoundation/Foundation.h"

namespace ZIOP {

// What a record says, in UTF-8, but for the port type, which follows from the device URI.
struct ListedPrinter {
  std::string name;
  std::string model;  // device name
  std::string uri;
};

// A record of a printer's name, its device (model) name and its device URI. Throws DriverError for
// a URI that cannot be read.
CFRef<CFDictionaryRef> MakePrinterRecord(CFStringRef name, CFStringRef model,
                                         const std::string& uri);

// The same of texts, which are valid UTF-8 without zero bytes.
CFRef<CFDictionaryRef> MakePrinterRecord(const ListedPrinter& printer);

// What record, made by MakePrinterRecord, was made of.
ListedPrinter ReadPrinterRecord(CFDictionaryRef record);

}  // namespace ZIOP

#endif  // PORT_DRIVER_PRINTERRECORD_H_

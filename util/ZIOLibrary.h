// Where the files beside the executable are.
#ifndef UTIL_ZIOLIBRARY_H_
#define UTIL_ZIOLIBRARY_H_

#include <CoreFoundation/CoreFoundation.h>

#include "corefoundation/Foundation.h"

// Both paths begin with StdUtil::GetModuleDir; they are null if that is not valid UTF-8.
class ZIOLibrary {
 public:
  // Path of the I/O plug-in's bundle, "ZIO/ZIOP.plugin".
  static CFRef<CFStringRef> GetLibraryPath();

  // Path of the supported-printer list, "SupportPrinterList.xml".
  static CFRef<CFStringRef> GetSupportPrinterListPath();
};

#endif  // UTIL_ZIOLIBRARY_H_

// Where the files beside the executable are.
#ifndef UTIL_ZIOLIBRARY_H_
#define UTIL_ZIOLIBRARY_H_

#include <CoreFoundation/CoreFoundation.h>

#include "corefoundation/Foundation.h"

// Both paths begin with StdUtil::GetModuleDir. They are null when that is empty: a path without it
// would lead to whatever lies in the working directory, and a plug-in is code.
class ZIOLibrary {
 public:
  // Path of the I/O plug-in's bundle, "ZIO/ZIOP.plugin".
  static CFRef<CFStringRef> GetLibraryPath();

  // Path of the supported-printer list, "SupportPrinterList.xml".
  static CFRef<CFStringRef> GetSupportPrinterListPath();
};

#endif  // UTIL_ZIOLIBRARY_H_

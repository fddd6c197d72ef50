// Dictionaries that are stored as property-list files.
#ifndef PRINTER_IO_PROPERTYLISTFILE_H_
#define PRINTER_IO_PROPERTYLISTFILE_H_

#include <CoreFoundation/CoreFoundation.h>

#include "corefoundation/Foundation.h"

namespace Ravik {

// Reads a property list (XML or binary) whose top level is a dictionary; its containers are
// mutable. Null when path is null, no regular file, longer than 16 MiB or anything else. Never
// blocks on a pipe or a device.
CFRef<CFDictionaryRef> ReadPropertyListFile(const NSString* path);

}  // namespace Ravik

#endif  // PRINTER_IO_PROPERTYLISTFILE_H_

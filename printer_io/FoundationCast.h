// Class checks on objects that come from a list or from the user's defaults.
#ifndef PRINTER_IO_FOUNDATIONCAST_H_
#define PRINTER_IO_FOUNDATIONCAST_H_

#include <CoreFoundation/CoreFoundation.h>

#include "corefoundation/Foundation.h"

namespace Ravik {

// object as a T, null for null; adds no owner. Throws NSException for an object of another class,
// as sending it a message of T does.
template <typename T>
T CastOrRaise(CFTypeRef object) {
  const T result = CFCast<T>(object);
  if (result == nullptr && object != nullptr) throw NSException("value of an unexpected class");
  return result;
}

// The value under key as a T; null when it is absent or record is null. Throws as CastOrRaise.
template <typename T>
T RecordValue(const NSDictionary* record, const NSString* key) {
  return record == nullptr ? nullptr : CastOrRaise<T>(CFDictionaryGetValue(record, key));
}

}  // namespace Ravik

#endif  // PRINTER_IO_FOUNDATIONCAST_H_

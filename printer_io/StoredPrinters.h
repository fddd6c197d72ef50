// The stored printer records, found by name.
#ifndef PRINTER_IO_STOREDPRINTERS_H_
#define PRINTER_IO_STOREDPRINTERS_H_

#include "corefoundation/Foundation.h"

// Keeps the names that a search has come past, so that however many records there are, a worker
// that is kept running comes past each of them once.
class StoredPrinters {
 public:
  // Of no records.
  StoredPrinters() = default;

  // Becomes an owner of the records, which must not change and may be null.
  explicit StoredPrinters(CFRef<CFArrayRef> records);

  const NSArray* records() const { return records_.get(); }

  // The first record whose ZIO_INFO_TARGET_NAME equals the name, as long as the records live; null
  // when there is none, or one without name or address comes first. Throws NSException when one
  // that is no dictionary, or has a name that is no string, comes first.
  const NSDictionary* Find(const NSString* name);

 private:
  CFRef<CFArrayRef> records_;
  CFIndex count_ = 0;
  CFIndex next_ = 0;                       // the first record that no search has come past
  CFRef<CFMutableDictionaryRef> by_name_;  // of those before it, the first of each name
};

#endif  // PRINTER_IO_STOREDPRINTERS_H_

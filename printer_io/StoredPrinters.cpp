#include "printer_io/StoredPrinters.h"

#include <utility>

#include "printer_io/FoundationCast.h"
#include "printer_io/ZIOPlugin.h"

StoredPrinters::StoredPrinters(CFRef<CFArrayRef> records)
    : records_(std::move(records)),
      count_(records_ ? CFArrayGetCount(records_.get()) : 0),
      by_name_(CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                         &kCFTypeDictionaryValueCallBacks)) {}

const NSDictionary* StoredPrinters::Find(const NSString* name) {
  if (next_ > 0) {
    const void* const known = CFDictionaryGetValue(by_name_.get(), name);
    if (known != nullptr) return static_cast<const NSDictionary*>(known);
  }
  while (next_ < count_) {
    const auto* const record =
        Ravik::CastOrRaise<CFDictionaryRef>(CFArrayGetValueAtIndex(records_.get(), next_));
    const auto* const target = Ravik::RecordValue<CFStringRef>(record, CFSTR(ZIO_INFO_TARGET_NAME));
    if (target == nullptr) return nullptr;
    if (CFDictionaryGetValue(record, CFSTR(ZIO_INFO_ADDRESS)) == nullptr) return nullptr;
    ++next_;
    if (CFDictionaryGetValue(by_name_.get(), target) == nullptr) {
      CFDictionarySetValue(by_name_.get(), target, record);
    }
    if (CFEqual(name, target)) return record;
  }
  return nullptr;
}

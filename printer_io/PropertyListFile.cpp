#include "printer_io/PropertyListFile.h"

#include <string>
#include <system_error>

#include "util/CFText.h"
#include "util/WholeFile.h"

namespace Ravik {
namespace {

constexpr std::size_t kLongestFile = std::size_t{16} << 20U;

}  // namespace

CFRef<CFDictionaryRef> ReadPropertyListFile(const NSString* path) {
  std::string path_text;
  if (!CopyText(path, kCFStringEncodingUTF8, path_text)) return {};
  std::error_code error;
  const std::string bytes = ReadWholeFile(path_text, error);
  if (bytes.empty() || bytes.size() > kLongestFile) return {};
  const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(bytes.data()),
                                           static_cast<CFIndex>(bytes.size())));
  if (!data) return {};
  const CFRef<CFPropertyListRef> list(CFPropertyListCreateWithData(
      kCFAllocatorDefault, data.get(), kCFPropertyListMutableContainers, nullptr, nullptr));
  return CFRef<CFDictionaryRef>::Retain(CFCast<CFDictionaryRef>(list.get()));
}

}  // namespace Ravik

// URLs of files.
#include <CoreFoundation/CFURL.h>

#include "corefoundation/Foundation.h"
#include "corefoundation/URL.h"

namespace CoreFoundation {

bool URL::Equals(const Object& other) const {
  return path_.Equals(static_cast<const URL&>(other).path_);
}

}  // namespace CoreFoundation

using CoreFoundation::ObjectOf;
using CoreFoundation::RefTo;
using CoreFoundation::String;
using CoreFoundation::URL;

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef /*allocator*/, CFStringRef path,
                                       CFURLPathStyle style, Boolean /*is_directory*/) {
  const auto& text = ObjectOf<String>(path);
  if (text.size() == 0 || style != kCFURLPOSIXPathStyle) return nullptr;
  if (text.size() == 1 || text.unit(text.size() - 1) != u'/') return RefTo(new URL(text));
  const CFRef<CFStringRef> trimmed(RefTo(new String(text.units().substr(0, text.size() - 1))));
  return RefTo(new URL(ObjectOf<String>(trimmed.get())));
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* bytes,
                                                 CFIndex length, Boolean is_directory) {
  if (length < 0) return nullptr;
  const CFRef<CFStringRef> path(CoreFoundation::CreateString(std::string(bytes, bytes + length)));
  if (!path) return nullptr;
  return CFURLCreateWithFileSystemPath(allocator, path.get(), kCFURLPOSIXPathStyle, is_directory);
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  if (style != kCFURLPOSIXPathStyle) return nullptr;
  const String& path = ObjectOf<URL>(url).path();
  path.Retain();
  return RefTo(&path);
}

#include "util/ZIOLibrary.h"

#include <string>

#include "util/RavikStdUtil.h"

namespace {

CFRef<CFStringRef> PathBesideExecutable(const char* name) {
  const std::string path = Ravik::StdUtil::GetModuleDir() + name;
  return CFRef<CFStringRef>(
      CFStringCreateWithCString(kCFAllocatorDefault, path.c_str(), kCFStringEncodingUTF8));
}

}  // namespace

CFRef<CFStringRef> ZIOLibrary::GetLibraryPath() {
  return PathBesideExecutable("ZIO/ZIOP.plugin");
}

CFRef<CFStringRef> ZIOLibrary::GetSupportPrinterListPath() {
  return PathBesideExecutable("SupportPrinterList.xml");
}

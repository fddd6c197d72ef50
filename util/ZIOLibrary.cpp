#include "util/ZIOLibrary.h"

#include <string>

#include "util/RavikStdUtil.h"

namespace {

CFRef<CFStringRef> PathBesideExecutable(const char* name) {
  const std::string directory = Ravik::StdUtil::GetModuleDir();
  if (directory.empty()) return {};
  return CFRef<CFStringRef>(CFStringCreateWithCString(
      kCFAllocatorDefault, (directory + name).c_str(), kCFStringEncodingUTF8));
}

}  // namespace

CFRef<CFStringRef> ZIOLibrary::GetLibraryPath() {
  return PathBesideExecutable("ZIO/ZIOP.plugin");
}

CFRef<CFStringRef> ZIOLibrary::GetSupportPrinterListPath() {
  return PathBesideExecutable("SupportPrinterList.xml");
}

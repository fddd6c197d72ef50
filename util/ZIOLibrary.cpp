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
  static const auto& path = *new CFRef(PathBesideExecutable("ZIO/ZIOP.plugin"));
  return path;
}

CFRef<CFStringRef> ZIOLibrary::GetSupportPrinterListPath() {
  static const auto& path = *new CFRef(PathBesideExecutable("SupportPrinterList.xml"));
  return path;
}

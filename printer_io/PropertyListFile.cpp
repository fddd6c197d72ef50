#include "printer_io/PropertyListFile.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "util/CFText.h"

namespace Ravik {
namespace {

constexpr std::uintmax_t kLongestFile = std::uintmax_t{16} * 1024 * 1024;

// The file's bytes, or an empty vector.
std::vector<char> ReadRegularFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error || size > kLongestFile) return {};
  std::vector<char> bytes(static_cast<std::size_t>(size));
  std::ifstream file(path, std::ios::binary);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

}  // namespace

CFRef<CFDictionaryRef> ReadPropertyListFile(const NSString* path) {
  std::string path_text;
  if (!CopyText(path, kCFStringEncodingUTF8, path_text)) return {};
  const std::vector<char> bytes = ReadRegularFile(path_text);
  if (bytes.empty()) return {};
  const CFRef<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(bytes.data()),
                                           static_cast<CFIndex>(bytes.size())));
  if (!data) return {};
  const CFRef<CFPropertyListRef> list(CFPropertyListCreateWithData(
      kCFAllocatorDefault, data.get(), kCFPropertyListMutableContainers, nullptr, nullptr));
  return CFRef<CFDictionaryRef>::Retain(CFCast<CFDictionaryRef>(list.get()));
}

}  // namespace Ravik

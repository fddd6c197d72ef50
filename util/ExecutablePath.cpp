#include "util/ExecutablePath.h"

#include <array>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#else
#include <unistd.h>
#endif

namespace Ravik {
namespace {

constexpr std::size_t kPathBufferSize = 1024;

std::string AskPlatform() {
  std::array<char, kPathBufferSize> buffer{};
#ifdef __APPLE__
  auto size = static_cast<unsigned int>(buffer.size());
  if (_NSGetExecutablePath(buffer.data(), &size) != 0) return {};
  return buffer.data();
#else
  const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
  // A full buffer may be a path cut short.
  if (length <= 0 || static_cast<std::size_t>(length) >= buffer.size()) return {};
  return std::string(buffer.data(), static_cast<std::size_t>(length));
#endif
}

}  // namespace

const std::string& ExecutablePath() {
  static const std::string path = AskPlatform();
  return path;
}

}  // namespace Ravik

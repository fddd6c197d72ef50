#include "corefoundation/FolderLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <thread>

namespace CoreFoundation {

FolderLock::FolderLock(const std::string& folder)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr std::chrono::milliseconds kPause{5};
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (folder_) {
    is_held_ = flock(folder_.get(), LOCK_EX | LOCK_NB) == 0;
    is_kept_by_another_ = !is_held_ && (errno == EWOULDBLOCK || errno == EINTR);
    if (!is_kept_by_another_ || std::chrono::steady_clock::now() >= deadline) return;
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace CoreFoundation

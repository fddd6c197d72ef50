// Lock on a folder, held against other processes that take it.
#ifndef COREFOUNDATION_FOLDERLOCK_H_
#define COREFOUNDATION_FOLDERLOCK_H_

#include <chrono>
#include <string>

#include "util/FileDescriptor.h"

namespace CoreFoundation {

class FolderLock {
 public:
  // How long a lock that another process holds is waited for.
  static constexpr std::chrono::seconds kPatience{2};

  // Goes on without the lock when that time is over, and where the file system has none.
  explicit FolderLock(const std::string& folder);

  bool IsHeld() const { return is_held_; }

  // Whether another process kept the lock all the time.
  bool IsKeptByAnother() const { return is_kept_by_another_; }

 private:
  const Ravik::FileDescriptor folder_;  // the lock ends when it is closed
  bool is_held_ = false;
  bool is_kept_by_another_ = false;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_FOLDERLOCK_H_

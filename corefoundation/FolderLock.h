// Lock on a folder, held against other processes that take it.
#ifndef COREFOUNDATION_FOLDERLOCK_H_
#define COREFOUNDATION_FOLDERLOCK_H_

#include <string>

#include "corefoundation/FileDescriptor.h"

namespace CoreFoundation {

class FolderLock {
 public:
  // Waits for the lock at most 5 s; goes on without it then, and where the file system has none.
  explicit FolderLock(const std::string& folder);

  bool IsHeld() const { return is_held_; }

 private:
  const FileDescriptor folder_;  // the lock ends when it is closed
  bool is_held_ = false;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_FOLDERLOCK_H_

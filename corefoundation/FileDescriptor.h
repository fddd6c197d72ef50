// Owner of a file descriptor.
#ifndef COREFOUNDATION_FILEDESCRIPTOR_H_
#define COREFOUNDATION_FILEDESCRIPTOR_H_

#include <unistd.h>

namespace CoreFoundation {

class FileDescriptor {
 public:
  // descriptor is negative when opening failed.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (IsOpen()) close(descriptor_);
  }

  bool IsOpen() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

 private:
  const int descriptor_;
};

}  // namespace CoreFoundation

#endif  // COREFOUNDATION_FILEDESCRIPTOR_H_

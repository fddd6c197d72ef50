// An owned file descriptor, and what every kind of it needs.
#ifndef VIRTUAL_PRINTER_FILEDESCRIPTOR_H_
#define VIRTUAL_PRINTER_FILEDESCRIPTOR_H_

#include <unistd.h>

#include <string>
#include <utility>

namespace VirtualPrinter {

// Closes its descriptor when it goes; a negative one is none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (fd_ >= 0) close(fd_);
  }

  explicit operator bool() const { return fd_ >= 0; }
  int Get() const { return fd_; }

 private:
  int fd_ = -1;
};

// Throws the failure that errno tells as std::system_error; `what` names the failing call.
[[noreturn]] void ThrowSystemError(const std::string& what);

// Throws std::system_error.
void SetNonBlocking(const FileDescriptor& file);

}  // namespace VirtualPrinter

#endif  // VIRTUAL_PRINTER_FILEDESCRIPTOR_H_

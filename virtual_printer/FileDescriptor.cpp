// What every kind of file descriptor needs.
#include "virtual_printer/FileDescriptor.h"

#include <fcntl.h>

#include <cerrno>
#include <system_error>

namespace VirtualPrinter {

void ThrowSystemError(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void SetNonBlocking(const FileDescriptor& file) {
  const int flags = fcntl(file.get(), F_GETFL);
  if (flags < 0 || fcntl(file.get(), F_SETFL, flags | O_NONBLOCK) != 0) ThrowSystemError("fcntl");
}

}  // namespace VirtualPrinter

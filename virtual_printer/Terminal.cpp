// The local port: a pseudo-terminal.
#include "virtual_printer/Terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace VirtualPrinter {
namespace {

void MakeRaw(const std::string& device) {
  const FileDescriptor host_side(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!host_side) ThrowSystemError(device);
  termios settings{};
  if (tcgetattr(host_side.get(), &settings) != 0) ThrowSystemError("tcgetattr");
  cfmakeraw(&settings);
  if (tcsetattr(host_side.get(), TCSANOW, &settings) != 0) ThrowSystemError("tcsetattr");
}

void Link(const std::string& device, const std::string& path) {
  struct stat found {};
  const bool is_link = lstat(path.c_str(), &found) == 0 && S_ISLNK(found.st_mode);
  if (is_link && unlink(path.c_str()) != 0) ThrowSystemError("unlink " + path);
  if (symlink(device.c_str(), path.c_str()) != 0) ThrowSystemError("symlink " + path);
}

}  // namespace

Terminal::Terminal(const std::string& path)
    : printer_side_(posix_openpt(O_RDWR | O_NOCTTY)), link_(path) {
  const int fd = printer_side_.get();
  if (fd < 0 || grantpt(fd) != 0 || unlockpt(fd) != 0) ThrowSystemError("posix_openpt");
  fcntl(fd, F_SETFD, FD_CLOEXEC);
  SetNonBlocking(printer_side_);
  const char* device = ptsname(fd);
  if (device == nullptr) ThrowSystemError("ptsname");
  device_ = device;
  MakeRaw(device_);
  Link(device_, link_);
}

Terminal::~Terminal() {
  unlink(link_.c_str());
}

bool Terminal::HasHost() const {
  pollfd polled = {printer_side_.get(), POLLIN, 0};
  if (poll(&polled, 1, 0) < 0) return false;
  return (polled.revents & POLLIN) != 0 || (polled.revents & POLLHUP) == 0;
}

FileDescriptor Terminal::Connect() const {
  FileDescriptor copy(fcntl(printer_side_.get(), F_DUPFD_CLOEXEC, 0));
  if (!copy) ThrowSystemError("fcntl");
  return copy;
}

void Terminal::DropUnread() const {
  const FileDescriptor host_side(open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (host_side) tcflush(host_side.get(), TCIFLUSH);
}

}  // namespace VirtualPrinter

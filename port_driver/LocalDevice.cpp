// Opening, writing, reading and closing of a local device.
#include "port_driver/LocalDevice.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string>

#include "port_driver/DriverError.h"
#include "port_driver/DriverTrace.h"
#include "printer_io/RemoteMode.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

void CheckKind(int result, const struct stat& node, const std::string& path) {
  if (result != 0) {
    throw DriverError::System("stat " + Ravik::Printable(path), errno);
  }
  if (!S_ISCHR(node.st_mode)) {
    throw DriverError(DriverCode::kParameter, Ravik::Printable(path) + " is no character device");
  }
}

// Raw mode without echo: every byte passes as it is, and at once. A program that changes the
// settings of its own terminal would be stopped by it.
void PrepareTerminal(int file) {
  if (::tcgetsid(file) != -1) {
    throw DriverError(DriverCode::kParameter, "the device is the terminal of the process itself");
  }
  termios settings{};
  if (::tcgetattr(file, &settings) != 0) {
    throw DriverError::System("tcgetattr", errno);
  }
  ::cfmakeraw(&settings);
  if (::tcsetattr(file, TCSANOW, &settings) != 0) {
    throw DriverError::System("tcsetattr", errno);
  }
}

bool HoldsCommand(std::string_view bytes) {
  const auto same = [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; };
  return std::search(bytes.begin(), bytes.end(), std::begin(Ravik::CMD_REMOTE_START),
                     std::end(Ravik::CMD_REMOTE_START), same) != bytes.end();
}

// How many bytes a terminal has still to send; 0 for other devices.
int Unsent(int file) {
  int count = 0;
  return ::ioctl(file, TIOCOUTQ, &count) == 0 ? count : 0;
}

DriverError Gone(const std::string& why) {
  return {DriverCode::kPrinter, "the printer failed or was unplugged: " + why};
}

}  // namespace

LocalDevice::LocalDevice(const DeviceURI& uri, Waiter& waiter) : ByteStream(uri, waiter) {
  const Deadline deadline = Deadline::After(uri.budget());
  while (!(file_ = TryToOpen())) {
    if (deadline.HasPassed()) {
      throw DriverError::System("open " + Ravik::Printable(uri.path), EBUSY);
    }
    Rest();
  }
  if (::isatty(file_.get()) == 1) {
    PrepareTerminal(file_.get());
  }
}

// None when another program has the device. Looks before it opens, since opening may have effects
// on what is no device, and again at what it has opened.
Ravik::FileDescriptor LocalDevice::TryToOpen() const {
  const std::string& path = uri_.path;
  struct stat node {};
  CheckKind(::stat(path.c_str(), &node), node, path);
  Ravik::FileDescriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file) {
    if (errno == EBUSY || errno == EINTR) {
      return file;
    }
    throw DriverError::System("open " + Ravik::Printable(path), errno);
  }
  CheckKind(::fstat(file.get(), &node), node, path);
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK || errno == EINTR) {
      return {};
    }
    throw DriverError::System("flock " + Ravik::Printable(path), errno);
  }
  return file;
}

void LocalDevice::PrepareToWrite(std::string_view bytes) {
  if (!writing_ && !DropStaleBytes()) {
    throw Timeout("the printer did not stop sending");
  }
  writing_ = true;
  if (HoldsCommand(bytes)) {
    patience_ = uri_.budget();
  }
}

void LocalDevice::PrepareToRead() {
  writing_ = false;
  patience_ = uri_.budget();
}

// Takes what the printer still sends for earlier commands, until it pauses: what it owes is waited
// for, anything else is only looked for. What stays away for longer is not expected any more. False
// for a printer that does not stop.
bool LocalDevice::DropStaleBytes() {
  const Deadline end = Deadline::After(patience_ + uri_.budget());
  Deadline pause = Deadline::After(patience_);
  char dropped[4096];
  // For the trace, which would hold up the wait; of a printer that does not stop, the first.
  constexpr std::size_t kTold = 65536;
  std::string told;
  bool hasPaused = true;
  while (const std::size_t length = Receive(dropped, sizeof dropped, pause)) {
    if (IsTraced() && told.size() < kTold) {
      told.append(dropped, length);
    }
    if (end.HasPassed()) {
      hasPaused = false;
      break;
    }
    pause = NextPause();
  }
  if (!told.empty()) {
    Trace(name(), "recv", told, "nobody reads it");
  }
  if (hasPaused) {
    patience_ = {};
  }
  return hasPaused;
}

std::size_t LocalDevice::TryToSend(std::string_view bytes) {
  return Transferred("write", ::write(file_.get(), bytes.data(), bytes.size()));
}

std::size_t LocalDevice::TryToReceive(char* buffer, std::size_t capacity) {
  const std::size_t length = Transferred("read", ::read(file_.get(), buffer, capacity));
  if (length != 0) {
    patience_ = length == capacity ? Pause() : std::chrono::milliseconds(0);
  }
  return length;
}

// What result of a call says. A device that has nothing may say so with a length of 0.
std::size_t LocalDevice::Transferred(const char* call, ssize_t result) const {
  if (result > 0) {
    return static_cast<std::size_t>(result);
  }
  const int error = result == 0 ? EAGAIN : errno;
  if (error == EIO || error == ENODEV || error == ENXIO) {
    throw Gone(DriverError::System(call, error).what());
  }
  if (error != EAGAIN && error != EINTR) {
    throw DriverError::System(call, error);
  }
  CheckPresence();
  return 0;
}

void LocalDevice::CheckPresence() const {
  pollfd polled = {file_.get(), POLLIN, 0};
  if (::poll(&polled, 1, 0) == 1 && (polled.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
    throw Gone("the device is not there any more");
  }
}

void LocalDevice::Flush() {
  try {
    AwaitSent();
  } catch (...) {
    Abort();
    throw;
  }
}

void LocalDevice::AwaitSent() {
  const Deadline deadline = Deadline::After(uri_.budget());
  for (;; Rest()) {
    const bool is_ready = waiter_.Wait(file_.get(), POLLOUT, deadline);
    CheckPresence();
    if (is_ready && Unsent(file_.get()) == 0) {
      return;
    }
    if (deadline.HasPassed()) {
      throw Timeout("the printer did not take every byte");
    }
  }
}

void LocalDevice::Close() {
  Flush();
  DropStaleBytes();
}

// What a terminal has queued would also hold up its closing.
void LocalDevice::Abort() {
  ::tcflush(file_.get(), TCIOFLUSH);
  patience_ = uri_.budget();
}

}  // namespace ZIOP

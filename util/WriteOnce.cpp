#include "util/WriteOnce.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "util/FileDescriptor.h"

namespace Ravik {

namespace {

// While it exists, a write that fails raises none of its signals in this thread.
class WriteSignalHold {
 public:
  WriteSignalHold() {
    sigemptyset(&held_);
    sigaddset(&held_, SIGPIPE);
    sigaddset(&held_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &held_, &mask_);
  }
  ~WriteSignalHold() {
    TakeBack(SIGPIPE);
    TakeBack(SIGXFSZ);
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
  }
  WriteSignalHold(const WriteSignalHold&) = delete;
  WriteSignalHold& operator=(const WriteSignalHold&) = delete;

 private:
  // Takes a signal off that was not held before, and so is of this write.
  void TakeBack(int signal) {
    sigset_t pending;
    sigset_t one;
    int taken = 0;
    if (sigismember(&mask_, signal) != 0 || sigpending(&pending) != 0 ||
        sigismember(&pending, signal) != 1) {
      return;
    }
    sigemptyset(&one);
    sigaddset(&one, signal);
    sigwait(&one, &taken);
  }

  sigset_t held_{};
  sigset_t mask_{};
};

using Clock = std::chrono::steady_clock;

int Poll(pollfd& polled, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    const int count = ::poll(&polled, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
    if (count >= 0 || errno != EINTR) return count;
  }
}

// 0 when descriptor takes bytes, else an errno value.
int Await(int descriptor, Clock::time_point end) {
  pollfd polled{descriptor, POLLOUT, 0};
  const int count = Poll(polled, end);
  if (count < 0) return errno;
  if (count == 0) return EAGAIN;
  if ((polled.revents & POLLNVAL) != 0) return EBADF;
  return (polled.revents & POLLOUT) == 0 ? EPIPE : 0;
}

// A terminal that has room for one byte is ready for more, and holds up whoever writes the rest. So
// it is opened once more, not to be waited for; none for anything else, and where that is refused.
FileDescriptor OpenTerminal(int descriptor) {
  if (::isatty(descriptor) == 0) return {};
  const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
  return FileDescriptor(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

}  // namespace

int WriteOnce(int descriptor, std::string_view text, std::chrono::milliseconds patience) {
  const Clock::time_point end = Clock::now() + patience;
  const FileDescriptor terminal = OpenTerminal(descriptor);
  const int target = terminal ? terminal.get() : descriptor;
  const WriteSignalHold hold;
  while (!text.empty()) {
    if (const int error = Await(target, end); error != 0) return error;
    const ssize_t written = ::write(target, text.data(), text.size());
    if (written == 0) return EIO;  // some device that takes nothing and says nothing
    if (written > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN && Clock::now() < end) {
      ::poll(nullptr, 0, 1);  // it has room, but not for the next byte
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace Ravik

#include "util/WriteOnce.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>

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

int Poll(pollfd& polled, std::chrono::milliseconds patience) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + patience;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    const int count = ::poll(&polled, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
    if (count >= 0 || errno != EINTR) return count;
  }
}

}  // namespace

int WriteOnce(int descriptor, std::string_view text, std::chrono::milliseconds patience) {
  pollfd polled{descriptor, POLLOUT, 0};
  const int count = Poll(polled, patience);
  if (count < 0) return errno;
  if (count == 0) return EAGAIN;
  if ((polled.revents & POLLNVAL) != 0) return EBADF;
  if ((polled.revents & POLLOUT) == 0) return EPIPE;

  const WriteSignalHold hold;
  ssize_t written = 0;
  do {
    written = ::write(descriptor, text.data(), text.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) return errno;
  return static_cast<std::size_t>(written) == text.size() ? 0 : ENOSPC;
}

}  // namespace Ravik

// Lines on standard error.
#include "util/Diagnostics.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <climits>

namespace Ravik {

namespace {

// While it exists, a pipe without a reader fails this thread's writes and raises no signal.
class PipeSignalHold {
 public:
  PipeSignalHold() {
    sigemptyset(&pipe_signal_);
    sigaddset(&pipe_signal_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe_signal_, &mask_);
  }
  ~PipeSignalHold() {
    sigset_t pending;
    int signal = 0;
    if (sigismember(&mask_, SIGPIPE) == 0 && sigpending(&pending) == 0 &&
        sigismember(&pending, SIGPIPE) == 1) {
      sigwait(&pipe_signal_, &signal);
    }
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
  }
  PipeSignalHold(const PipeSignalHold&) = delete;
  PipeSignalHold& operator=(const PipeSignalHold&) = delete;

 private:
  sigset_t pipe_signal_{};
  sigset_t mask_{};
};

}  // namespace

std::string Printable(std::string_view text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string printable;
  for (const char c : text) {
    if (c >= 0x20 && c < 0x7F && c != '\\') {
      printable += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    printable += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
  }
  return printable;
}

void ReportLine(const std::string& reporter, const std::string& line) {
  const std::string text = (reporter + ": " + line).substr(0, PIPE_BUF - 1) + "\n";
  pollfd standard_error{STDERR_FILENO, POLLOUT, 0};
  if (::poll(&standard_error, 1, 0) == 1 && (standard_error.revents & POLLOUT) != 0) {
    const PipeSignalHold hold;
    // A line that cannot be written has nowhere else to go.
    static_cast<void>(!::write(STDERR_FILENO, text.data(), text.size()));
  }
}

}  // namespace Ravik

#include "printer_media/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace PrinterMedia {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t pending_signal = 0;
sigset_t mask_while_waiting;

void Remember(int signal) {
  pending_signal = signal;
}

timespec Until(Clock::time_point end) {
  const auto left = std::max(Clock::duration::zero(), end - Clock::now());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
  timespec time{};
  time.tv_sec = static_cast<time_t>(std::min<std::chrono::seconds::rep>(seconds.count(), 86400));
  time.tv_nsec = static_cast<long>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(left - seconds).count());
  return time;
}

}  // namespace

void CatchSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  sigset_t taken;
  sigemptyset(&taken);
  for (const int signal : kSignals) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action.sa_handler = Remember;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
    if (sigaction(signal, &action, nullptr) == 0) sigaddset(&taken, signal);
  }
  sigprocmask(SIG_BLOCK, &taken, &mask_while_waiting);
}

void Wait(int highest, fd_set* read, fd_set* write, Clock::time_point end) {
  const timespec time = Until(end);
  const int ready = pselect(highest + 1, read, write, nullptr, &time, &mask_while_waiting);
  if (ready < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "wait");
  if (pending_signal != 0) throw Interrupted(pending_signal);
  if (ready <= 0) {
    if (read != nullptr) FD_ZERO(read);
    if (write != nullptr) FD_ZERO(write);
  }
}

void EndBySignal(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signal);
  sigprocmask(SIG_UNBLOCK, &only, nullptr);
  raise(signal);
  std::abort();
}

}  // namespace PrinterMedia

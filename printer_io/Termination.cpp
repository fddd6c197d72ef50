#include "printer_io/Termination.h"

#include <pthread.h>
#include <signal.h>
#include <sys/time.h>
#include <ucontext.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <initializer_list>

namespace Ravik {
namespace {

// An operation forgets cancellations from before it began, so one is not enough.
constexpr int kCancellations = 18;
constexpr suseconds_t kIntervalMicroseconds = 50000;

// All that follows is the main thread's, with its handler: other threads pass a signal on to it.
pthread_t main_thread;
volatile sig_atomic_t ports_in_use = 0;
volatile sig_atomic_t pending_signal = 0;
volatile sig_atomic_t cancellations_left = kCancellations;
std::atomic<ZIOPortInterface*> cancellable{nullptr};
static_assert(decltype(cancellable)::is_always_lock_free, "a signal handler reads it");

[[noreturn]] void EndBy(int signal) {
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  sigaction(signal, &action, nullptr);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  raise(signal);
  _exit(128 + signal);  // the first process of a container survives it
}

void Catch(int signal);

// The interrupted code's mask, as it is once the handler returns, lets the timer's signal through:
// a host may have blocked it.
void CancelFromNowOn(int signal, ucontext_t& interrupted) {
  pending_signal = signal;
  Catch(SIGALRM);
  sigdelset(&interrupted.uc_sigmask, SIGALRM);
  const itimerval timer = {{0, kIntervalMicroseconds}, {0, kIntervalMicroseconds}};
  setitimer(ITIMER_REAL, &timer, nullptr);  // a mere system call, whatever the standard grants
}

void HandleOnMainThread(int signal, ucontext_t& interrupted) {
  if (ports_in_use == 0) EndBy(pending_signal != 0 ? pending_signal : signal);
  if (pending_signal == 0) {
    CancelFromNowOn(signal, interrupted);
  } else if (signal == SIGALRM) {
    cancellations_left = cancellations_left - 1;
    if (cancellations_left == 0) EndBy(pending_signal);
  }
  ZIOPortInterface* const port = cancellable;
  if (port != nullptr) port->table->cancel(port);
}

void Handle(int signal, siginfo_t* /*info*/, void* interrupted) {
  const int saved = errno;
  if (pthread_equal(pthread_self(), main_thread) != 0) {
    HandleOnMainThread(signal, *static_cast<ucontext_t*>(interrupted));
  } else {
    pthread_kill(main_thread, signal);
  }
  errno = saved;
}

void Catch(int signal) {
  struct sigaction action {};
  action.sa_sigaction = Handle;
  action.sa_flags = SA_RESTART | SA_SIGINFO;
  sigfillset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void Termination::CatchSignals() {
  main_thread = pthread_self();
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction current {};
    if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_DFL) Catch(signal);
  }
}

bool Termination::IsPending() {
  return pending_signal != 0;
}

Termination::PortUse::PortUse() {
  ports_in_use = ports_in_use + 1;
}

Termination::PortUse::~PortUse() {
  ports_in_use = ports_in_use - 1;
  if (pending_signal != 0 && ports_in_use == 0) EndBy(pending_signal);
}

void Termination::PortUse::SetCancellable(ZIOPortInterface* port) {
  cancellable = port;
}

}  // namespace Ravik

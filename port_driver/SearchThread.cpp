// Threads that no signal reaches.
#include "port_driver/SearchThread.h"

#include <csignal>
#include <string>
#include <system_error>
#include <utility>

#include "port_driver/FunctionTable.h"
#include "util/Diagnostics.h"

namespace ZIOP {
namespace {

// A new thread has the signal mask of the one that makes it.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

void ReportFailure(const char* reason) {
  Ravik::ReportLine("ZIOP", std::string("search broken off: ") + Ravik::Printable(reason));
}

}  // namespace

SearchThread::SearchThread(std::function<void()> search) {
  const SignalsBlocked guard;
  try {
    thread_ = std::thread([search = std::move(search)] {
      Guard(search, [](DriverCode, const char* reason) { ReportFailure(reason); });
    });
  } catch (const std::system_error& error) {
    ReportFailure(error.what());
  }
}

SearchThread::~SearchThread() {
  if (thread_.joinable()) {
    thread_.join();
  }
}

}  // namespace ZIOP

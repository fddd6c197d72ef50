// poll() with a deadline and an event that cancels it.
#include "port_driver/Waiter.h"

#include <pthread.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <cstdint>
#include <iterator>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

// An event that no waiter has, -1 for none: ports are opened one after the other.
std::atomic<int> spare_event{-1};

// In a child process, which would share the event and its cancellations with this one.
void ForgetSpareEvent() {
  const FileDescriptor shared(spare_event.exchange(-1));
}

bool IsSpareEventForgottenByChildren() {
  static const bool is_watched = ::pthread_atfork(nullptr, nullptr, ForgetSpareEvent) == 0;
  return is_watched;
}

}  // namespace

Waiter::Waiter() : event_(spare_event.exchange(-1)) {
  if (!event_) {
    event_ = FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  }
  if (!event_) {
    throw DriverError::System("eventfd", errno);
  }
}

Waiter::~Waiter() {
  if (IsSpareEventForgottenByChildren()) {
    Start();
    const FileDescriptor surplus(spare_event.exchange(event_.release()));
  }
}

// One that was announced but has not set the event yet is taken the next time.
void Waiter::Start() {
  if (announced_ == taken_) {
    return;
  }
  uint64_t count = 0;
  ssize_t length = 0;
  do {
    length = ::read(event_.get(), &count, sizeof count);
  } while (length < 0 && errno == EINTR);
  taken_ += length > 0 ? count : 0;
}

void Waiter::Cancel() {
  ++announced_;
  // Fails only when the event is set already, beyond counting. The operation that it ends may be
  // the last one: afterwards the waiter may be gone.
  const uint64_t one = 1;
  while (::write(event_.get(), &one, sizeof one) < 0 && errno == EINTR) {
  }
}

bool Waiter::Wait(pollfd* set, std::size_t size, const Deadline& deadline) {
  pollfd& own = set[size - 1];
  own = {event_.get(), POLLIN, 0};
  int count = 0;
  do {
    count = ::poll(set, size, deadline.PollTimeout());
  } while ((count < 0 && errno == EINTR) || (count == 0 && !deadline.HasPassed()));
  if (count < 0) {
    throw DriverError::System("poll", errno);
  }
  if (count > 0 && own.revents != 0) {
    throw DriverError(DriverCode::kCancelled, "the operation was cancelled");
  }
  return count > 0;
}

bool Waiter::Wait(int descriptor, short events, const Deadline& deadline) {
  pollfd set[] = {{descriptor, events, 0}, {}};
  return Wait(set, std::size(set), deadline);
}

void Waiter::Rest(const Deadline& deadline) {
  pollfd own;
  Wait(&own, 1, deadline);
}

}  // namespace ZIOP

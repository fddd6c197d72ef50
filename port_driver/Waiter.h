// Waiting for descriptors: every wait of a port has a deadline and can be cancelled.
#ifndef PORT_DRIVER_WAITER_H_
#define PORT_DRIVER_WAITER_H_

#include <poll.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "port_driver/Deadline.h"
#include "util/FileDescriptor.h"

namespace ZIOP {

using Ravik::FileDescriptor;

class Waiter {
 public:
  // Throws DriverError when the operating system has no descriptor left.
  Waiter();
  ~Waiter();
  Waiter(const Waiter&) = delete;
  Waiter& operator=(const Waiter&) = delete;

  // Starts an operation: cancellations that came before it are forgotten.
  void Start();

  // Ends the wait in progress, and every later one until Start. May be called from any thread, in
  // an error callback and in a signal handler too; does not block.
  void Cancel();

  // Waits until one of the set has an event, which its revents say, and returns true, or until the
  // deadline, and returns false. A passed deadline still looks once. The last one of the set, of
  // one or more, is the waiter's own, whatever the caller has put there. Throws DriverError when
  // cancelled or when poll() fails.
  bool Wait(pollfd* set, std::size_t size, const Deadline& deadline);
  bool Wait(int descriptor, short events, const Deadline& deadline);

  // Waits for nothing but the deadline.
  void Rest(const Deadline& deadline);

 private:
  FileDescriptor event_;
  std::atomic<uint64_t> announced_{0};  // cancellations, each before it sets the event
  uint64_t taken_ = 0;                  // of them, off the event
  static_assert(std::atomic<uint64_t>::is_always_lock_free, "a signal handler counts");
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_WAITER_H_

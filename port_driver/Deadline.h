// A moment on the monotonic clock by which a wait ends.
#ifndef PORT_DRIVER_DEADLINE_H_
#define PORT_DRIVER_DEADLINE_H_

#include <chrono>

namespace ZIOP {

class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Deadline(Clock::time_point moment) : moment_(moment) {}

  static Deadline After(std::chrono::milliseconds time) { return Deadline(Clock::now() + time); }

  bool HasPassed(Clock::time_point now = Clock::now()) const { return now >= moment_; }

  // What is left at now as poll() takes it: milliseconds, rounded up so that a wait never ends
  // early, 0 once the moment has passed, at most INT_MAX.
  int PollTimeout(Clock::time_point now = Clock::now()) const;

  // The earlier of this deadline and the end of an equal share of what is left, for parts tries.
  // parts is at least 1.
  Deadline Share(int parts, Clock::time_point now = Clock::now()) const;

 private:
  Clock::time_point moment_;
};

}  // namespace ZIOP

#endif  // PORT_DRIVER_DEADLINE_H_

// Arithmetic of deadlines.
#include "port_driver/Deadline.h"

#include <algorithm>
#include <limits>

namespace ZIOP {

int Deadline::PollTimeout(Clock::time_point now) const {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment_ - now).count();
  return static_cast<int>(std::clamp<long long>(left, 0, std::numeric_limits<int>::max()));
}

Deadline Deadline::Share(int parts, Clock::time_point now) const {
  return HasPassed(now) ? *this : Deadline(now + (moment_ - now) / parts);
}

}  // namespace ZIOP

// Deadlines, and waits that end by them or are cancelled.
#include "port_driver/Waiter.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>

#include <climits>

#include "port_driver/DriverError.h"

namespace ZIOP {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::milliseconds;

TEST(DeadlineTest, Arithmetic) {
  const Deadline::Clock::time_point now{};
  EXPECT_EQ(Deadline(now + milliseconds(5)).PollTimeout(now), 5);
  EXPECT_EQ(Deadline(now + microseconds(1)).PollTimeout(now), 1) << "never ends early";
  EXPECT_EQ(Deadline(now).PollTimeout(now), 0);
  EXPECT_EQ(Deadline(now - hours(1)).PollTimeout(now), 0);
  EXPECT_EQ(Deadline(now + hours(24 * 365)).PollTimeout(now), INT_MAX);
  EXPECT_FALSE(Deadline(now + microseconds(1)).HasPassed(now));
  EXPECT_TRUE(Deadline(now).HasPassed(now));
  const Deadline third = Deadline(now + milliseconds(9)).Share(3, now);
  EXPECT_EQ(third.PollTimeout(now), 3);
  EXPECT_TRUE(Deadline(now - milliseconds(9)).Share(3, now).HasPassed(now));
}

TEST(WaiterTest, EventDeadlineAndCancel) {
  Waiter waiter;
  const FileDescriptor event(::eventfd(0, EFD_CLOEXEC));
  EXPECT_FALSE(waiter.Wait(event.get(), POLLIN, Deadline::After(milliseconds(1))));
  ASSERT_EQ(::eventfd_write(event.get(), 1), 0);
  EXPECT_TRUE(waiter.Wait(event.get(), POLLIN, Deadline::After(hours(1))));
  EXPECT_TRUE(waiter.Wait(event.get(), POLLIN, Deadline::After(milliseconds(0))))
      << "a passed deadline still looks";

  waiter.Cancel();
  waiter.Cancel();
  for (int i = 0; i < 2; ++i) {
    EXPECT_THROW(waiter.Wait(event.get(), POLLIN, Deadline::After(hours(1))), DriverError);
  }
  waiter.Start();
  EXPECT_TRUE(waiter.Wait(event.get(), POLLIN, Deadline::After(hours(1))));
}

}  // namespace
}  // namespace ZIOP

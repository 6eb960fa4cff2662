#include "platform/ThreadPriority.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

namespace pelmora::platform {

TEST(ThreadPriority, isTheLowestForThatThreadAlone) {
  const int niceBefore = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
  int policy = -1;
  int nice = 0;
  long disk = 0;
  std::thread([&] {
    yieldToEverythingElse();
    policy = sched_getscheduler(0);
    nice = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    disk = syscall(SYS_ioprio_get, 1, 0);
  }).join();
  EXPECT_EQ(policy, SCHED_BATCH);
  EXPECT_EQ(nice, 19);
  EXPECT_EQ(disk >> 13, 3);  // idle
  EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), niceBefore);
}

}  // namespace pelmora::platform

#include "sources/MainTurns.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace pelmora::sources {

TEST(MainTurns, runATaskOfMainAtOnce) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  MainTurns turns(scheduler);
  bool hasRun = false;
  turns.runAndWait([&] { hasRun = true; });
  EXPECT_TRUE(hasRun);
}

TEST(MainTurns, runAWorkersTaskOnMainWhileItWaits) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  MainTurns turns(scheduler);
  bool ranOnMain = false;
  std::atomic<bool> isDone = false;
  std::thread worker([&] {
    turns.runAndWait([&] { ranOnMain = scheduler.isMainThread(); });
    EXPECT_TRUE(ranOnMain);
    isDone = true;
    scheduler.wake();
  });
  scheduler.runPostedUntil([&] { return isDone.load(); });
  worker.join();
}

TEST(MainTurns, runATaskWithoutAWaitAtOnceOnMainAndLaterForOthers) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  MainTurns turns(scheduler);
  int runs = 0;
  turns.run([&] { ++runs; });
  EXPECT_EQ(runs, 1);
  std::thread([&] { turns.run([&] { ++runs; }); }).join();
  EXPECT_EQ(runs, 1);
  scheduler.runPosted();
  EXPECT_EQ(runs, 2);
  std::thread([&] { turns.run([&] { ++runs; }); }).join();
  turns.end();
  scheduler.runPosted();
  EXPECT_EQ(runs, 2);
}

TEST(MainTurns, letWorkersGoAtTheEnd) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  std::atomic<bool> hasRun = false;
  std::thread worker;
  {
    MainTurns turns(scheduler);
    worker = std::thread([&] { turns.runAndWait([&] { hasRun = true; }); });
    turns.end();
    worker.join();
  }
  scheduler.runPosted();
  EXPECT_FALSE(hasRun);
}

}  // namespace pelmora::sources

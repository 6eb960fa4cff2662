#include "platform/linux/RunLoopScheduler.h"

#include "platform/linux/SystemClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <limits>
#include <string>
#include <vector>

namespace pelmora::platform {

namespace {

/// Longer than any test may take: what waits for it would time out.
constexpr double kForever = 3600;

struct Fixture {
  SystemClock clock;
  RunLoopScheduler scheduler{clock};
  std::string ran;

  Scheduler::Task note(char letter) {
    return [this, letter] { ran += letter; };
  }
  Scheduler::Task stop() {
    return [this] { scheduler.stop(); };
  }
};

}  // namespace

TEST(RunLoopScheduler, runsTimersInOrderAndNeverEarly) {
  Fixture fixture;
  const double start = fixture.clock.mediaTime();
  double ranAt = 0;
  fixture.scheduler.after(0.004, [&] {
    ranAt = fixture.clock.mediaTime();
    fixture.scheduler.stop();
  });
  fixture.scheduler.after(0.002, fixture.note('b'));
  fixture.scheduler.after(0.001, fixture.note('a'));
  fixture.scheduler.run();
  EXPECT_EQ(fixture.ran, "ab");
  EXPECT_GE(ranAt, start + 0.004);
}

TEST(RunLoopScheduler, keepsTheGridOfARepeatingTimer) {
  Fixture fixture;
  std::vector<double> times;
  const double start = fixture.clock.mediaTime();
  fixture.scheduler.every(0.002, [&] {
    times.push_back(fixture.clock.mediaTime());
    if (times.size() == 5) fixture.scheduler.stop();
  });
  fixture.scheduler.run();
  for (std::size_t i = 0; i < times.size(); ++i) {
    EXPECT_GE(times[i], start + 0.002 * static_cast<double>(i + 1));
  }
}

TEST(RunLoopScheduler, wakesOnceForEachGroupOfTimers) {
  Fixture fixture;
  constexpr std::uint64_t kGroups = 5;
  fixture.scheduler.every(kForever, fixture.note('x'));
  for (std::uint64_t group = 1; group <= kGroups; ++group) {
    fixture.scheduler.after(0.002 * static_cast<double>(group), [&fixture, group] {
      fixture.ran += 'a';
      fixture.scheduler.after(0, group < kGroups ? fixture.note('b') : fixture.stop());
    });
  }
  fixture.scheduler.run();
  EXPECT_EQ(std::count(fixture.ran.begin(), fixture.ran.end(), 'a'), 5);
  EXPECT_EQ(std::count(fixture.ran.begin(), fixture.ran.end(), 'b'), 4);
  EXPECT_LE(fixture.scheduler.wakeUps(), kGroups);
}

TEST(RunLoopScheduler, runsPostedTasksFromOtherThreads) {
  Fixture fixture;
  std::thread::id ranOn;
  std::thread other([&] {
    fixture.scheduler.post(fixture.note('a'));
    fixture.scheduler.post([&] {
      ranOn = std::this_thread::get_id();
      fixture.scheduler.stop();
    });
  });
  fixture.scheduler.run();
  other.join();
  EXPECT_EQ(fixture.ran, "a");
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(RunLoopScheduler, isMainOnTheThreadThatRunsIt) {
  Fixture fixture;
  EXPECT_FALSE(fixture.scheduler.isMainThread());
  std::thread main([&fixture] { fixture.scheduler.run(); });
  std::promise<bool> onMain;
  fixture.scheduler.post([&] { onMain.set_value(fixture.scheduler.isMainThread()); });
  EXPECT_TRUE(onMain.get_future().get());
  EXPECT_FALSE(fixture.scheduler.isMainThread());
  fixture.scheduler.stop();
  main.join();
}

TEST(RunLoopScheduler, isMainOnTheThreadThatSetsItUp) {
  Fixture fixture;
  fixture.scheduler.setEndOfTurn([] {});
  EXPECT_TRUE(fixture.scheduler.isMainThread());
}

TEST(RunLoopScheduler, endsATurnAfterEachTimerAndEachBatch) {
  Fixture fixture;
  fixture.scheduler.setEndOfTurn([&fixture] { fixture.ran += '.'; });
  fixture.scheduler.post(fixture.note('p'));
  fixture.scheduler.post(fixture.note('q'));
  fixture.scheduler.after(0, fixture.note('a'));
  fixture.scheduler.after(0, [&] {
    fixture.ran += 'b';
    fixture.scheduler.stop();
  });
  fixture.scheduler.run();
  EXPECT_EQ(fixture.ran, "pq.a.b.");
}

TEST(RunLoopScheduler, runsNoTimerAfterAStopButWhatWasPostedBefore) {
  Fixture fixture;
  fixture.scheduler.after(0, [&fixture] {
    fixture.scheduler.post(fixture.note('p'));
    fixture.scheduler.stop();
  });
  fixture.scheduler.after(0, fixture.note('x'));
  fixture.scheduler.run();
  EXPECT_EQ(fixture.ran, "p");
}

TEST(RunLoopScheduler, returnsAtOnceWhenItWasStoppedBefore) {
  Fixture fixture;
  fixture.scheduler.stop();
  fixture.scheduler.after(0, fixture.note('x'));
  fixture.scheduler.run();
  EXPECT_EQ(fixture.ran, "");
}

TEST(RunLoopScheduler, isStoppedFromAnotherThreadWhileItWaits) {
  Fixture fixture;
  fixture.scheduler.after(kForever, fixture.note('x'));
  std::promise<void> waiting;
  fixture.scheduler.post([&waiting] { waiting.set_value(); });
  std::thread other([&] {
    waiting.get_future().wait();
    fixture.scheduler.stop();
  });
  fixture.scheduler.run();
  other.join();
  EXPECT_EQ(fixture.ran, "");
}

TEST(RunLoopScheduler, endsASleepOnMainByAStop) {
  Fixture fixture;
  std::promise<void> asleep;
  fixture.scheduler.post([&] {
    asleep.set_value();
    fixture.scheduler.sleep(kForever);
    fixture.ran += 'a';
  });
  std::thread other([&] {
    asleep.get_future().wait();
    fixture.scheduler.stop();
  });
  fixture.scheduler.run();
  other.join();
  EXPECT_EQ(fixture.ran, "a");
  fixture.scheduler.sleep(kForever);
}

TEST(RunLoopScheduler, sleepsThroughWhatIsPosted) {
  Fixture fixture;
  double slept = 0;
  fixture.scheduler.post([&] {
    std::thread([&] { fixture.scheduler.post(fixture.stop()); }).join();
    const double before = fixture.clock.mediaTime();
    fixture.scheduler.sleep(0.002);
    slept = fixture.clock.mediaTime() - before;
  });
  fixture.scheduler.run();
  EXPECT_GE(slept, 0.002);
}

TEST(RunLoopScheduler, sleepsNotAtAllForNonsense) {
  Fixture fixture;
  fixture.scheduler.sleep(0);
  fixture.scheduler.sleep(-kForever);
  fixture.scheduler.sleep(std::numeric_limits<double>::quiet_NaN());
}

TEST(RunLoopScheduler, skipsTheTurnsThatASleepMissed) {
  Fixture fixture;
  int turns = 0;
  fixture.scheduler.every(0.001, [&] {
    ++turns;
    fixture.scheduler.sleep(0.010);
  });
  fixture.scheduler.after(0.0105, fixture.stop());
  fixture.scheduler.run();
  EXPECT_EQ(turns, 1);
}

TEST(RunLoopScheduler, takesNoTaskOnceItHasEnded) {
  Fixture fixture;
  fixture.scheduler.stop();
  fixture.scheduler.run();
  fixture.scheduler.post(fixture.note('x'));
  EXPECT_EQ(fixture.ran, "");
}

TEST(RunLoopScheduler, takesTasksFromManyThreads) {
  Fixture fixture;
  int posted = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < 50; ++turn) {
        fixture.scheduler.post([&posted] { ++posted; });
      }
    });
  }
  std::thread stopper([&] {
    for (std::thread& thread : threads) thread.join();
    fixture.scheduler.stop();
  });
  fixture.scheduler.run();
  stopper.join();
  EXPECT_EQ(posted, 200);
}

}  // namespace pelmora::platform

#include "platform/SteppedTime.h"

#include "platform/OperationQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::platform {

using testing::ElementsAre;

namespace {

struct Fixture {
  SteppedClock clock{ReferenceTime{1000}};
  SteppedScheduler scheduler{clock};
  std::string ran;
  std::vector<double> times;

  Scheduler::Task note(char letter) {
    return [this, letter] {
      ran += letter;
      times.push_back(clock.mediaTime());
    };
  }
};

}  // namespace

TEST(SteppedClock, standsStillUntilItIsMoved) {
  SteppedClock clock(ReferenceTime{1000});
  EXPECT_EQ(clock.now(), ReferenceTime{1000});
  EXPECT_EQ(clock.mediaTime(), 0);
  clock.advanceTo(2.5);
  EXPECT_EQ(clock.now(), ReferenceTime{1002.5});
  EXPECT_EQ(clock.mediaTime(), 2.5);
}

TEST(SteppedClock, neverMovesMediaTimeBackward) {
  SteppedClock clock;
  clock.advanceTo(2);
  clock.advanceTo(1);
  EXPECT_EQ(clock.mediaTime(), 2);
}

TEST(SteppedClock, setsTheWallTimeAlone) {
  SteppedClock clock(ReferenceTime{1000});
  clock.advanceTo(0.1);
  clock.setNow({500.7});
  EXPECT_EQ(clock.now(), ReferenceTime{500.7});
  EXPECT_EQ(clock.mediaTime(), 0.1);
  clock.advanceTo(1.1);
  EXPECT_EQ(clock.now(), ReferenceTime{501.7});
}

TEST(SteppedScheduler, runsWhatIsDueInOrderWithTheClockAtEachTime) {
  Fixture fixture;
  fixture.scheduler.every(0.5, fixture.note('t'));
  fixture.scheduler.after(1, fixture.note('a'));
  fixture.scheduler.after(0.25, fixture.note('b'));
  fixture.scheduler.after(1.5, fixture.note('n'));
  fixture.scheduler.advanceTo(1.25);
  EXPECT_EQ(fixture.ran, "btta");
  EXPECT_THAT(fixture.times, ElementsAre(0.25, 0.5, 1, 1));
  EXPECT_EQ(fixture.clock.mediaTime(), 1.25);
}

TEST(SteppedScheduler, runsWhatIsDueAtTheVeryTimeItAdvancesTo) {
  Fixture fixture;
  fixture.scheduler.every(0.5, fixture.note('t'));
  fixture.scheduler.advanceBy(0.5);
  EXPECT_EQ(fixture.ran, "t");
  fixture.scheduler.advanceBy(0.5);
  EXPECT_EQ(fixture.ran, "tt");
}

TEST(SteppedScheduler, runsHoursOfTurnsExactlyOnce) {
  Fixture fixture;
  int turns = 0;
  fixture.scheduler.every(0.5, [&turns] { ++turns; });
  fixture.scheduler.advanceBy(6 * 3600);
  EXPECT_EQ(turns, 43200);
}

TEST(SteppedScheduler, runsNoCancelledTimer) {
  Fixture fixture;
  const auto once = fixture.scheduler.after(1, fixture.note('a'));
  const auto repeating = fixture.scheduler.every(1, fixture.note('b'));
  fixture.scheduler.after(0.5, [&] { fixture.scheduler.cancel(once); });
  fixture.scheduler.after(1.5, [&] { fixture.scheduler.cancel(repeating); });
  fixture.scheduler.advanceTo(10);
  EXPECT_EQ(fixture.ran, "b");
}

TEST(SteppedScheduler, runsPostedTasksBeforeTimeMoves) {
  Fixture fixture;
  fixture.scheduler.after(1, [&] {
    fixture.note('a')();
    fixture.scheduler.post(fixture.note('b'));
  });
  fixture.scheduler.after(2, fixture.note('c'));
  fixture.scheduler.post([&] {
    fixture.note('p')();
    fixture.scheduler.post(fixture.note('q'));
  });
  fixture.scheduler.advanceTo(3);
  EXPECT_EQ(fixture.ran, "pqabc");
  EXPECT_THAT(fixture.times, ElementsAre(0, 0, 1, 1, 2));
}

TEST(SteppedScheduler, endsATurnAfterEachTimerAndEachBatch) {
  Fixture fixture;
  fixture.scheduler.setEndOfTurn([&fixture] { fixture.ran += '.'; });
  fixture.scheduler.post(fixture.note('p'));
  fixture.scheduler.post(fixture.note('q'));
  fixture.scheduler.after(1, fixture.note('a'));
  fixture.scheduler.after(1, fixture.note('b'));
  fixture.scheduler.advanceTo(2);
  EXPECT_EQ(fixture.ran, "pq.a.b.");
  fixture.scheduler.runPosted();
  EXPECT_EQ(fixture.ran, "pq.a.b.");
}

TEST(SteppedScheduler, movesTheClockByASleepAndIsLateAfterwards) {
  Fixture fixture;
  fixture.scheduler.every(0.5, fixture.note('t'));
  fixture.scheduler.after(0.75, [&fixture] {
    fixture.scheduler.sleep(2);
    fixture.note('s')();
  });
  fixture.scheduler.after(1, fixture.note('a'));
  fixture.scheduler.advanceTo(1);
  EXPECT_EQ(fixture.ran, "tsta");
  EXPECT_THAT(fixture.times, ElementsAre(0.5, 2.75, 2.75, 2.75));
  EXPECT_THAT(fixture.scheduler.sleeps(), ElementsAre(2));
  fixture.scheduler.advanceTo(3);
  EXPECT_EQ(fixture.ran, "tstat");
  EXPECT_EQ(fixture.times.back(), 3);
}

TEST(SteppedScheduler, letsOtherThreadsSleepNotAtAll) {
  Fixture fixture;
  std::thread([&fixture] { fixture.scheduler.sleep(1000); }).join();
  EXPECT_EQ(fixture.clock.mediaTime(), 0);
  EXPECT_TRUE(fixture.scheduler.sleeps().empty());
}

TEST(SteppedScheduler, isMainOnTheThreadThatMadeIt) {
  Fixture fixture;
  EXPECT_TRUE(fixture.scheduler.isMainThread());
  std::thread([&fixture] { EXPECT_FALSE(fixture.scheduler.isMainThread()); }).join();
}

TEST(SteppedScheduler, waitsForBackgroundWorkWithoutTimePassing) {
  class Work : public Operation {
   public:
    explicit Work(SteppedScheduler& scheduler, int& done) : _scheduler(scheduler), _done(done) {}
    void main() override {
      // The task may run when this has ended.
      _scheduler.post([&done = _done] { ++done; });
    }

   private:
    SteppedScheduler& _scheduler;
    int& _done;
  };
  Fixture fixture;
  int done = 0;
  OperationQueue queue({.maxConcurrentOperations = 2});
  for (int i = 0; i < 50; ++i) queue.addOperation(std::make_shared<Work>(fixture.scheduler, done));
  fixture.scheduler.runPostedUntil([&done] { return done == 50; });
  EXPECT_EQ(fixture.clock.mediaTime(), 0);
  std::atomic<bool> finished{false};
  std::thread waiter([&] {
    queue.waitUntilAllOperationsAreFinished();
    finished = true;
    fixture.scheduler.wake();
  });
  fixture.scheduler.runPostedUntil([&finished] { return finished.load(); });
  waiter.join();
}

}  // namespace pelmora::platform

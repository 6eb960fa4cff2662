#include "platform/TimerList.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace pelmora::platform {

namespace {

struct Fixture {
  SteppedClock clock;
  TimerList timers{clock};
  std::string ran;

  TimerList::Task note(char letter) {
    return [this, letter] { ran += letter; };
  }
  /// Runs the earliest timer at the time that it is due.
  void runNext() {
    clock.advanceTo(timers.nextDue().value());
    timers.runEarliest();
  }
};

}  // namespace

TEST(TimerList, hasNothingDueWithoutTimers) {
  EXPECT_FALSE(Fixture().timers.nextDue().has_value());
}

TEST(TimerList, runsInOrderOfTimeThenOfCreation) {
  Fixture fixture;
  fixture.timers.after(2, fixture.note('c'));
  fixture.timers.after(1, fixture.note('a'));
  fixture.timers.after(1, fixture.note('b'));
  fixture.timers.every(2, fixture.note('d'));
  fixture.timers.after(2, fixture.note('e'));
  for (int i = 0; i < 5; ++i) fixture.runNext();
  EXPECT_EQ(fixture.ran, "abcde");
  EXPECT_EQ(fixture.clock.mediaTime(), 2);
  EXPECT_EQ(fixture.timers.nextDue(), 4);
}

TEST(TimerList, forgetsAOneShotTimerOnceItHasRun) {
  Fixture fixture;
  const auto timer = fixture.timers.after(1, fixture.note('a'));
  fixture.runNext();
  EXPECT_FALSE(fixture.timers.nextDue().has_value());
  fixture.timers.cancel(timer);
  EXPECT_EQ(fixture.ran, "a");
}

TEST(TimerList, keepsTheGridForThousandsOfTurns) {
  Fixture fixture;
  constexpr double kTenth = 0.1;  // no double is a tenth: adding it up would drift
  fixture.timers.every(kTenth, [] {});
  for (int i = 1; i <= 10'000; ++i) {
    ASSERT_EQ(fixture.timers.nextDue(), i * kTenth);
    fixture.runNext();
  }
}

TEST(TimerList, skipsMissedTurns) {
  Fixture fixture;
  fixture.timers.every(0.5, fixture.note('a'));
  fixture.clock.advanceTo(3.25);
  fixture.timers.runEarliest();
  EXPECT_EQ(fixture.timers.nextDue(), 3.5);
  EXPECT_EQ(fixture.ran, "a");
}

TEST(TimerList, skipsTheTurnsThatATaskMissedByItself) {
  Fixture fixture;
  fixture.timers.every(0.5, [&fixture] { fixture.clock.advanceTo(3); });
  fixture.runNext();
  EXPECT_EQ(fixture.timers.nextDue(), 3.5);
}

TEST(TimerList, letsATaskCancelItsOwnTimerAndOthers) {
  Fixture fixture;
  TimerList::TimerId own{};
  const auto other = fixture.timers.every(2, fixture.note('x'));
  own = fixture.timers.every(1, [&] {
    fixture.timers.cancel(own);
    fixture.timers.cancel(other);
    fixture.ran += 'a';
  });
  fixture.runNext();
  EXPECT_EQ(fixture.ran, "a");
  EXPECT_FALSE(fixture.timers.nextDue().has_value());
}

TEST(TimerList, letsATaskAddTimers) {
  Fixture fixture;
  fixture.timers.after(1, [&] { fixture.timers.after(1, fixture.note('a')); });
  fixture.runNext();
  EXPECT_EQ(fixture.timers.nextDue(), 2);
  fixture.runNext();
  EXPECT_EQ(fixture.ran, "a");
}

TEST(TimerList, ignoresUnknownTimers) {
  Fixture fixture;
  fixture.timers.after(1, fixture.note('a'));
  fixture.timers.cancel(TimerList::TimerId{0});
  fixture.timers.cancel(TimerList::TimerId{99});
  EXPECT_EQ(fixture.timers.nextDue(), 1);
}

TEST(TimerList, takesNonsenseDelaysForNoneAndIntervalsForTheShortest) {
  Fixture fixture;
  for (const double nonsense : {-1.0, 0.0, std::numeric_limits<double>::quiet_NaN()}) {
    const auto once = fixture.timers.after(nonsense, [] {});
    EXPECT_EQ(fixture.timers.nextDue(), 0);
    fixture.timers.cancel(once);
    const auto repeating = fixture.timers.every(nonsense, [] {});
    EXPECT_EQ(fixture.timers.nextDue(), 0.001);
    fixture.timers.cancel(repeating);
  }
}

}  // namespace pelmora::platform

#include "host/GuiScheduler.h"

#include "platform/linux/SystemClock.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace pelmora::host {

namespace {

class GuiSchedulerTest : public testing::Test {
 protected:
  platform::Scheduler::Task note(char letter) {
    return [this, letter] { ran += letter; };
  }
  template <typename Condition>
  static void runUntil(Condition isMet) {
    while (!isMet()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QCoreApplication application{count, words};
  platform::SystemClock clock;
  GuiScheduler scheduler{clock};
  std::string ran;
};

}  // namespace

TEST_F(GuiSchedulerTest, runsWhatIsPostedInItsOrderOnMain) {
  std::thread other([this] {
    EXPECT_FALSE(scheduler.isMainThread());
    scheduler.post([this] { ran += scheduler.isMainThread() ? 'a' : '?'; });
    scheduler.post(note('b'));
  });
  runUntil([this] { return ran.size() == 2; });
  other.join();
  EXPECT_EQ(ran, "ab");
}

TEST_F(GuiSchedulerTest, runsTimersInTheirOrder) {
  scheduler.after(0.004, note('c'));
  scheduler.after(0.002, note('b'));
  scheduler.cancel(scheduler.after(0.001, note('x')));
  scheduler.after(-1, note('a'));
  runUntil([this] { return ran.size() == 3; });
  EXPECT_EQ(ran, "abc");
}

TEST_F(GuiSchedulerTest, repeatsATimerUntilItIsCancelled) {
  platform::Scheduler::TimerId timer{};
  timer = scheduler.every(0.001, [&] {
    ran += 'e';
    if (ran.size() == 3) scheduler.cancel(timer);
  });
  runUntil([this] { return ran.size() == 3; });
  scheduler.after(0.005, note('.'));
  runUntil([this] { return ran.back() == '.'; });
  EXPECT_EQ(ran, "eee.");
}

TEST_F(GuiSchedulerTest, endsATurnAfterEachTimerAndEachBatch) {
  scheduler.setEndOfTurn([this] { ran += '.'; });
  scheduler.post(note('p'));
  scheduler.post(note('p'));
  scheduler.after(0.002, note('t'));
  runUntil([this] { return ran.ends_with("t."); });
  EXPECT_EQ(ran, "pp.t.");
}

TEST_F(GuiSchedulerTest, runsNothingAfterItsEnd) {
  {
    GuiScheduler brief(clock);
    brief.post(note('x'));
    brief.after(0, note('x'));
  }
  scheduler.after(0.001, note('a'));
  runUntil([this] { return !ran.empty(); });
  EXPECT_EQ(ran, "a");
}

}  // namespace pelmora::host

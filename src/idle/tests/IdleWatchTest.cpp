#include "idle/IdleWatch.h"

#include "idle/tests/FakeInhibitor.h"
#include "platform/fake/RecordingLog.h"
#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace pelmora::idle {

namespace {

class FakeMonitor : public IdleMonitor {
 public:
  void start(std::chrono::seconds wanted, Events wantedEvents) override {
    delay = wanted;
    events = std::move(wantedEvents);
  }

  std::chrono::seconds delay{};
  Events events;
};

class FakeSaver : public Saver {
 public:
  void start(std::function<void(const std::string& how)> ended) override {
    EXPECT_EQ(_ended, nullptr) << "two at once";
    ++starts;
    _ended = std::move(ended);
  }
  void stop() override { ++stops; }
  void kill() override { ++kills; }
  void end(const std::string& how = "has ended") { std::exchange(_ended, nullptr)(how); }

  int starts = 0;
  int stops = 0;
  int kills = 0;

 private:
  std::function<void(const std::string& how)> _ended;
};

class IdleWatchTest : public testing::Test {
 protected:
  IdleWatchTest() { watch.follow(monitor); }

  InhibitorScript& addInhibitor() {
    watch.inhibitors().add(Inhibitors::Bus::session, std::make_unique<FakeInhibitor>(script));
    return script;
  }
  void hold(bool isHeld) {
    script.isHeld = isHeld;
    watch.inhibitors().tellChanged();
  }

  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  platform::RecordingLog log;
  FakeSaver saver;
  InhibitorScript script;
  IdleWatch watch{{clock, scheduler, log, saver}, std::chrono::seconds(60)};
  FakeMonitor monitor;
};

}  // namespace

TEST_F(IdleWatchTest, startsTheSaverWhenTheUserIsIdleAndEndsItOnActivity) {
  EXPECT_EQ(monitor.delay, std::chrono::seconds(60));
  monitor.events.becameIdle();
  EXPECT_EQ(saver.starts, 1);
  monitor.events.becameActive();
  EXPECT_EQ(saver.stops, 1);
  saver.end();
  scheduler.advanceBy(2 * IdleWatch::kPatience);
  EXPECT_EQ(saver.kills, 0);
  monitor.events.becameIdle();
  EXPECT_EQ(saver.starts, 2);
}

TEST_F(IdleWatchTest, killsASaverThatDoesNotEnd) {
  monitor.events.becameIdle();
  monitor.events.becameActive();
  scheduler.advanceBy(IdleWatch::kPatience);
  EXPECT_EQ(saver.kills, 1);
  monitor.events.becameIdle();
  EXPECT_EQ(saver.starts, 1) << "the first one is still there";
  saver.end("was ended by signal 9");
  EXPECT_EQ(saver.starts, 2);
  EXPECT_EQ(log.count("Pelmora: The saver was ended by signal 9"), 1U);
}

TEST_F(IdleWatchTest, startsTheSaverOneDelayAfterTheLastInhibitorHasGone) {
  addInhibitor();
  hold(true);
  monitor.events.becameIdle();
  EXPECT_EQ(log.countContaining("held off by a player"), 1U);
  scheduler.advanceBy(1000);
  EXPECT_EQ(saver.starts, 0);
  hold(false);
  scheduler.advanceBy(59);
  EXPECT_EQ(saver.starts, 0);
  scheduler.advanceBy(1);
  EXPECT_EQ(saver.starts, 1);
}

TEST_F(IdleWatchTest, asksTheInhibitorsOnceWhenTheUserBecomesIdle) {
  addInhibitor().answersAtOnce = false;
  monitor.events.becameIdle();
  ASSERT_EQ(script.asked.size(), 1U);
  EXPECT_EQ(saver.starts, 0);
  script.isHeld = true;
  script.answer();
  EXPECT_EQ(saver.starts, 0);
  scheduler.advanceBy(1000);
  EXPECT_TRUE(script.asked.empty());
}

TEST_F(IdleWatchTest, startsTheSaverThoughAnInhibitorIsSilent) {
  addInhibitor().answersAtOnce = false;
  monitor.events.becameIdle();
  scheduler.advanceBy(Inhibitors::kPatience);
  EXPECT_EQ(saver.starts, 1);
}

TEST_F(IdleWatchTest, doesNotStartAgainWhatCrashedBeforeTheUserWasActive) {
  monitor.events.becameIdle();
  saver.end("was ended by signal 11");
  scheduler.advanceBy(1000);
  EXPECT_EQ(saver.starts, 1);
  EXPECT_EQ(log.count("Pelmora: The saver was ended by signal 11"), 1U);
  monitor.events.becameActive();
  monitor.events.becameIdle();
  EXPECT_EQ(saver.starts, 2);
}

TEST_F(IdleWatchTest, countsAnewWhenItIsPostponed) {
  monitor.events.becameActive();
  watch.postpone();
  monitor.events.becameIdle();
  scheduler.advanceBy(59);
  EXPECT_EQ(saver.starts, 0);
  scheduler.advanceBy(1);
  EXPECT_EQ(saver.starts, 1);
}

TEST_F(IdleWatchTest, endsTheSaverBeforeItEndsItself) {
  bool isFinished = false;
  monitor.events.becameIdle();
  watch.finish([&] { isFinished = true; });
  EXPECT_EQ(saver.stops, 1);
  EXPECT_FALSE(isFinished);
  monitor.events.becameActive();
  saver.end();
  EXPECT_TRUE(isFinished);
  monitor.events.becameIdle();
  EXPECT_EQ(saver.starts, 1);
}

TEST_F(IdleWatchTest, killsASaverThatDoesNotEndWithIt) {
  bool isFinished = false;
  monitor.events.becameIdle();
  watch.finish([&] { isFinished = true; });
  scheduler.advanceBy(IdleWatch::kPatience);
  EXPECT_EQ(saver.kills, 1);
  saver.end();
  EXPECT_TRUE(isFinished);
}

TEST_F(IdleWatchTest, endsAtOnceWhenNoSaverRuns) {
  addInhibitor();
  hold(true);
  monitor.events.becameIdle();
  hold(false);
  bool isFinished = false;
  watch.finish([&] { isFinished = true; });
  EXPECT_TRUE(isFinished);
  scheduler.advanceBy(1000);
  EXPECT_EQ(saver.starts, 0);
}

}  // namespace pelmora::idle

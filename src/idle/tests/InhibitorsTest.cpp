#include "idle/Inhibitors.h"

#include "idle/tests/FakeInhibitor.h"
#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <memory>

namespace pelmora::idle {

namespace {

class InhibitorsTest : public testing::Test {
 protected:
  InhibitorScript& add(Inhibitors::Bus bus, bool answersAtOnce = true) {
    scripts.push_back(std::make_unique<InhibitorScript>());
    inhibitors.add(bus, std::make_unique<FakeInhibitor>(*scripts.back()));
    scripts.back()->answersAtOnce = answersAtOnce;
    return *scripts.back();
  }

  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  int changes = 0;
  std::vector<std::unique_ptr<InhibitorScript>> scripts;
  Inhibitors inhibitors{scheduler, [this] { ++changes; }};
  int answers = 0;
};

}  // namespace

TEST_F(InhibitorsTest, tellsWhetherAnyIsHeldAndByWhom) {
  InhibitorScript& film = add(Inhibitors::Bus::session);
  InhibitorScript& talk = add(Inhibitors::Bus::system);
  EXPECT_FALSE(inhibitors.isAnyHeld());
  film = {.isHeld = true, .holder = "a film", .asked = {}};
  EXPECT_TRUE(inhibitors.isAnyHeld());
  EXPECT_EQ(inhibitors.holders(), "a film");
  talk = {.isHeld = true, .holder = "a talk", .asked = {}};
  EXPECT_EQ(inhibitors.holders(), "a film, a talk");
}

TEST_F(InhibitorsTest, forgetsThoseOfABusThatHasGone) {
  add(Inhibitors::Bus::session).isHeld = true;
  add(Inhibitors::Bus::system);
  inhibitors.removeAll(Inhibitors::Bus::session);
  EXPECT_EQ(changes, 1);
  EXPECT_FALSE(inhibitors.isAnyHeld());
}

TEST_F(InhibitorsTest, answersWhenAllHaveAnswered) {
  InhibitorScript& slow = add(Inhibitors::Bus::session, false);
  add(Inhibitors::Bus::session);
  inhibitors.ask([this] { ++answers; });
  EXPECT_EQ(answers, 0);
  slow.answer();
  EXPECT_EQ(answers, 1);
  scheduler.advanceBy(2 * Inhibitors::kPatience);
  EXPECT_EQ(answers, 1);
}

TEST_F(InhibitorsTest, answersAtOnceWhereThereAreNone) {
  inhibitors.ask([this] { ++answers; });
  EXPECT_EQ(answers, 1);
}

TEST_F(InhibitorsTest, waitsNoLongerThanItHasPatience) {
  InhibitorScript& silent = add(Inhibitors::Bus::session, false);
  inhibitors.ask([this] { ++answers; });
  scheduler.advanceBy(Inhibitors::kPatience);
  EXPECT_EQ(answers, 1);
  silent.answer();
  EXPECT_EQ(answers, 1);
}

TEST_F(InhibitorsTest, aLateAnswerDoesNotCountForTheNextRound) {
  InhibitorScript& slow = add(Inhibitors::Bus::session, false);
  inhibitors.ask([] {});
  const auto late = slow.asked;
  slow.asked.clear();
  inhibitors.ask([this] { ++answers; });
  for (const auto& answer : late) answer();
  EXPECT_EQ(answers, 0);
  slow.answer();
  EXPECT_EQ(answers, 1);
}

}  // namespace pelmora::idle

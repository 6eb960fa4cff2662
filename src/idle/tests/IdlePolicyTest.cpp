#include "idle/IdlePolicy.h"

#include <gtest/gtest.h>

#include <optional>

namespace pelmora::idle {

namespace {

using Action = IdlePolicy::Action;
using State = IdlePolicy::State;

constexpr double kDelay = 60;

/// A policy whose saver runs.
IdlePolicy runningPolicy() {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(100), Action::start);
  return policy;
}

}  // namespace

TEST(IdlePolicy, startsTheSaverWhenTheUserIsIdleAndNothingIsHeld) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.state(), State::active);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.state(), State::asking);
  EXPECT_EQ(policy.wakeAt(), std::nullopt);
  EXPECT_EQ(policy.answered(0), Action::start);
  EXPECT_EQ(policy.state(), State::running);
}

TEST(IdlePolicy, endsTheSaverOnActivityAndIsThenReadyAgain) {
  IdlePolicy policy = runningPolicy();
  EXPECT_EQ(policy.becameActive(), Action::stop);
  EXPECT_EQ(policy.state(), State::ending);
  EXPECT_EQ(policy.becameActive(), Action::none);
  EXPECT_EQ(policy.saverEnded(), Action::none);
  EXPECT_EQ(policy.state(), State::active);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
}

TEST(IdlePolicy, doesNotStartWhenTheUserIsBackBeforeTheInhibitorsHaveAnswered) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.becameActive(), Action::none);
  EXPECT_EQ(policy.answered(5), Action::none);
  EXPECT_EQ(policy.state(), State::active);
}

TEST(IdlePolicy, waitsWhileAnInhibitorIsHeldAndTheWholeDelayAfterIt) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.inhibitionChanged(true, 10), Action::none);
  EXPECT_EQ(policy.answered(10), Action::none);
  EXPECT_EQ(policy.state(), State::waiting);
  EXPECT_EQ(policy.wakeAt(), std::nullopt) << "nothing to wake up for while it is held";
  EXPECT_EQ(policy.timeReached(1000), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 1000), Action::none);
  EXPECT_EQ(policy.wakeAt(), 1000 + kDelay);
  EXPECT_EQ(policy.timeReached(1000 + kDelay - 1), Action::none);
  EXPECT_EQ(policy.timeReached(1000 + kDelay), Action::start);
  EXPECT_EQ(policy.wakeAt(), std::nullopt);
}

TEST(IdlePolicy, countsTheDelayFromAnInhibitorThatWentWhileTheUserWasActive) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.inhibitionChanged(true, 0), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 50), Action::none);
  EXPECT_EQ(policy.wakeAt(), std::nullopt) << "no timer while the user is active";
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(70), Action::none);
  EXPECT_EQ(policy.wakeAt(), 50 + kDelay);
  EXPECT_EQ(policy.timeReached(50 + kDelay), Action::start);
}

TEST(IdlePolicy, doesNotWaitForAnInhibitorThatWentLongAgo) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.inhibitionChanged(true, 0), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 10), Action::none);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(10 + kDelay), Action::start);
}

TEST(IdlePolicy, waitsAnewWhenAnInhibitorReturnsWhileItWaits) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.inhibitionChanged(true, 0), Action::none);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(1), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 10), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(true, 20), Action::none);
  EXPECT_EQ(policy.wakeAt(), std::nullopt);
  EXPECT_EQ(policy.inhibitionChanged(false, 30), Action::none);
  EXPECT_EQ(policy.timeReached(10 + kDelay), Action::none);
  EXPECT_EQ(policy.wakeAt(), 30 + kDelay);
}

TEST(IdlePolicy, activityEndsTheWaiting) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.inhibitionChanged(true, 0), Action::none);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(0), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 10), Action::none);
  EXPECT_EQ(policy.becameActive(), Action::none);
  EXPECT_EQ(policy.wakeAt(), std::nullopt);
  EXPECT_EQ(policy.timeReached(1000), Action::none);
}

TEST(IdlePolicy, leavesARunningSaverAloneWhenAnInhibitorComes) {
  IdlePolicy policy = runningPolicy();
  EXPECT_EQ(policy.inhibitionChanged(true, 200), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 300), Action::none);
  EXPECT_EQ(policy.state(), State::running);
  EXPECT_EQ(policy.wakeAt(), std::nullopt);
}

TEST(IdlePolicy, doesNotStartASaverThatEndedByItselfBeforeTheUserWasActive) {
  IdlePolicy policy = runningPolicy();
  EXPECT_EQ(policy.saverEnded(), Action::none);
  EXPECT_EQ(policy.state(), State::ended);
  EXPECT_EQ(policy.becameIdle(), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(true, 200), Action::none);
  EXPECT_EQ(policy.inhibitionChanged(false, 300), Action::none);
  EXPECT_EQ(policy.timeReached(1000), Action::none);
  EXPECT_EQ(policy.becameActive(), Action::none);
  EXPECT_EQ(policy.state(), State::active);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
}

TEST(IdlePolicy, waitsForTheEndOfOneSaverBeforeItStartsTheNext) {
  IdlePolicy policy = runningPolicy();
  EXPECT_EQ(policy.becameActive(), Action::stop);
  EXPECT_EQ(policy.becameIdle(), Action::none);
  EXPECT_EQ(policy.state(), State::ending);
  EXPECT_EQ(policy.saverEnded(), Action::ask);
  EXPECT_EQ(policy.answered(300), Action::start);
}

TEST(IdlePolicy, countsTheDelayAnewWhenSomeoneSaysThatTheUserIsThere) {
  IdlePolicy policy(kDelay);
  EXPECT_EQ(policy.postponed(0), Action::none);
  EXPECT_EQ(policy.becameIdle(), Action::ask);
  EXPECT_EQ(policy.answered(30), Action::none);
  EXPECT_EQ(policy.wakeAt(), kDelay);
  EXPECT_EQ(policy.postponed(40), Action::none);
  EXPECT_EQ(policy.wakeAt(), 40 + kDelay);
}

}  // namespace pelmora::idle

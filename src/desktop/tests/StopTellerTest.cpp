#include "desktop/StopTeller.h"

#include "desktop/tests/StopFixture.h"

namespace pelmora::desktop {

class StopTellerTest : public StopFixture {
 protected:
  OnBus<StopTeller> makeTeller() {
    return {bus, [this](const auto&) { return std::make_unique<StopTeller>(inbox, pace); }};
  }
};

TEST_F(StopTellerTest, tellsAtOnce) {
  pace.interval = std::chrono::hours(1);
  OnBus<StopTeller> teller = makeTeller();
  teller.call([](StopTeller& each) { each.stopped(); });
  waitForTold(1);
}

TEST_F(StopTellerTest, tellsOnceMoreOfAllThatCameInTheInterval) {
  pace.interval = std::chrono::milliseconds(20);
  OnBus<StopTeller> teller = makeTeller();
  teller.call([](StopTeller& each) {
    for (int i = 0; i < 1000; ++i) each.stopped();
  });
  waitForTold(2);
  EXPECT_EQ(told, 2);
}

TEST_F(StopTellerTest, saysNothingUntilTheIntervalIsOver) {
  pace.interval = std::chrono::hours(1);
  OnBus<StopTeller> teller = makeTeller();
  teller.call([](StopTeller& each) {
    for (int i = 0; i < 1000; ++i) each.stopped();
  });
  settle();
  scheduler.runPosted();
  EXPECT_EQ(told, 1);
}

}  // namespace pelmora::desktop

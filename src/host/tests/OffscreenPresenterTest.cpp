#include "host/OffscreenPresenter.h"

#include "platform/SteppedTime.h"
#include "render/Snapshot.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(OffscreenPresenter, isBlackBeforeAnythingIsShown) {
  const platform::SteppedClock clock;
  OffscreenPresenter presenter(clock, {40, 30}, 2);
  EXPECT_EQ(presenter.paint(0).size(), QSize(80, 60));
  EXPECT_EQ(presenter.paint(0).pixelColor(5, 5), QColor(Qt::black));
}

TEST(OffscreenPresenter, beginsAnimationsWhenTheyAreSubmitted) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  OffscreenPresenter presenter(clock, {40, 30}, 1);
  const auto root = std::make_shared<render::Layer>();
  const auto card = std::make_shared<render::Layer>();
  root->addSublayer(card);
  render::BasicAnimation fade;
  fade.keyPath = render::KeyPath::opacity;
  fade.fromValue = 0.0;
  fade.toValue = 1.0;
  card->addAnimation(fade, "fade");
  render::LayerTree tree(clock, scheduler, root);
  tree.setPresenter(&presenter);
  clock.advanceTo(3);
  tree.commit();
  ASSERT_TRUE(presenter.snapshot());
  EXPECT_EQ(presenter.snapshot()->root.sublayers[0].animations[0].begin->time(), 3);
}

}  // namespace pelmora::host

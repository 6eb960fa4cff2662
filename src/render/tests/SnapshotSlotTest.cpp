#include "render/SnapshotSlot.h"

#include "render/tests/Stage.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

struct SnapshotSlotTest : testing::Test {
  std::shared_ptr<const Snapshot> entering() {
    stage.addLayer({{0, 0}, {9, 9}}, {5, 5})->addAnimation(fade(1), "a");
    stage.tree.commit();
    return stage.presenter.snapshots.back();
  }
  static bool hasBegun(const Snapshot& snapshot) {
    return snapshot.root.sublayers[0].animations[0].begin->isKnown();
  }

  Stage stage;
  SnapshotSlot slot{stage.clock};
};

TEST_F(SnapshotSlotTest, isEmptyAtFirst) { EXPECT_EQ(slot.newest(), nullptr); }

TEST_F(SnapshotSlotTest, keepsTheNewest) {
  const auto first = entering();
  const auto second = entering();
  slot.put(first);
  slot.put(second);
  EXPECT_EQ(slot.newest(), second);
}

TEST_F(SnapshotSlotTest, leavesBeginsToTheFramesWhileTheyAreShown) {
  slot.setShown(true);
  slot.put(entering());
  EXPECT_FALSE(hasBegun(*slot.newest()));
}

TEST_F(SnapshotSlotTest, beginsAtOnceWhatNoFrameWillShow) {
  slot.put(entering());
  EXPECT_TRUE(hasBegun(*slot.newest()));
}

TEST_F(SnapshotSlotTest, beginsWhatWasNotYetShownWhenFramesStop) {
  slot.setShown(true);
  slot.put(entering());
  slot.setShown(false);
  EXPECT_TRUE(hasBegun(*slot.newest()));
}

TEST_F(SnapshotSlotTest, isHiddenOnlyOnceItWasShown) {
  EXPECT_FALSE(slot.isHidden());
  slot.setShown(false);
  EXPECT_FALSE(slot.isHidden());
  slot.setShown(true);
  EXPECT_FALSE(slot.isHidden());
  slot.setShown(false);
  EXPECT_TRUE(slot.isHidden());
  slot.setShown(true);
  EXPECT_FALSE(slot.isHidden());
}

}  // namespace
}  // namespace pelmora::render

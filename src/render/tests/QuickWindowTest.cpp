#include "render/QuickWindow.h"

#include "render/tests/Windows.h"

#include <gtest/gtest.h>

#include <thread>

namespace pelmora::render {
namespace {

struct QuickWindowTest : testing::Test {
  QuickWindowTest() { stage.tree.setPresenter(&window); }
  ~QuickWindowTest() override { stage.tree.setPresenter(nullptr); }

  void show() {
    window.setGeometry(0, 0, 200, 100);
    window.show();
    waitUntil([this] { return window.framesDrawn() > 0; });
    settle();
  }
  /// Commits what has changed, and lets the window draw.
  void drawFrameAt(double time) {
    stage.tree.commit();
    const std::uint64_t before = window.framesDrawn();
    stage.scheduler.advanceTo(time);
    waitUntil([&] { return window.framesDrawn() > before; });
  }

  Stage stage;
  QuickWindow window{stage.clock};
};

TEST_F(QuickWindowTest, isBlackBeforeTheFirstSnapshot) {
  show();
  EXPECT_EQ(window.grabWindow().pixel(100, 50), 0xFF000000U);
}

TEST_F(QuickWindowTest, showsAPictureWhereItIs) {
  show();
  stage.addLayer({{0, 0}, {40, 20}}, {60, 70})->setContents(plainPicture(40, 20, 0xFF3366CC));
  drawFrameAt(0);
  const QImage shown = window.grabWindow();
  EXPECT_EQ(shown.pixel(60, 30), 0xFF3366CCU);
  EXPECT_EQ(shown.pixel(41, 21), 0xFF3366CCU);
  EXPECT_EQ(shown.pixel(39, 30), 0xFF000000U);
  EXPECT_EQ(shown.pixel(60, 41), 0xFF000000U);
}

TEST_F(QuickWindowTest, drawsFramesWhileSomethingMovesAndNoneAtRest) {
  show();
  addCard(stage);
  for (const double time : {0.0, 0.3, 0.9}) drawFrameAt(time);
  drawFrameAt(1.15);
  settle();
  const std::uint64_t atRest = window.framesDrawn();
  settle();
  EXPECT_EQ(window.framesDrawn(), atRest);
  EXPECT_EQ(window.grabWindow().pixel(120, 40), 0xFFFFFFFFU);
}

TEST_F(QuickWindowTest, beginsAnimationsWithTheFrameThatShowsThem) {
  show();
  stage.scheduler.advanceTo(3);
  const auto card = addCard(stage);
  drawFrameAt(3);
  stage.scheduler.advanceTo(3 + 1.15);
  EXPECT_TRUE(card->animationKeys().empty());
}

TEST_F(QuickWindowTest, drawsNothingWhileHidden) {
  const auto card = addCard(stage);
  stage.tree.commit();
  settle();
  EXPECT_EQ(window.framesDrawn(), 0U);
  stage.scheduler.advanceTo(1.15);
  EXPECT_TRUE(card->animationKeys().empty());
}

TEST_F(QuickWindowTest, showsTheSameAgainAfterTheSceneGraphWasLost) {
  show();
  stage.addLayer({{0, 0}, {40, 20}}, {60, 70})->setContents(plainPicture(40, 20, 0xFF3366CC));
  drawFrameAt(0);
  const QImage before = window.grabWindow();
  ASSERT_EQ(before.pixel(60, 30), 0xFF3366CCU);
  window.setPersistentSceneGraph(false);
  window.setPersistentGraphics(false);
  window.hide();
  window.releaseResources();
  settle();
  const std::uint64_t drawn = window.framesDrawn();
  window.show();
  waitUntil([&] { return window.framesDrawn() > drawn; });
  EXPECT_EQ(window.grabWindow(), before);
}

TEST_F(QuickWindowTest, takesSnapshotsFromAnotherThread) {
  show();
  addCard(stage);
  stage.tree.setPresenter(&stage.presenter);
  stage.tree.commit();
  const std::uint64_t drawn = window.framesDrawn();
  std::thread([this] { window.submit(stage.presenter.snapshots.back()); }).join();
  waitUntil([&] { return window.framesDrawn() > drawn; });
}

TEST(QuickWindow, mayGoWhileItIsMoving) {
  Stage stage;
  {
    QuickWindow window(stage.clock);
    stage.tree.setPresenter(&window);
    window.setGeometry(0, 0, 200, 100);
    window.show();
    addCard(stage);
    stage.tree.commit();
    waitUntil([&] { return window.framesDrawn() > 1; });
    stage.tree.setPresenter(nullptr);
  }
  settle();
  EXPECT_TRUE(QGuiApplication::allWindows().isEmpty());
}

}  // namespace
}  // namespace pelmora::render

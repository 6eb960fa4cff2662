#include "render/RasterWindow.h"

#include "render/tests/Windows.h"

#include <gtest/gtest.h>

#include <QScreen>

#include <thread>

namespace pelmora::render {
namespace {

struct RasterWindowTest : testing::Test {
  RasterWindowTest() { stage.tree.setPresenter(&window); }
  ~RasterWindowTest() override { stage.tree.setPresenter(nullptr); }

  void show() {
    window.setGeometry(0, 0, 200, 100);
    window.show();
    waitUntil([this] { return window.isExposed(); });
    QCoreApplication::processEvents();
  }
  /// Lets the window draw what it has arranged, at the present stepped time.
  void drawNextFrame() {
    const std::uint64_t before = window.framesDrawn();
    waitUntil([&] { return window.framesDrawn() > before || !window.isFrameDue(); });
  }

  Stage stage;
  RasterWindow window{stage.clock};
};

TEST_F(RasterWindowTest, paintsItselfBlackBeforeTheFirstSnapshot) {
  show();
  EXPECT_GE(window.framesDrawn(), 1U);
  EXPECT_FALSE(window.isFrameDue());
}

TEST_F(RasterWindowTest, drawsFramesWhileSomethingMovesAndNoneAtRest) {
  show();
  addCard(stage);
  stage.tree.commit();
  waitUntil([this] { return window.isFrameDue(); });
  for (const double time : {0.3, 0.9}) {
    const std::uint64_t before = window.framesDrawn();
    stage.scheduler.advanceTo(time);
    drawNextFrame();
    EXPECT_GT(window.framesDrawn(), before);
    EXPECT_TRUE(window.isFrameDue());
  }
  stage.scheduler.advanceTo(1.15);
  waitUntil([this] { return !window.isFrameDue(); });
  QCoreApplication::processEvents();
  const std::uint64_t atRest = window.framesDrawn();
  settle();
  EXPECT_EQ(window.framesDrawn(), atRest);
  EXPECT_FALSE(window.isFrameDue());
}

TEST_F(RasterWindowTest, beginsAnimationsWithTheFrameThatShowsThem) {
  show();
  stage.scheduler.advanceTo(3);
  const auto card = addCard(stage);
  stage.tree.commit();
  waitUntil([this] { return window.isFrameDue(); });
  stage.scheduler.advanceTo(3 + 1.15);
  EXPECT_TRUE(card->animationKeys().empty());
}

TEST_F(RasterWindowTest, drawsNothingWhileHidden) {
  const auto card = addCard(stage);
  stage.tree.commit();
  settle();
  EXPECT_EQ(window.framesDrawn(), 0U);
  EXPECT_FALSE(window.isFrameDue());
  stage.scheduler.advanceTo(1.15);
  EXPECT_TRUE(card->animationKeys().empty());
}

TEST_F(RasterWindowTest, stopsFramesWhenItIsHidden) {
  show();
  addCard(stage);
  stage.tree.commit();
  waitUntil([this] { return window.isFrameDue(); });
  window.hide();
  waitUntil([this] { return !window.isExposed(); });
  QCoreApplication::processEvents();
  EXPECT_FALSE(window.isFrameDue());
}

TEST_F(RasterWindowTest, showsWhatTheCompositorPaints) {
  show();
  stage.addLayer({{0, 0}, {200, 100}}, {100, 50})->setContents(plainPicture(200, 100, 0xFF3366CC));
  stage.tree.commit();
  const std::uint64_t before = window.framesDrawn();
  waitUntil([&] { return window.framesDrawn() > before; });
  const QImage grabbed = window.screen()->grabWindow(window.winId()).toImage();
  EXPECT_EQ(grabbed.pixel(100, 50), 0xFF3366CCU);
}

TEST_F(RasterWindowTest, repaintsWhenItsSizeChanges) {
  show();
  const std::uint64_t before = window.framesDrawn();
  window.resize(300, 150);
  waitUntil([&] { return window.framesDrawn() > before; });
  EXPECT_FALSE(window.isFrameDue());
}

TEST_F(RasterWindowTest, takesSnapshotsFromAnotherThread) {
  show();
  addCard(stage);
  stage.tree.setPresenter(&stage.presenter);
  stage.tree.commit();
  std::thread([this] { window.submit(stage.presenter.snapshots.back()); }).join();
  waitUntil([this] { return window.isFrameDue(); });
}

}  // namespace
}  // namespace pelmora::render

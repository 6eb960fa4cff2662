#include "render/SoftwareCompositor.h"

#include "render/tests/Stage.h"
#include "shared/Random.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pelmora::render {
namespace {

const Size kStage{160, 120};

QImage gradient(int width, int height, int seed) {
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      image.setPixel(x, y, qRgb((x * 5 + seed * 40) % 256, y * 255 / height, seed * 30 % 256));
    }
  }
  return image;
}

struct SoftwareCompositorTest : testing::Test {
  std::shared_ptr<Layer> addCard(const Point& from, const Point& to, double tilt,
                                 Size size = {70, 50}) {
    auto card = stage.addLayer({{0, 0}, size}, to);
    card->setContents(
        gradient(static_cast<int>(size.width), static_cast<int>(size.height), ++_count));
    card->setShadowOffset({-3, -3});
    card->setShadowRadius(4);
    card->setShadowOpacity(0.75);
    startEntrance(*card, from, to, tilt);
    return card;
  }
  /// What a compositor without a past paints.
  QImage fresh(double time) const {
    QImage image(target.size(), QImage::Format_RGB32);
    SoftwareCompositor().paint(image, stage.latest(), time);
    return image;
  }
  QRegion paint() { return compositor.paint(target, stage.latest(), stage.clock.mediaTime()); }
  void frameAt(double time) {
    stage.scheduler.advanceTo(time);
    stage.showFrame();
    paint();
  }

  Stage stage{kStage};
  SoftwareCompositor compositor;
  QImage target{160, 120, QImage::Format_RGB32};

 private:
  int _count = 0;
};

TEST_F(SoftwareCompositorTest, paintsTheSameWhateverWasPaintedBefore) {
  std::vector<std::shared_ptr<Layer>> cards;
  srandom(3);
  for (int turn = 0; turn < 7; ++turn) {
    const auto draw = [] {
      return Point{randomDoubleBetween(30, 130), randomDoubleBetween(30, 90)};
    };
    cards.push_back(addCard(draw(), draw(), randomDoubleBetween(-0.2, 0.2)));
    if (cards.size() > 3) {
      cards.front()->removeFromSuperlayer();
      cards.erase(cards.begin());
    }
    for (int frame = 0; frame < 6; ++frame) {
      frameAt(turn * 1.0 + frame * 0.23);  // the next enters before this has come to rest
      ASSERT_EQ(target, fresh(stage.clock.mediaTime())) << turn << " " << frame;
    }
  }
}

TEST_F(SoftwareCompositorTest, doesNotJumpWhenACardComesToRest) {
  addCard({40, 40}, {90, 60}, 0.15);
  frameAt(0);
  frameAt(1.15 - 1e-9);
  const QImage moving = target;
  frameAt(1.15);
  EXPECT_EQ(target, moving);
  frameAt(5);
  EXPECT_EQ(target, moving);
}

TEST_F(SoftwareCompositorTest, writesNothingAtRest) {
  addCard({40, 40}, {90, 60}, 0.15);
  frameAt(0);
  frameAt(1.2);
  frameAt(1.3);
  EXPECT_TRUE(paint().isEmpty());
}

TEST_F(SoftwareCompositorTest, writesOnlyWhereSomethingMoved) {
  addCard({120, 30}, {120, 30}, 0);
  frameAt(0);
  frameAt(2);
  addCard({40, 90}, {40, 90}, 0, {20, 10});
  stage.showFrame();
  stage.scheduler.advanceTo(2.1);
  const QRegion written = paint();
  EXPECT_FALSE(written.isEmpty());
  EXPECT_FALSE(written.intersects(QRect(80, 60, 80, 60)));
}

TEST_F(SoftwareCompositorTest, repairsOnlyWhatARemovedCardLeaves) {
  const auto removed = addCard({40, 90}, {40, 90}, 0.1, {30, 20});
  addCard({60, 80}, {60, 80}, -0.1);
  addCard({120, 30}, {120, 30}, 0.1);
  frameAt(0);
  frameAt(2);
  removed->removeFromSuperlayer();
  stage.tree.commit();
  const QRegion written = paint();
  EXPECT_FALSE(written.intersects(QRect(90, 60, 70, 60)));
  EXPECT_EQ(target, fresh(2));
}

TEST_F(SoftwareCompositorTest, paintsEverythingWhenTheTargetIsAnother) {
  addCard({40, 40}, {90, 60}, 0.15);
  frameAt(0);
  frameAt(2);
  target.fill(Qt::white);
  compositor.invalidate();
  EXPECT_EQ(paint(), QRegion(target.rect()));
  EXPECT_EQ(target, fresh(2));
}

TEST_F(SoftwareCompositorTest, followsTheSizeOfTheTarget) {
  addCard({40, 40}, {90, 60}, 0.15);
  frameAt(0);
  frameAt(2);
  target = QImage(90, 70, QImage::Format_RGB32);
  compositor.invalidate();
  paint();
  EXPECT_EQ(target, fresh(2));
}

TEST_F(SoftwareCompositorTest, repaintsInTheOrderOfZPositions) {
  const auto first = addCard({60, 60}, {60, 60}, 0.1);
  const auto second = addCard({80, 60}, {80, 60}, -0.1);
  frameAt(0);
  frameAt(2);
  const QImage before = target;
  first->setZPosition(1);
  frameAt(2);
  EXPECT_NE(target, before);
  EXPECT_EQ(target, fresh(2));
  first->setZPosition(0);
  second->setOpacity(0.5);
  frameAt(2);
  EXPECT_EQ(target, fresh(2));
}

class Painter : public LayerDelegate {
 public:
  void drawLayer(Layer* layer, LayerContext& context) override {
    context.fillRect(layer->bounds(), color);
  }
  Color color;
};

TEST_F(SoftwareCompositorTest, paintsTheRootsFillsBelowAll) {
  Painter painter;
  painter.color = {1, 1, 1, 1};
  stage.root->setDelegate(&painter);
  stage.root->setNeedsDisplay();
  frameAt(0);
  EXPECT_EQ(target.pixel(3, 3), 0xFFFFFFFFU);
  painter.color = {0, 0, 0, 1};
  stage.root->setNeedsDisplay();
  frameAt(0);
  EXPECT_EQ(target.pixel(3, 3), 0xFF000000U);
}

TEST_F(SoftwareCompositorTest, isBlackWhereNothingIs) {
  frameAt(0);
  EXPECT_EQ(target.pixel(159, 119), 0xFF000000U);
}

/// A plain white card at rest on black, without shadow.
struct WhiteCardTest : SoftwareCompositorTest {
  void show(double tilt) {
    const auto card = stage.addLayer({{0, 0}, {100, 60}}, {80, 60});
    card->setContents(plainPicture(100, 60));
    card->setRotation(tilt);
    frameAt(0);
  }
};

TEST_F(WhiteCardTest, hasSmoothEdgesWhenTilted) {
  const double tilt = DegreesToRadians(8);
  show(tilt);
  // Along the upper edge, which crosses about 14 rows, every column has its step of grey.
  int columnsWithGrey = 0;
  for (int x = 50; x < 110; ++x) {
    int greys = 0;
    double covered = 0;
    for (int y = 0; y < 60; ++y) {
      const int value = qRed(target.pixel(x, y));
      if (value > 0 && value < 255) ++greys;
      covered += value / 255.0;
    }
    EXPECT_LE(greys, 3) << x;
    columnsWithGrey += greys > 0 ? 1 : 0;
    // What is covered above the middle is what geometry says.
    const double height = 30 / std::cos(tilt) + (x + 0.5 - 80) * std::tan(tilt);
    EXPECT_NEAR(covered, height, 0.3) << x;
  }
  EXPECT_GE(columnsWithGrey, 58);
}

TEST_F(WhiteCardTest, isAsSharpAsItsPixelsWhenStraight) {
  show(0);
  EXPECT_EQ(target.pixel(30, 30), 0xFFFFFFFFU);
  EXPECT_EQ(target.pixel(29, 30), 0xFF000000U);
  EXPECT_EQ(target.pixel(129, 89), 0xFFFFFFFFU);
  EXPECT_EQ(target.pixel(130, 89), 0xFF000000U);
}

TEST_F(SoftwareCompositorTest, turnsTheShadowWithTheCard) {
  Painter white;
  white.color = {1, 1, 1, 1};
  stage.root->setDelegate(&white);
  stage.root->setNeedsDisplay();
  const auto card = stage.addLayer({{0, 0}, {40, 40}}, {80, 60});
  card->setContents(plainPicture(40, 40));
  card->setShadowOffset({-6, -6});
  card->setShadowRadius(2);
  card->setShadowOpacity(1);
  frameAt(0);
  EXPECT_LT(qRed(target.pixel(58, 82)), 120);  // lower left
  EXPECT_GT(qRed(target.pixel(102, 38)), 250);
  card->setRotation(kPi);
  frameAt(0);
  EXPECT_GT(qRed(target.pixel(58, 82)), 250);
  EXPECT_LT(qRed(target.pixel(101, 37)), 120);  // upper right
}

TEST_F(SoftwareCompositorTest, ignoresALayerWhosePlaceIsNoNumber) {
  const auto card = stage.addLayer({{0, 0}, {40, 40}}, {std::nan(""), 60});
  card->setContents(plainPicture(40, 40));
  frameAt(0);
  EXPECT_EQ(target.pixel(80, 60), 0xFF000000U);
}

}  // namespace
}  // namespace pelmora::render

#include "render/FlattenedPicture.h"

#include "render/SoftwareCompositor.h"
#include "render/tests/Stage.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

const Color kOrange{1, 0.5, 0, 1};
const Color kWhite{1, 1, 1, 1};

/// A label: an orange rectangle with a white one upon it.
struct FlattenedPictureTest : testing::Test {
  FlattenedPictureTest() {
    label->setAnchorPoint({0, 0});
    label->setBackgroundColor(kOrange);
    upon->setBounds({{0, 0}, {20, 10}});
    upon->setAnchorPoint({0, 0});
    upon->setPosition({10, 20});
    upon->setBackgroundColor(kWhite);
    label->addSublayer(upon);
  }
  QImage paint() {
    stage.tree.commit();
    const double scale = stage.latest().scale;
    QImage image(static_cast<int>(200 * scale), static_cast<int>(100 * scale),
                 QImage::Format_RGB32);
    SoftwareCompositor().paint(image, stage.latest(), 0);
    return image;
  }
  const LayerSnapshot& shown() {
    stage.tree.commit();
    return stage.latest().root.sublayers.back();
  }

  Stage stage{{200, 100}};
  std::shared_ptr<Layer> label = stage.addLayer({{0, 0}, {60, 40}}, {100, 50});
  std::shared_ptr<Layer> upon = std::make_shared<Layer>();
};

TEST_F(FlattenedPictureTest, showsSublayersAtTheirPlaces) {
  const QImage image = paint();
  EXPECT_EQ(image.pixel(101, 11), 0xFFFF8000U);
  EXPECT_EQ(image.pixel(109, 25), 0xFFFF8000U);
  EXPECT_EQ(image.pixel(110, 20), 0xFFFFFFFFU);
  EXPECT_EQ(image.pixel(129, 29), 0xFFFFFFFFU);
  EXPECT_EQ(image.pixel(130, 25), 0xFFFF8000U);
  EXPECT_EQ(image.pixel(120, 30), 0xFFFF8000U);
}

TEST_F(FlattenedPictureTest, letsTheOpacityActOnAllTogether) {
  stage.root->setBackgroundColor(Color{0, 0, 1, 1});
  label->setOpacity(0.8);
  const QImage image = paint();
  const QColor bare = image.pixelColor(101, 11);
  EXPECT_NEAR(bare.red(), 0.8 * 255, 2);
  EXPECT_NEAR(bare.green(), 0.8 * 128, 2);
  EXPECT_NEAR(bare.blue(), 0.2 * 255, 2);
  // Nothing of the orange shines through the white: each by itself would give 0.96 of red.
  const QColor covered = image.pixelColor(120, 25);
  EXPECT_NEAR(covered.red(), 0.8 * 255, 2);
  EXPECT_NEAR(covered.green(), 0.8 * 255, 2);
  EXPECT_NEAR(covered.blue(), 255, 2);
}

TEST_F(FlattenedPictureTest, keepsASublayersOwnOpacity) {
  upon->setOpacity(0.5);
  EXPECT_NEAR(paint().pixelColor(120, 25).blue(), 128, 2);
}

TEST_F(FlattenedPictureTest, scalesAllAboutTheAnchorPointAtThePixelsOfThatScale) {
  label->setScale(0.25);
  const QImage image = paint();
  EXPECT_EQ(shown().picture->bounds.size(), QSizeF(15, 10));
  EXPECT_EQ(image.pixel(101, 41), 0xFFFF8000U);
  EXPECT_EQ(image.pixel(105, 43), 0xFFFFFFFFU);
  EXPECT_EQ(image.pixel(116, 45), 0xFF000000U);
  EXPECT_EQ(image.pixel(101, 39), 0xFF000000U);
}

TEST_F(FlattenedPictureTest, isDrawnAtOnce) {
  EXPECT_TRUE(shown().picture);
  EXPECT_FALSE(shown().sublayers[0].picture);
  EXPECT_EQ(drawListOf(stage.latest(), 0).size(), 1U);
}

TEST_F(FlattenedPictureTest, staysTheSameWhileItWouldLookTheSame) {
  const auto picture = shown().picture;
  label->setPosition({3, 4});
  label->setOpacity(0.5);
  label->addAnimation(fadeInAndOut(), "fade");
  EXPECT_EQ(shown().picture, picture);
  upon->setPosition({11, 20});
  const auto moved = shown().picture;
  EXPECT_NE(moved, picture);
  upon->setOpacity(0.9);
  EXPECT_NE(shown().picture, moved);
}

TEST_F(FlattenedPictureTest, followsTheBoundsOfALayerWithoutAnyLooks) {
  label->setBackgroundColor(std::nullopt);
  const auto picture = shown().picture;
  EXPECT_EQ(picture->bounds.size(), QSizeF(60, 40));
  EXPECT_EQ(paint().pixel(120, 25), 0xFFFFFFFFU);
  EXPECT_EQ(paint().pixel(101, 11), 0xFF000000U);
  label->setBounds({{0, 0}, {120, 40}});
  EXPECT_EQ(shown().picture->bounds.size(), QSizeF(120, 40));
  EXPECT_EQ(paint().pixel(120, 25), 0xFFFFFFFFU);
}

TEST_F(FlattenedPictureTest, holdsWhatReachesOutOfTheBounds) {
  upon->setPosition({-10, -5});
  upon->setRotation(0.2);
  const QImage image = paint();
  EXPECT_EQ(image.pixel(95, 52), 0xFFFFFFFFU);
  EXPECT_EQ(shown().picture->bounds.size(), QSizeF(60, 40));
}

TEST_F(FlattenedPictureTest, holdsSublayersOfSublayers) {
  const auto innermost = std::make_shared<Layer>();
  innermost->setBounds({{0, 0}, {4, 4}});
  innermost->setPosition({10, 5});
  innermost->setBackgroundColor(Color{0, 0, 1, 1});
  upon->addSublayer(innermost);
  EXPECT_EQ(paint().pixel(120, 25), 0xFF0000FFU);
  EXPECT_EQ(drawListOf(stage.latest(), 0).size(), 1U);
}

TEST_F(FlattenedPictureTest, leavesSublayersThatMoveByThemselves) {
  upon->addAnimation(fade(1), "a");
  EXPECT_TRUE(shown().sublayers[0].picture);
  EXPECT_EQ(picturesOf(stage.latest()).size(), 2U);
  stage.showFrame();
  stage.scheduler.advanceTo(1);
  EXPECT_FALSE(shown().sublayers[0].picture);
}

TEST_F(FlattenedPictureTest, leavesSublayersThatReachTooFarOut) {
  upon->setPosition({20000, 0});
  EXPECT_TRUE(shown().sublayers[0].picture);
  EXPECT_EQ(shown().picture->bounds.size(), QSizeF(60, 40));
}

TEST_F(FlattenedPictureTest, ofNoAreaIsNone) {
  label->setBounds({});
  upon->setBounds({});
  EXPECT_FALSE(shown().picture);
  EXPECT_TRUE(drawListOf(stage.latest(), 0).empty());
}

TEST_F(FlattenedPictureTest, isAsSharpAsItsPartsAtAFractionalScale) {
  // Neither the label nor what is upon it is whole pixels wide.
  label->setBounds({{0, 0}, {61, 41}});
  upon->setBounds({{0, 0}, {21, 11}});
  upon->setPosition({11, 20});
  stage.tree.setScale(1.5);
  const QImage image = shown().picture->image;
  int pale = 0;
  for (int x = 0; x < image.width(); ++x) {
    const QRgb pixel = image.pixel(x, image.height() / 2);
    if (pixel != 0 && pixel != 0xFFFFFFFFU && pixel != 0xFFFF8000U) ++pale;
  }
  EXPECT_EQ(pale, 0);
}

TEST_F(FlattenedPictureTest, liesAboveAllCardsAtTheHighestZPosition) {
  label->setZPosition(3.4028234663852886e38);
  stage.addLayer({{0, 0}, {200, 100}}, {100, 50})->setBackgroundColor(Color{0, 1, 0, 1});
  EXPECT_EQ(paint().pixel(120, 25), 0xFFFFFFFFU);
  EXPECT_EQ(paint().pixel(10, 10), 0xFF00FF00U);
}

}  // namespace
}  // namespace pelmora::render

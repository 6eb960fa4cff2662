#include "render/BakedPicture.h"

#include "render/tests/Stage.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

QImage checks(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image.setPixel(x, y, (x + y) % 2 ? 0xFFFFFFFF : 0xFF102030);
  }
  return image;
}

PictureSource card(const QImage& contents, double scale = 1) {
  return {.contents = contents,
          .fills = {},
          .bounds = {{0, 0}, {contents.width() / scale, contents.height() / scale}},
          .shadowOffset = {-8, -8},
          .shadowRadius = 10,
          .shadowOpacity = 0.75,
          .scale = scale};
}

TEST(BakedPicture, keepsArtworkThatHasTheRightSizeAsItIs) {
  const QImage art = checks(41, 30);
  const auto baked = bake(card(art));
  const QRect place = baked->bounds.toRect();
  EXPECT_EQ(place.size(), art.size());
  EXPECT_EQ(baked->image.copy(place).convertToFormat(QImage::Format_RGB32), art);
  EXPECT_TRUE(baked->isOpaque);
}

TEST(BakedPicture, takesArtworkWithinAPixelOfItsBoundsAsRight) {
  PictureSource source = card(checks(41, 30));
  source.bounds.size = {40.6, 30.4};
  EXPECT_EQ(bake(source)->bounds.size(), QSizeF(41, 30));
}

TEST(BakedPicture, bringsOtherArtworkToDevicePixels) {
  PictureSource source = card(plainPicture(10, 10, 0xFF00FF00));
  source.bounds.size = {40, 20};
  source.scale = 2;
  const auto baked = bake(source);
  EXPECT_EQ(baked->bounds.size(), QSizeF(80, 40));
  EXPECT_EQ(baked->image.pixel(baked->bounds.center().toPoint()), 0xFF00FF00U);
}

TEST(BakedPicture, hasRoomForTheShadowOnItsOwnSide) {
  const auto baked = bake(card(checks(40, 30)));
  const double right = baked->image.width() - baked->bounds.right();
  const double bottom = baked->image.height() - baked->bounds.bottom();
  EXPECT_EQ(baked->bounds.left(), 38);  // three deviations and the offset, leftward
  EXPECT_EQ(bottom, 38);                // and downward
  EXPECT_EQ(right, 22);
  EXPECT_EQ(baked->bounds.top(), 22);
}

TEST(BakedPicture, castsItsShadowToTheLowerLeft) {
  const auto baked = bake(card(checks(100, 80)));
  const QRect place = baked->bounds.toRect();
  const auto alphaAt = [&](int x, int y) { return qAlpha(baked->image.pixel(x, y)); };
  const int lowerLeft = alphaAt(place.left() - 5, place.bottom() + 5);
  EXPECT_GT(lowerLeft, 60);
  EXPECT_GT(lowerLeft, 5 * alphaAt(place.right() + 5, place.top() - 5));
  EXPECT_GT(alphaAt(place.left() - 4, place.center().y()),
            2 * alphaAt(place.right() + 4, place.center().y()));
  EXPECT_GT(alphaAt(place.center().x(), place.bottom() + 4),
            2 * alphaAt(place.center().x(), place.top() - 4));
}

TEST(BakedPicture, isTransparentAllAround) {
  for (const double opacity : {0.0, 0.75, 1.0}) {
    PictureSource source = card(checks(40, 30));
    source.shadowOpacity = opacity;
    const QImage image = bake(source)->image;
    for (int x = 0; x < image.width(); ++x) {
      ASSERT_EQ(qAlpha(image.pixel(x, 0)), 0);
      ASSERT_EQ(qAlpha(image.pixel(x, image.height() - 1)), 0);
    }
    for (int y = 0; y < image.height(); ++y) {
      ASSERT_EQ(qAlpha(image.pixel(0, y)), 0);
      ASSERT_EQ(qAlpha(image.pixel(image.width() - 1, y)), 0);
    }
  }
}

TEST(BakedPicture, scalesTheShadowWithTheDisplay) {
  const auto baked = bake(card(checks(80, 60), 2));
  EXPECT_EQ(baked->bounds.left(), 76);
  EXPECT_EQ(baked->bounds.top(), 44);
}

TEST(BakedPicture, letsTheShadowShowThroughTransparentArtwork) {
  PictureSource source = card(plainPicture(60, 60, 0));
  EXPECT_EQ(qAlpha(bake(source)->image.pixel(60, 60)), 0);
  source.contents.fill(0x80000000);
  const auto baked = bake(source);
  EXPECT_FALSE(baked->isOpaque);
  EXPECT_GT(qAlpha(baked->image.pixel(baked->bounds.center().toPoint())), 0x90);
}

TEST(BakedPicture, paintsFillsUnderTheContentsWithRoundedCorners) {
  PictureSource source{.contents = {},
                       .fills = {{{{0, 0}, {40, 20}}, {1, 0.5, 0, 1}}},
                       .bounds = {{0, 0}, {40, 20}},
                       .cornerRadius = 6,
                       .shadowOffset = {}};
  const auto baked = bake(source);
  const QRect place = baked->bounds.toRect();
  EXPECT_EQ(qAlpha(baked->image.pixel(place.topLeft())), 0);
  EXPECT_EQ(qRed(baked->image.pixel(place.center())), 255);
  EXPECT_NEAR(qGreen(baked->image.pixel(place.center())), 128, 1);
  EXPECT_FALSE(baked->isOpaque);
}

TEST(BakedPicture, fillsItsBoundsUnderAllElseWithRoundedSmoothCorners) {
  PictureSource source{.contents = {},
                       .fills = {{{{0, 0}, {40, 10}}, {0, 0, 1, 1}}},
                       .bounds = {{0, 0}, {40, 20}},
                       .backgroundColor = Color{1, 0.5, 0, 0.5},
                       .cornerRadius = 6,
                       .shadowOffset = {},
                       .scale = 2};
  const auto baked = bake(source);
  const QRect place = baked->bounds.toRect();
  EXPECT_EQ(place.size(), QSize(80, 40));
  EXPECT_EQ(qAlpha(baked->image.pixel(place.topLeft())), 0);
  EXPECT_NEAR(qAlpha(baked->image.pixel(place.center().x(), place.top() + 5)), 128, 1);
  EXPECT_EQ(qBlue(baked->image.pixel(place.center().x(), place.bottom() - 5)), 255);
  const int corner = qAlpha(baked->image.pixel(place.left() + 3, place.top() + 3));
  EXPECT_GT(corner, 8);
  EXPECT_LT(corner, 120);
  source.fills.clear();
  source.contents = plainPicture(80, 40, 0xFF00FF00);
  EXPECT_EQ(bake(source)->image.pixel(place.center()), 0xFF00FF00U);
}

TEST(BakedPicture, showsABackgroundAlone) {
  const auto baked = bake({.contents = {},
                           .fills = {},
                           .bounds = {{0, 0}, {8, 8}},
                           .backgroundColor = Color{0, 0, 0, 1},
                           .shadowOffset = {}});
  ASSERT_TRUE(baked);
  EXPECT_TRUE(baked->isOpaque);
}

TEST(BakedPicture, isCoarserRatherThanLargerThanAPictureMayBe) {
  const auto baked = bake({.contents = {},
                           .fills = {},
                           .bounds = {{0, 0}, {1e9, 40}},
                           .backgroundColor = Color{0, 0, 0, 1},
                           .shadowOffset = {}});
  ASSERT_TRUE(baked);
  EXPECT_EQ(baked->bounds.size(), QSizeF(16000, 40));
}

TEST(BakedPicture, placesFillsWithYUpward) {
  PictureSource source{.contents = {},
                       .fills = {{{{10, 10}, {20, 4}}, {0, 0, 1, 1}}},
                       .bounds = {{10, 10}, {20, 20}},
                       .shadowOffset = {}};
  const auto baked = bake(source);
  const QRect place = baked->bounds.toRect();
  EXPECT_EQ(qBlue(baked->image.pixel(place.bottomLeft())), 255);
  EXPECT_EQ(qAlpha(baked->image.pixel(place.topLeft())), 0);
}

TEST(BakedPicture, isMissingWhereNothingShows) {
  EXPECT_EQ(bake({.contents = {}, .fills = {}, .bounds = {{0, 0}, {9, 9}}, .shadowOffset = {}}),
            nullptr);
  PictureSource source = card(checks(4, 4));
  for (const Size& size : {Size{0, 0}, Size{0, 4}, Size{-4, 4}}) {
    source.bounds.size = size;
    EXPECT_EQ(bake(source), nullptr);
  }
}

}  // namespace
}  // namespace pelmora::render

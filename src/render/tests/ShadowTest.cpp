#include "render/Shadow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace pelmora::render {
namespace {

int alphaAt(const QImage& image, int x, int y) { return qAlpha(image.pixel(x, y)); }

QImage emptyImage(int width, int height) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  return image;
}

constexpr double kDeviation = 4;

QImage shadowOfRectangle() {
  QImage image = emptyImage(80, 60);
  drawShadowOfRectangle(image, QRectF(20, 20, 40, 20), {{0, 0}, kDeviation, 0.75});
  return image;
}

TEST(Shadow, reachesThreeDeviations) {
  EXPECT_EQ((Shadow{{0, 0}, 9.6, 0.75}.reach()), 29);
  EXPECT_EQ((Shadow{{0, 0}, 0, 0.75}.reach()), 0);
  EXPECT_EQ((Shadow{{0, 0}, -1, 0.75}.reach()), 0);
  EXPECT_EQ((Shadow{{0, 0}, 9.6, 0}.reach()), 0);
}

TEST(Shadow, isHalfAsDarkAtTheEdgeAndFallsOffAsAGaussian) {
  const QImage image = shadowOfRectangle();
  for (int x = 8; x < 32; ++x) {
    // Far from the other edges it is one edge's profile.
    const double distance = x + 0.5 - 20;
    const double left = 0.5 * (1 + std::erf(distance / (kDeviation * std::sqrt(2.0))));
    const double height = std::erf(10 / (kDeviation * std::sqrt(2.0)));
    EXPECT_NEAR(alphaAt(image, x, 29), 255 * 0.75 * left * height, 1.5) << x;
  }
}

TEST(Shadow, isBlackAndFadesToNothing) {
  const QImage image = shadowOfRectangle();
  EXPECT_EQ(image.pixel(40, 30) & 0xFFFFFFU, 0U);
  EXPECT_EQ(alphaAt(image, 0, 30), 0);
  EXPECT_EQ(alphaAt(image, 40, 0), 0);
  EXPECT_EQ(alphaAt(image, 79, 59), 0);
}

TEST(Shadow, ofAPictureIsThatOfTheRectangleItFills) {
  QImage image = emptyImage(80, 60);
  QImage art(40, 20, QImage::Format_ARGB32_Premultiplied);
  art.fill(Qt::red);
  drawShadowOfPicture(image, art, {20, 20}, {{0, 0}, kDeviation, 0.75});
  const QImage rectangle = shadowOfRectangle();
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 80; ++x) {
      ASSERT_LE(std::abs(alphaAt(image, x, y) - alphaAt(rectangle, x, y)), 2) << x << " " << y;
    }
  }
}

TEST(Shadow, fallsWhereItsOffsetSays) {
  for (const bool ofPicture : {false, true}) {
    QImage image = emptyImage(80, 60);
    QImage art(40, 20, QImage::Format_ARGB32_Premultiplied);
    art.fill(Qt::red);
    const Shadow shadow{{-5.25, 5.25}, 2, 1};
    if (ofPicture) {
      drawShadowOfPicture(image, art, {20, 20}, shadow);
    } else {
      drawShadowOfRectangle(image, QRectF(20, 20, 40, 20), shadow);
    }
    EXPECT_NEAR(alphaAt(image, 14, 35), 118, 12) << ofPicture;
    EXPECT_GT(alphaAt(image, 17, 43), 150) << ofPicture;
    EXPECT_LT(alphaAt(image, 62, 18), 3) << ofPicture;
  }
}

TEST(Shadow, followsTheShapeOfATransparentPicture) {
  QImage image = emptyImage(80, 60);
  QImage art(40, 20, QImage::Format_ARGB32_Premultiplied);
  art.fill(Qt::transparent);
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 10; ++x) art.setPixel(x, y, 0xFFFFFFFF);
  }
  drawShadowOfPicture(image, art, {20, 20}, {{0, 0}, 2, 1});
  EXPECT_GT(alphaAt(image, 25, 30), 230);
  EXPECT_EQ(alphaAt(image, 50, 30), 0);
}

TEST(Shadow, withoutBlurIsASharpShape) {
  QImage image = emptyImage(20, 20);
  drawShadowOfRectangle(image, QRectF(5, 5, 10, 10), {{0, 0}, 0, 1});
  EXPECT_EQ(alphaAt(image, 5, 5), 255);
  EXPECT_EQ(alphaAt(image, 4, 5), 0);
}

}  // namespace
}  // namespace pelmora::render

#include "render/Warp.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <cmath>
#include <cstdlib>

namespace pelmora::render {
namespace {

/// A picture with every kind of pixel and a transparent margin.
QImage sample(int width = 60, int height = 40) {
  QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  for (int y = 2; y < height - 2; ++y) {
    for (int x = 2; x < width - 2; ++x) {
      const QRgb color = qRgba(x * 4, y * 6, (x * y) % 256, x < 20 ? 128 + x : 255);
      image.setPixel(x, y, qPremultiply(color));
    }
  }
  return image;
}

QImage target(int width = 100, int height = 80, QRgb color = 0xFF406080) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(color);
  return image;
}

QTransform turned(double degrees, double scale = 1) {
  QTransform transform;
  transform.translate(50.3, 40.6);
  transform.rotate(degrees);
  transform.scale(scale, scale);
  transform.translate(-30, -20);
  return transform;
}

void draw(QImage& image, const QTransform& transform, double opacity, const QRect& clip) {
  drawWarped(image, {Warp(sample(), QRectF(20, 2, 38, 36), transform, opacity)}, clip);
}

QPoint largestDifference(const QImage& a, const QImage& b, int& difference) {
  QPoint where;
  difference = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y);
      const QRgb q = b.pixel(x, y);
      const int here = std::max({std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
      if (here > difference) where = {x, y};
      difference = std::max(difference, here);
    }
  }
  return where;
}

TEST(Warp, copiesExactlyWhereNothingTurns) {
  QImage image = target(60, 40, 0xFF000000);
  const QImage source = sample();
  drawWarped(image, {Warp(source, {}, {}, 1)}, image.rect());
  for (int y = 2; y < 38; ++y) {
    for (int x = 20; x < 58; ++x) ASSERT_EQ(image.pixel(x, y), source.pixel(x, y));
  }
}

TEST(Warp, agreesWithTheToolkitsPainter) {
  for (const double degrees : {0.0, 7.5, -33.0, 90.0, 180.0}) {
    for (const double opacity : {1.0, 0.4}) {
      QImage image = target();
      draw(image, turned(degrees, 1.2), opacity, image.rect());
      QImage expected = target();
      QPainter painter(&expected);
      painter.setRenderHint(QPainter::SmoothPixmapTransform);
      painter.setOpacity(opacity);
      painter.setTransform(turned(degrees, 1.2));
      painter.drawImage(0, 0, sample());
      painter.end();
      int difference = 0;
      const QPoint where = largestDifference(image, expected, difference);
      // They round places differently by up to a sixteenth of a pixel, of very busy pixels.
      EXPECT_LE(difference, 12) << degrees << " at " << where.x() << ", " << where.y();
    }
  }
}

TEST(Warp, drawsAPartAsItDrawsTheWhole) {
  QImage whole = target();
  draw(whole, turned(12), 0.8, whole.rect());
  QImage parts = target();
  for (int y = 0; y < 80; y += 7) {
    for (int x = 0; x < 100; x += 13) draw(parts, turned(12), 0.8, QRect(x, y, 13, 7));
  }
  EXPECT_EQ(parts, whole);
}

TEST(Warp, givesTheSameWhetherWhatIsHiddenIsDrawnOrNot) {
  const QImage source = sample();
  const QRectF opaque(20, 2, 38, 36);
  QImage one = target();
  drawWarped(one, {Warp(source, opaque, turned(0), 1), Warp(source, opaque, turned(20), 1)},
             one.rect());
  QImage other = target();
  drawWarped(other, {Warp(source, {}, turned(0), 1)}, other.rect());
  drawWarped(other, {Warp(source, {}, turned(20), 1)}, other.rect());
  EXPECT_EQ(one, other);
}

TEST(Warp, knowsWhatItHides) {
  const Warp warp(sample(), QRectF(20, 2, 38, 36), {}, 1);
  const PixelSpan span = warp.hidden(10, {0, 60});
  EXPECT_EQ(span.begin, 20);
  EXPECT_EQ(span.end, 57);
  EXPECT_TRUE(warp.hidden(0, {0, 60}).isEmpty());
  EXPECT_TRUE(Warp(sample(), QRectF(20, 2, 38, 36), {}, 0.9).hidden(10, {0, 60}).isEmpty());
}

TEST(Warp, keepsTheTargetOpaque) {
  QImage image = target().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  draw(image, turned(30), 0.7, image.rect());
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ASSERT_EQ(qAlpha(image.pixel(x, y)), 255);
  }
}

TEST(Warp, drawsNothingOutsideOrWithoutExtent) {
  const QImage before = target();
  QImage image = before;
  draw(image, QTransform::fromTranslate(1000, 0), 1, image.rect());
  draw(image, QTransform::fromTranslate(1e12, 1e12), 1, image.rect());
  draw(image, QTransform::fromTranslate(std::nan(""), 0), 1, image.rect());
  draw(image, QTransform::fromScale(0, 0), 1, image.rect());
  draw(image, QTransform::fromScale(1e-12, 1e-12), 1, image.rect());
  draw(image, turned(0), 0, image.rect());
  draw(image, turned(0), 1, QRect(200, 200, 10, 10));
  drawWarped(image, {Warp(QImage(), {}, {}, 1), Warp(sample(1, 1), {}, {}, 1)}, image.rect());
  EXPECT_EQ(image, before);
}

}  // namespace
}  // namespace pelmora::render

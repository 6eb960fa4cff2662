#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>

namespace pelmora::render {

/// A black shadow, blurred by a Gaussian. Units: pixels, y downward.
struct Shadow {
  QPointF offset;
  double deviation = 0;  // of the blur
  double opacity = 0;

  /// How far it reaches from the shape that casts it, its offset aside: beyond, it is less than
  /// half a level of 255.
  [[nodiscard]] int reach() const;
  [[nodiscard]] bool isVisible() const { return opacity > 0; }
};

/// Writes the shadow of a filled rectangle over the whole of `image` (premultiplied ARGB32). Exact:
/// a blurred rectangle is the product of one profile along each axis.
void drawShadowOfRectangle(QImage& image, const QRectF& rectangle, const Shadow& shadow);

/// Writes the shadow of what `art` covers, which lies at `place` in `image`.
void drawShadowOfPicture(QImage& image, const QImage& art, const QPoint& place,
                         const Shadow& shadow);

}  // namespace pelmora::render

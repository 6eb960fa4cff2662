#pragma once

#include <QImage>
#include <QRect>
#include <QTransform>

#include <cstdint>
#include <vector>

namespace pelmora::render {

/// Pixels `begin` to `end` of a row; nothing when they are the wrong way around.
struct PixelSpan {
  std::int64_t begin = 0;
  std::int64_t end = 0;
  [[nodiscard]] bool isEmpty() const { return begin >= end; }
};

/// A picture, sampled bilinearly, on its way to a place in a target. What a pixel of the target
/// becomes does not depend on which others are drawn with it, so that a part which is drawn again
/// gives the same bytes and a backdrop can be repaired in part. That is why it is not the toolkit's
/// painter that draws here; it costs about the same processor time.
/// Thread: immutable; keeps the source's pixels. Units: pixels, y downward.
class Warp {
 public:
  /// `source` is premultiplied ARGB32 and transparent along its outermost pixels; it is opaque
  /// within `opaquePart`, which may be empty.
  Warp(const QImage& source, const QRectF& opaquePart, const QTransform& toTarget, double opacity);

  /// The part of row `y` and `span` that it draws on.
  [[nodiscard]] PixelSpan touched(int y, PixelSpan span) const;
  /// The part of row `y` and `span` in which nothing below it shows.
  [[nodiscard]] PixelSpan hidden(int y, PixelSpan span) const;
  /// Draws over a part of row `y`, of which `pixels` are the first: premultiplied ARGB32, or RGB32.
  void drawRow(quint32* pixels, int y, PixelSpan span) const;

 private:
  struct Row {
    std::int64_t u;  // the place in the source of pixel 0, 32.32 fixed point
    std::int64_t v;
  };
  /// Places from (left, top) up to (right, bottom).
  struct Places {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
  };
  [[nodiscard]] Row row(int y) const;
  [[nodiscard]] PixelSpan inside(const Places& places, int y, PixelSpan span) const;

  QImage _source;
  QTransform _toSource;
  std::int64_t _du = 0;
  std::int64_t _dv = 0;
  Places _all;
  Places _opaque;
  std::uint16_t _opacity = 0;
};

/// Draws pictures over each other within `clip`, the last on top, leaving out what others hide.
void drawWarped(QImage& target, const std::vector<Warp>& warps, const QRect& clip);

}  // namespace pelmora::render

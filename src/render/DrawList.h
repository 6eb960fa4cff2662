#pragma once

#include "render/BakedPicture.h"

#include <QColor>
#include <QRect>
#include <QTransform>

#include <memory>
#include <vector>

namespace pelmora::render {

struct LayerSnapshot;
struct Snapshot;

/// One picture to draw, where, and how much of it. Units: device pixels, y downward.
struct DrawItem {
  std::shared_ptr<const BakedPicture> picture;
  QTransform toTarget;  // from the picture's pixels
  double opacity = 1;
  bool moves = false;  // a later frame may show it elsewhere

  [[nodiscard]] QRect extent() const;
  [[nodiscard]] bool looksLike(const DrawItem& other) const;
};

/// One rectangle of plain colour.
struct FillItem {
  QRectF rect;
  QColor color;
  bool operator==(const FillItem&) const = default;
};

/// A snapshot at a moment, resolved into what is drawn, from back to front: the same for every way
/// of presenting. Layers that are wholly transparent are left out. Where sublayers are drawn by
/// themselves, their superlayer's opacity acts on each of them. What lies still and upright is put
/// onto whole pixels.
[[nodiscard]] std::vector<DrawItem> drawListOf(const Snapshot& snapshot, double time);
/// One layer and its sublayers as they are without animations, from the upper left corner of its
/// bounds, which are `size` in pixels.
[[nodiscard]] std::vector<DrawItem> drawListOf(const LayerSnapshot& layer, const QSizeF& size);
[[nodiscard]] bool lookAlike(const std::vector<DrawItem>& a, const std::vector<DrawItem>& b);
/// All pictures in the same order, also those that are transparent just now.
[[nodiscard]] std::vector<std::shared_ptr<const BakedPicture>> picturesOf(const Snapshot& snapshot);
/// The root's own colour and fills, over black.
[[nodiscard]] std::vector<FillItem> backgroundOf(const Snapshot& snapshot);

[[nodiscard]] QColor toQColor(const Color& color);

}  // namespace pelmora::render

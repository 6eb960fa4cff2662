#include "render/DrawList.h"

#include "render/Snapshot.h"

#include <algorithm>
#include <cmath>

namespace pelmora::render {

namespace {

/// From points in the root's bounds to device pixels: y turns over here and nowhere else.
QTransform toTargetOf(const Snapshot& snapshot) {
  const double scale = snapshot.scale;
  const Rect& bounds = snapshot.root.bounds;
  return {scale, 0, 0, -scale, -bounds.minX() * scale, bounds.maxY() * scale};
}

/// From a layer's own points to its superlayer's.
QTransform toSuperlayerOf(const LayerSnapshot& layer, const Pose& pose) {
  const Rect& bounds = layer.bounds;
  QTransform transform;
  transform.translate(pose.position.x, pose.position.y);
  transform.rotateRadians(pose.rotation);
  transform.scale(pose.scale, pose.scale);
  transform.translate(-(bounds.minX() + layer.anchorPoint.x * bounds.size.width),
                      -(bounds.minY() + layer.anchorPoint.y * bounds.size.height));
  return transform;
}

/// From the pixels of a layer's picture to its own points.
QTransform toLayerOf(const BakedPicture& picture, const Rect& bounds) {
  const double across = bounds.size.width / picture.bounds.width();
  const double down = bounds.size.height / picture.bounds.height();
  return {across,
          0,
          0,
          -down,
          bounds.minX() - picture.bounds.left() * across,
          bounds.maxY() + picture.bounds.top() * down};
}

/// What lies still, upright and at about its own size is put onto whole pixels: so it is as sharp
/// as it was painted, at a fractional scale too.
QTransform onWholePixels(const QTransform& transform, const QSize& picture) {
  const QRectF place = transform.mapRect(QRectF(QPointF(), QSizeF(picture)));
  const bool isUpright =
      transform.m12() == 0 && transform.m21() == 0 && transform.m11() > 0 && transform.m22() > 0;
  if (!isUpright || std::abs(place.width() - picture.width()) > 1 ||
      std::abs(place.height() - picture.height()) > 1) {
    return transform;
  }
  return QTransform::fromTranslate(std::round(place.left()), std::round(place.top()));
}

/// Whether an animation changes where the layer is drawn.
bool changesPlaceAt(const LayerSnapshot& layer, double time) {
  return std::any_of(layer.animations.begin(), layer.animations.end(),
                     [time](const AnimationSnapshot& animation) {
                       return animation.keyPath != KeyPath::opacity && !animation.isOverAt(time);
                     });
}

struct Outer {
  QTransform toTarget;
  double opacity = 1;
  bool moves = false;
  bool changesPlace = false;
};

void append(std::vector<DrawItem>& items, const LayerSnapshot& layer, double time,
            const Outer& outer);

/// With `own` from the layer's own points.
void appendContents(std::vector<DrawItem>& items, const LayerSnapshot& layer, double time,
                    const Outer& own) {
  if (layer.picture) {
    const QTransform toTarget = toLayerOf(*layer.picture, layer.bounds) * own.toTarget;
    items.push_back(
        {layer.picture,
         own.changesPlace ? toTarget : onWholePixels(toTarget, layer.picture->image.size()),
         own.opacity, own.moves});
  }
  for (const LayerSnapshot& sublayer : layer.sublayers) append(items, sublayer, time, own);
}

void append(std::vector<DrawItem>& items, const LayerSnapshot& layer, double time,
            const Outer& outer) {
  const Pose pose = presentationOf(layer, time);
  const Outer own{toSuperlayerOf(layer, pose) * outer.toTarget,
                  outer.opacity * std::clamp(pose.opacity, 0.0, 1.0),
                  outer.moves || movesAt(layer, time),
                  outer.changesPlace || changesPlaceAt(layer, time)};
  if (own.opacity > 0) appendContents(items, layer, time, own);
}

using Pictures = std::vector<std::shared_ptr<const BakedPicture>>;

void append(Pictures& pictures, const LayerSnapshot& layer) {
  if (layer.picture) pictures.push_back(layer.picture);
  for (const LayerSnapshot& sublayer : layer.sublayers) append(pictures, sublayer);
}

}  // namespace

QRect DrawItem::extent() const {
  // Far beyond any display, and still whole numbers.
  const QRectF reachable(-1e6, -1e6, 2e6, 2e6);
  return toTarget.mapRect(QRectF(picture->image.rect())).intersected(reachable).toAlignedRect();
}

bool DrawItem::looksLike(const DrawItem& other) const {
  return picture == other.picture && toTarget == other.toTarget && opacity == other.opacity;
}

std::vector<DrawItem> drawListOf(const Snapshot& snapshot, double time) {
  std::vector<DrawItem> items;
  const Outer outer{toTargetOf(snapshot)};
  for (const LayerSnapshot& layer : snapshot.root.sublayers) append(items, layer, time, outer);
  return items;
}

std::vector<DrawItem> drawListOf(const LayerSnapshot& layer, const QSizeF& size) {
  const Rect& bounds = layer.bounds;
  const double across = size.width() / bounds.size.width;
  const double down = size.height() / bounds.size.height;
  const QTransform toTarget(across, 0, 0, -down, -bounds.minX() * across, bounds.maxY() * down);
  std::vector<DrawItem> items;
  appendContents(items, layer, 0, {toTarget});
  return items;
}

bool lookAlike(const std::vector<DrawItem>& a, const std::vector<DrawItem>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const DrawItem& x, const DrawItem& y) { return x.looksLike(y); });
}

Pictures picturesOf(const Snapshot& snapshot) {
  Pictures pictures;
  for (const LayerSnapshot& layer : snapshot.root.sublayers) append(pictures, layer);
  return pictures;
}

std::vector<FillItem> backgroundOf(const Snapshot& snapshot) {
  std::vector<FillItem> items;
  const QTransform toTarget = toTargetOf(snapshot);
  const auto append = [&](const Rect& rect, const Color& color) {
    const QRectF filled(rect.minX(), rect.minY(), rect.size.width, rect.size.height);
    items.push_back({toTarget.mapRect(filled), toQColor(color)});
  };
  const LayerSnapshot& root = snapshot.root;
  if (root.backgroundColor) append(root.bounds, *root.backgroundColor);
  for (const LayerContext::Fill& fill : root.fills) append(fill.rect, fill.color);
  return items;
}

QColor toQColor(const Color& color) {
  const auto component = [](double value) {
    return static_cast<float>(std::clamp(value, 0.0, 1.0));
  };
  return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                          component(color.alpha));
}

}  // namespace pelmora::render

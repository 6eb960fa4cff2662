#include "render/DrawList.h"

#include "render/Snapshot.h"

#include <algorithm>

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

struct Outer {
  QTransform toTarget;
  double opacity = 1;
  bool moves = false;
};

void append(std::vector<DrawItem>& items, const LayerSnapshot& layer, double time,
            const Outer& outer) {
  const Pose pose = presentationOf(layer, time);
  const Outer own{toSuperlayerOf(layer, pose) * outer.toTarget,
                  outer.opacity * std::clamp(pose.opacity, 0.0, 1.0),
                  outer.moves || movesAt(layer, time)};
  if (!(own.opacity > 0)) return;
  if (layer.picture) {
    items.push_back({layer.picture, toLayerOf(*layer.picture, layer.bounds) * own.toTarget,
                     own.opacity, own.moves});
  }
  for (const LayerSnapshot& sublayer : layer.sublayers) append(items, sublayer, time, own);
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
  const Outer outer{toTargetOf(snapshot), 1, false};
  for (const LayerSnapshot& layer : snapshot.root.sublayers) append(items, layer, time, outer);
  return items;
}

Pictures picturesOf(const Snapshot& snapshot) {
  Pictures pictures;
  for (const LayerSnapshot& layer : snapshot.root.sublayers) append(pictures, layer);
  return pictures;
}

std::vector<FillItem> backgroundOf(const Snapshot& snapshot) {
  std::vector<FillItem> items;
  const QTransform toTarget = toTargetOf(snapshot);
  for (const LayerContext::Fill& fill : snapshot.root.fills) {
    const QRectF rect(fill.rect.minX(), fill.rect.minY(), fill.rect.size.width,
                      fill.rect.size.height);
    items.push_back({toTarget.mapRect(rect), toQColor(fill.color)});
  }
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

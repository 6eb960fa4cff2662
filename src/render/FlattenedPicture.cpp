#include "render/FlattenedPicture.h"

#include "render/Snapshot.h"
#include "render/Warp.h"

#include <algorithm>

namespace pelmora::render {

namespace {

constexpr double kLargestSide = 16384;
constexpr double kMostPixels = 1 << 27;

/// The layer's own picture gives the pixels, so that it is not resampled.
QSizeF sizeInPixels(const LayerSnapshot& layer, double scale) {
  if (layer.picture) return layer.picture->bounds.size();
  return QSizeF(layer.bounds.size.width, layer.bounds.size.height) * scale;
}

std::shared_ptr<const BakedPicture> flatten(const std::vector<DrawItem>& items,
                                            const QSizeF& size) {
  QRect extent;
  for (const DrawItem& item : items) extent |= item.extent();
  const double width = extent.width();
  const double height = extent.height();
  if (extent.isEmpty() || std::max(width, height) > kLargestSide || width * height > kMostPixels) {
    return nullptr;
  }
  QImage image(extent.size(), QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return nullptr;
  image.fill(Qt::transparent);
  const QPoint place = -extent.topLeft();
  std::vector<Warp> warps;
  for (const DrawItem& item : items) {
    const BakedPicture& picture = *item.picture;
    warps.emplace_back(picture.image, picture.isOpaque ? picture.bounds : QRectF(),
                       item.toTarget * QTransform::fromTranslate(place.x(), place.y()),
                       item.opacity);
  }
  drawWarped(image, warps, image.rect());
  return std::make_shared<const BakedPicture>(BakedPicture{image, QRectF(place, size), false});
}

/// Whether no animation runs in any of the layers.
bool rest(const std::vector<LayerSnapshot>& layers) {
  return std::all_of(layers.begin(), layers.end(), [](const LayerSnapshot& layer) {
    return layer.animations.empty() && rest(layer.sublayers);
  });
}

void takePicturesFrom(std::vector<LayerSnapshot>& layers) {
  for (LayerSnapshot& layer : layers) {
    layer.picture = nullptr;
    takePicturesFrom(layer.sublayers);
  }
}

}  // namespace

void FlattenedPicture::replacePictures(LayerSnapshot& layer, double scale) {
  if (layer.sublayers.empty() || !rest(layer.sublayers)) {
    *this = {};
    return;
  }
  if (!pictureOf(layer, scale)) return;
  layer.picture = _picture;
  takePicturesFrom(layer.sublayers);
}

const std::shared_ptr<const BakedPicture>& FlattenedPicture::pictureOf(const LayerSnapshot& layer,
                                                                       double scale) {
  const QSizeF size = sizeInPixels(layer, scale);
  std::vector<DrawItem> items;
  if (!size.isEmpty()) items = drawListOf(layer, size);
  if (_picture && size == _size && lookAlike(items, _items)) return _picture;
  _size = size;
  _items = std::move(items);
  _picture = flatten(_items, _size);
  return _picture;
}

}  // namespace pelmora::render

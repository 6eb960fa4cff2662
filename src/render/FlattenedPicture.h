#pragma once

#include "render/DrawList.h"

#include <memory>
#include <vector>

namespace pelmora::render {

struct LayerSnapshot;

/// A layer together with its sublayers in one picture, so that they are drawn at once, and the
/// layer's opacity acts on what they show together instead of on each of them. Made anew only when
/// it would look different. Thread: main.
class FlattenedPicture {
 public:
  /// Makes it the layer's picture, in place of those of the layer and its sublayers. Not while any
  /// of the sublayers runs an animation, nor where the layer has no area, or they reach too far out
  /// of it: they are drawn by themselves then. `scale` is device pixels in a point.
  void replacePictures(LayerSnapshot& layer, double scale);

 private:
  [[nodiscard]] const std::shared_ptr<const BakedPicture>& pictureOf(const LayerSnapshot& layer,
                                                                     double scale);

  QSizeF _size;  // of the layer's bounds, in pixels
  std::vector<DrawItem> _items;
  std::shared_ptr<const BakedPicture> _picture;
};

}  // namespace pelmora::render

#pragma once

#include "render/AnimationBegin.h"
#include "render/AttributedString.h"
#include "render/BakedPicture.h"
#include "render/FlattenedPicture.h"
#include "render/Layer.h"

#include <optional>
#include <utility>

namespace pelmora::render {

/// An animation as its layer holds it. Thread: main, but for the begin.
struct RunningAnimation {
  std::string key;
  Animation animation;
  std::shared_ptr<AnimationBegin> begin = std::make_shared<AnimationBegin>();
  std::weak_ptr<Layer> layer;
};

/// Sets `field`; whether that changed it.
template <typename T>
bool assign(T& field, T value) {
  if (field == value) return false;
  field = std::move(value);
  return true;
}

/// Hears of changes in the layers under a root. Thread: main.
class LayerObserver {
 public:
  virtual ~LayerObserver() = default;
  virtual void layersChanged() = 0;
  /// An animation came under the root, by itself or with its layer.
  virtual void animationAdded(const std::shared_ptr<RunningAnimation>& running) = 0;
};

/// What a layer knows; shared with the tree that makes snapshots of it.
struct Layer::State {
  std::string role;
  std::string url;
  Rect bounds;
  Point anchorPoint{0.5, 0.5};
  Point position;
  double zPosition = 0;
  double opacity = 1;
  double rotation = 0;
  double scale = 1;

  std::optional<Color> backgroundColor;
  QImage contents;
  std::optional<TextBlock> text;  // of a text layer alone
  std::vector<LayerContext::Fill> fills;
  double cornerRadius = 0;
  Size shadowOffset{0, -3};
  double shadowRadius = 3;
  double shadowOpacity = 0;
  std::shared_ptr<const BakedPicture> picture;
  double pictureScale = 0;  // device pixels in a point of it
  bool pictureIsStale = true;
  FlattenedPicture flattened;  // with its sublayers

  bool needsDisplay = false;
  bool needsDisplayOnBoundsChange = false;
  LayerDelegate* delegate = nullptr;

  Layer* superlayer = nullptr;
  std::vector<std::shared_ptr<Layer>> sublayers;
  std::vector<std::shared_ptr<RunningAnimation>> animations;
  LayerObserver* observer = nullptr;  // of a tree's root alone
};

}  // namespace pelmora::render

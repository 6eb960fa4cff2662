#pragma once

#include "render/AnimationBegin.h"
#include "render/BakedPicture.h"
#include "render/Layer.h"

namespace pelmora::render {

/// An animation as its layer holds it. Thread: main, but for the begin.
struct RunningAnimation {
  std::string key;
  BasicAnimation animation;
  std::shared_ptr<AnimationBegin> begin = std::make_shared<AnimationBegin>();
  std::weak_ptr<Layer> layer;
};

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

  QImage contents;
  std::vector<LayerContext::Fill> fills;
  double cornerRadius = 0;
  Size shadowOffset{0, -3};
  double shadowRadius = 3;
  double shadowOpacity = 0;
  std::shared_ptr<const BakedPicture> picture;
  double pictureScale = 0;  // device pixels in a point of it
  bool pictureIsStale = true;

  bool needsDisplay = false;
  bool needsDisplayOnBoundsChange = false;
  LayerDelegate* delegate = nullptr;

  Layer* superlayer = nullptr;
  std::vector<std::shared_ptr<Layer>> sublayers;
  std::vector<std::shared_ptr<RunningAnimation>> animations;
  LayerObserver* observer = nullptr;  // of a tree's root alone
};

}  // namespace pelmora::render

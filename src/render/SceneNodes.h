#pragma once

#include "render/DrawList.h"

#include <QSGNode>

#include <memory>
#include <unordered_map>

class QQuickWindow;
class QSGOpacityNode;
class QSGTransformNode;

namespace pelmora::platform {
class Clock;
}

namespace pelmora::render {

struct Snapshot;

/// The scene graph's nodes for one snapshot: fills, then a transform, an opacity and an image for
/// each picture, from back to front. Before each frame the poses of that moment are set. Thread:
/// the rendering thread; `show` while the GUI thread waits. Ownership: the scene graph's; the clock
/// and the window outlive it.
class SceneNodes : public QSGNode {
 public:
  SceneNodes(const platform::Clock& clock, QQuickWindow& window);

  /// Brings the nodes to a new snapshot; pictures that it shares with the last stay uploaded.
  void show(std::shared_ptr<const Snapshot> snapshot, double devicePixelRatio);
  void preprocess() override;
  /// Whether a later frame may differ from the last.
  [[nodiscard]] bool isMoving() const { return _isMoving; }

 private:
  struct PictureNode {
    QSGTransformNode* transform = nullptr;
    QSGOpacityNode* opacity = nullptr;
  };

  [[nodiscard]] PictureNode makeNode(const BakedPicture& picture) const;
  void appendBackground();
  void appendPictures();
  void pose(double time);

  const platform::Clock& _clock;
  QQuickWindow& _window;
  QSGNode* _background;
  QSGTransformNode* _pixels;  // from device pixels to the item's units
  std::shared_ptr<const Snapshot> _snapshot;
  std::unordered_map<std::shared_ptr<const BakedPicture>, PictureNode> _pictures;
  bool _isMoving = false;
};

}  // namespace pelmora::render

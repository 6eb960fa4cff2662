#pragma once

#include "render/Animation.h"
#include "render/AnimationBegin.h"
#include "render/BakedPicture.h"
#include "render/Layer.h"

#include <QImage>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::render {

/// A running animation as a snapshot shows it.
struct AnimationSnapshot {
  std::string key;
  KeyPath keyPath = KeyPath::position;
  double duration = 0;
  MediaTimingFunction timingFunction;
  AnimatableValue fromValue;
  AnimatableValue toValue;
  std::optional<Keyframes> keyframes;  // of a keyframe animation, in place of curve and two values
  std::shared_ptr<AnimationBegin> begin;

  /// Whether it has run its time, so that the layer's own value shows.
  [[nodiscard]] bool isOverAt(double time) const;
};

/// A layer as it was when the snapshot was made: the model values, the running animations in the
/// order they were added, the sublayers in drawing order.
struct LayerSnapshot {
  std::string role;
  std::string url;
  Rect bounds;
  Point anchorPoint;
  Point position;
  double zPosition = 0;
  double opacity = 1;
  double rotation = 0;
  double scale = 1;
  Size shadowOffset;
  double shadowRadius = 0;
  double shadowOpacity = 0;
  double cornerRadius = 0;
  std::optional<Color> backgroundColor;
  std::vector<LayerContext::Fill> fills;
  QImage contents;
  std::string string;  // a text layer's, without its looks
  /// Null for the root, where nothing shows, and where a superlayer's picture shows the layer too.
  std::shared_ptr<const BakedPicture> picture;
  std::vector<AnimationSnapshot> animations;
  std::vector<LayerSnapshot> sublayers;
};

/// What moves of a layer, at a moment.
struct Pose {
  Point position;
  double scale = 1;
  double opacity = 1;
  double rotation = 0;
  bool operator==(const Pose&) const = default;
};

/// Everything that a tree shows, immutable but for the begins of its animations. The root's colour
/// and fills are the background. Thread: shared by any. Units: points, media time.
struct Snapshot {
  LayerSnapshot root;
  double scale = 1;  // device pixels in a point

  /// Whether a frame at that time may differ from a later one of the same snapshot.
  [[nodiscard]] bool movesAt(double time) const;
  /// Fixes the begin of every animation that has none: for the presenter, at the first frame that
  /// shows them, or when it takes a snapshot that it will not show.
  void beginAnimations(double time) const;
};

/// Where a layer is at a moment: a pure function. Animations whose begin is unknown show their
/// first value; over ones show nothing, so the model's value does.
[[nodiscard]] Pose presentationOf(const LayerSnapshot& layer, double time);

/// Whether the layer's own animations move it at that time.
[[nodiscard]] bool movesAt(const LayerSnapshot& layer, double time);

}  // namespace pelmora::render

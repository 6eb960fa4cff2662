#pragma once

#include "render/MediaTimingFunction.h"
#include "shared/Geometry.h"

#include <memory>
#include <variant>
#include <vector>

namespace pelmora::render {

/// What of a layer an animation moves. The names are the model's key paths.
enum class KeyPath { position, opacity, scale, rotation };

/// "position", "opacity", "transform.scale", "transform.rotation.z".
[[nodiscard]] const char* description(KeyPath keyPath);

/// A `Point` for `KeyPath::position`, a double for the others (rotation in radians).
using AnimatableValue = std::variant<double, Point>;

struct BasicAnimation;

/// Told when an animation has run its time, or was removed before (`finished` false). On main.
class AnimationDelegate {
 public:
  virtual ~AnimationDelegate() = default;
  virtual void animationDidStop(const BasicAnimation& animation, bool finished) = 0;
};

/// Moves one attribute from one value to another, once, beginning with the frame that first shows
/// it; it is removed when it has run, and the layer's own value then shows. The layer holds the
/// animation, and so its delegate, until then.
struct BasicAnimation {
  KeyPath keyPath = KeyPath::position;
  double duration = 0.25;  // seconds
  MediaTimingFunction timingFunction = {};
  AnimatableValue fromValue;
  AnimatableValue toValue;
  std::shared_ptr<AnimationDelegate> delegate = nullptr;
};

/// Values that an attribute has at certain times, and goes between evenly.
struct Keyframes {
  std::vector<double> keyTimes;  // ascending, in fractions of the duration
  std::vector<AnimatableValue> values;

  /// Whether there are as many values as times, at least one, all of a type, and the times ascend
  /// within 0 and 1.
  [[nodiscard]] bool areWellFormed() const;
};

/// Leads one attribute through several values, once, as a `BasicAnimation` does through two. Before
/// the first key time it has the first value, after the last the last. Keyframes that are not well
/// formed move nothing: the layer's own value shows.
struct KeyframeAnimation {
  KeyPath keyPath = KeyPath::position;
  double duration = 0.25;  // seconds
  std::vector<double> keyTimes;
  std::vector<AnimatableValue> values;
};

using Animation = std::variant<BasicAnimation, KeyframeAnimation>;

[[nodiscard]] double durationOf(const Animation& animation);

}  // namespace pelmora::render

#include "render/Snapshot.h"

#include <algorithm>

namespace pelmora::render {

namespace {

double between(double from, double to, double way) { return from + (to - from) * way; }

Point between(const Point& from, const Point& to, double way) {
  return {between(from.x, to.x, way), between(from.y, to.y, way)};
}

template <typename T>
std::optional<T> valueAt(const Keyframes& keyframes, double fraction) {
  const auto& [times, values] = keyframes;
  if (!keyframes.areWellFormed() || !std::holds_alternative<T>(values.front())) return std::nullopt;
  const auto after = std::upper_bound(times.begin(), times.end(), fraction);
  const auto next = static_cast<std::size_t>(after - times.begin());
  if (next == 0) return std::get<T>(values.front());
  if (next == times.size()) return std::get<T>(values.back());
  const double way = (fraction - times[next - 1]) / (times[next] - times[next - 1]);
  return between(std::get<T>(values[next - 1]), std::get<T>(values[next]), way);
}

/// The value that an animation of a T shows; nullopt for one of another type.
template <typename T>
std::optional<T> valueAt(const AnimationSnapshot& animation, double time) {
  const bool hasBegun = animation.begin->isKnown();
  const double fraction = hasBegun ? (time - animation.begin->time()) / animation.duration : 0;
  if (animation.keyframes) return valueAt<T>(*animation.keyframes, fraction);
  const T* from = std::get_if<T>(&animation.fromValue);
  const T* to = std::get_if<T>(&animation.toValue);
  if (from == nullptr || to == nullptr) return std::nullopt;
  return between(*from, *to, animation.timingFunction.valueAt(fraction));
}

void apply(const AnimationSnapshot& animation, double time, Pose& pose) {
  if (animation.isOverAt(time)) return;
  switch (animation.keyPath) {
    case KeyPath::position:
      pose.position = valueAt<Point>(animation, time).value_or(pose.position);
      return;
    case KeyPath::opacity:
      pose.opacity = valueAt<double>(animation, time).value_or(pose.opacity);
      return;
    case KeyPath::scale:
      pose.scale = valueAt<double>(animation, time).value_or(pose.scale);
      return;
    case KeyPath::rotation:
      pose.rotation = valueAt<double>(animation, time).value_or(pose.rotation);
      return;
  }
}

bool anyMovesAt(const LayerSnapshot& layer, double time) {
  return movesAt(layer, time) ||
         std::any_of(layer.sublayers.begin(), layer.sublayers.end(),
                     [time](const LayerSnapshot& sublayer) { return anyMovesAt(sublayer, time); });
}

void beginAnimationsOf(const LayerSnapshot& layer, double time) {
  for (const AnimationSnapshot& animation : layer.animations) animation.begin->fix(time);
  for (const LayerSnapshot& sublayer : layer.sublayers) beginAnimationsOf(sublayer, time);
}

}  // namespace

bool AnimationSnapshot::isOverAt(double time) const {
  return !(duration > 0) || (begin->isKnown() && time >= begin->time() + duration);
}

bool Snapshot::movesAt(double time) const { return anyMovesAt(root, time); }

void Snapshot::beginAnimations(double time) const { beginAnimationsOf(root, time); }

Pose presentationOf(const LayerSnapshot& layer, double time) {
  Pose pose{layer.position, layer.scale, layer.opacity, layer.rotation};
  for (const AnimationSnapshot& animation : layer.animations) apply(animation, time, pose);
  return pose;
}

bool movesAt(const LayerSnapshot& layer, double time) {
  return std::any_of(
      layer.animations.begin(), layer.animations.end(),
      [time](const AnimationSnapshot& animation) { return !animation.isOverAt(time); });
}

}  // namespace pelmora::render

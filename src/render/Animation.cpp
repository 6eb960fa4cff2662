#include "render/Animation.h"

#include <algorithm>

namespace pelmora::render {

const char* description(KeyPath keyPath) {
  switch (keyPath) {
    case KeyPath::position:
      return "position";
    case KeyPath::opacity:
      return "opacity";
    case KeyPath::scale:
      return "transform.scale";
    case KeyPath::rotation:
      break;
  }
  return "transform.rotation.z";
}

bool Keyframes::areWellFormed() const {
  if (values.empty() || values.size() != keyTimes.size()) return false;
  double latest = 0;
  for (const double time : keyTimes) {
    if (!(time >= latest && time <= 1)) return false;
    latest = time;
  }
  return std::all_of(values.begin(), values.end(), [this](const AnimatableValue& value) {
    return value.index() == values.front().index();
  });
}

double durationOf(const Animation& animation) {
  return std::visit([](const auto& each) { return each.duration; }, animation);
}

}  // namespace pelmora::render

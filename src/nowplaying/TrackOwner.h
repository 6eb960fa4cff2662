#pragma once

#include "platform/Services.h"
#include "shared/Geometry.h"

namespace pelmora::render {
class Layer;
}

namespace pelmora::nowplaying {

/// What the track label needs of the view that it lies over. Thread: main.
class TrackOwner {
 public:
  virtual ~TrackOwner() = default;
  /// In the coordinates of what the view lies in.
  [[nodiscard]] virtual Rect frame() const = 0;
  [[nodiscard]] virtual bool isPreview() const = 0;
  [[nodiscard]] virtual render::Layer* layer() const = 0;
  [[nodiscard]] virtual const platform::Services& services() const = 0;
};

}  // namespace pelmora::nowplaying

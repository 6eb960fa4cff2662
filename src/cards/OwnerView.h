#pragma once

#include "platform/Services.h"
#include "shared/Geometry.h"

#include <memory>
#include <optional>
#include <string_view>

namespace pelmora::render {
class Layer;
}

namespace pelmora::cards {

/// What a card needs of the view that it is put on. Thread: main.
class OwnerView {
 public:
  virtual ~OwnerView() = default;
  [[nodiscard]] virtual Rect frame() const = 0;
  /// Device pixels in a point: artwork is drawn at that size.
  [[nodiscard]] virtual double backingScaleFactor() const = 0;
  [[nodiscard]] virtual render::Layer* layer() const = 0;
  /// The colour of the file label of that name; nullopt when it has none.
  [[nodiscard]] virtual std::optional<Color> colorOfLabel(std::string_view name) const = 0;
  [[nodiscard]] virtual const platform::Services& services() const = 0;
};

}  // namespace pelmora::cards

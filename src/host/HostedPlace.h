#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace pelmora::host {

/// A rectangle of the X server: device pixels, origin upper left of the root window, y downward.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;
};

/// What a window of a saver host stands for.
struct HostedPlace {
  std::size_t display = 0;  // position in the list of displays
  bool isPreview = false;
  bool operator==(const HostedPlace&) const = default;
};

/// The display that a host's window covers most of, the first one for a window on none of them; and
/// whether it is meant as a preview: it leaves more than half of that display uncovered, as a
/// picture in a dialog does. nullopt without displays.
[[nodiscard]] std::optional<HostedPlace> placeOf(const PixelRect& window,
                                                 const std::vector<PixelRect>& displays);

}  // namespace pelmora::host

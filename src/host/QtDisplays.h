#pragma once

#include "host/DisplayPlaces.h"
#include "platform/Displays.h"

#include <mutex>
#include <optional>
#include <vector>

class QScreen;

namespace pelmora::host {

/// The displays as Qt orders them at first, the primary one first; later each keeps its place
/// (`DisplayPlaces`), also while it is gone. Thread: `update` on the GUI thread, the rest on any
/// (`_mutex`).
class QtDisplays : public platform::Displays {
 public:
  QtDisplays();
  /// Reads the displays anew.
  void update();
  [[nodiscard]] std::vector<platform::Display> screens() const override;
  /// The display that a Qt screen is, as of the last update; nullopt when it is none of them, such
  /// as the one that Qt makes up where there is no display.
  [[nodiscard]] std::optional<platform::Display> displayOf(const QScreen* screen) const;

 private:
  mutable std::mutex _mutex;
  DisplayPlaces _places;
  std::vector<platform::Display> _screens;  // by place
};

/// Window-system rectangles (origin upper left, y downward) to the model's (origin lower left of
/// the first, y upward).
[[nodiscard]] std::vector<Rect> flipped(const std::vector<Rect>& geometries);

}  // namespace pelmora::host

#pragma once

#include "platform/Displays.h"

#include <mutex>

class QScreen;

namespace pelmora::host {

/// The displays as Qt orders them, primary first. Thread: `update` on the GUI thread, the rest on
/// any (`_mutex`).
class QtDisplays : public platform::Displays {
 public:
  QtDisplays();
  /// Reads the displays anew.
  void update();
  [[nodiscard]] std::vector<platform::Display> screens() const override;
  /// The display that a Qt screen is, as of the last update; nullopt when it is none of them.
  [[nodiscard]] std::optional<platform::Display> displayOf(const QScreen* screen) const;

 private:
  mutable std::mutex _mutex;
  std::vector<platform::Display> _screens;
};

/// Window-system rectangles (origin upper left, y downward) to the model's (origin lower left of
/// the first, y upward).
[[nodiscard]] std::vector<Rect> flipped(const std::vector<Rect>& geometries);

}  // namespace pelmora::host

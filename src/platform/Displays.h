#pragma once

#include "shared/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// One display as the desktop reports it.
struct Display {
  std::uint64_t id = 0;  // another for each display, as long as it keeps its place in the order
  std::string name;
  Rect frame;        // points; origin lower left of the primary display's, y upward
  double scale = 1;  // device pixels in a point

  bool operator==(const Display&) const = default;
};

/// The connected displays. Thread: any.
class Displays {
 public:
  virtual ~Displays() = default;
  /// In the desktop's order, the primary first. May be empty. In a run that lasts while displays
  /// come and go, each keeps its place, and one that has gone is listed until another takes it.
  [[nodiscard]] virtual std::vector<Display> screens() const = 0;
};

/// The window that a view is put into, as far as a view asks. Thread: main.
class Window {
 public:
  virtual ~Window() = default;
  /// The display that the window is on; nullopt when the desktop does not say.
  [[nodiscard]] virtual std::optional<Display> screen() const = 0;
  /// For log lines.
  [[nodiscard]] virtual std::string description() const = 0;
};

/// "{{x, y}, {width, height}}", for log lines.
[[nodiscard]] std::string describe(const Rect& rect);
[[nodiscard]] std::string describe(const Display& display);

}  // namespace pelmora::platform

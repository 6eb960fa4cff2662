#pragma once

#include "platform/Displays.h"

namespace pelmora::platform {

/// Displays that a test chooses: one of 1920 × 1080 at first. Thread: any, once chosen.
class FakeDisplays : public Displays {
 public:
  [[nodiscard]] std::vector<Display> screens() const override { return displays; }

  /// A display as the desktop would report it, its identifier and name made from `number`.
  [[nodiscard]] static Display display(std::uint64_t number, const Rect& frame, double scale = 1);

  std::vector<Display> displays{display(1, {{0, 0}, {1920, 1080}})};
};

/// A window on a display that a test chooses; on none at first. Thread: main.
class FakeWindow : public Window {
 public:
  FakeWindow() = default;
  explicit FakeWindow(std::optional<Display> on) : display(std::move(on)) {}

  [[nodiscard]] std::optional<Display> screen() const override { return display; }
  [[nodiscard]] std::string description() const override { return name; }

  std::optional<Display> display;
  std::string name = "the window";
};

}  // namespace pelmora::platform

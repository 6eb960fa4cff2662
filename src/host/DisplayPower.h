#pragma once

namespace pelmora::host {

/// Whether the displays are on, as far as it is one switch for all of them. Where a single one is
/// off, or covered, its window says so (`render::Presenter::isHidden`).
/// Thread: the module's main thread.
class DisplayPower {
 public:
  virtual ~DisplayPower() = default;
  /// Asked when a view has something new to show. Waits a few hundredths of a second at most.
  [[nodiscard]] virtual bool isAwake() = 0;
};

}  // namespace pelmora::host

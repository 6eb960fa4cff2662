#pragma once

#include <functional>
#include <string>

namespace pelmora::idle {

/// Something of the session that can keep the saver from starting.
/// Thread: main. Whoever makes one hands in what it calls when `isHeld` has changed.
class Inhibitor {
 public:
  virtual ~Inhibitor() = default;

  [[nodiscard]] virtual bool isHeld() const = 0;
  /// Who holds it, for the log.
  [[nodiscard]] virtual std::string holder() const = 0;
  /// Brings `isHeld` up to date, then calls `answered`, which may be at once.
  virtual void ask(std::function<void()> answered) = 0;
};

}  // namespace pelmora::idle

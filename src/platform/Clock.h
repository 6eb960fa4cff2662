#pragma once

#include "shared/ReferenceTime.h"

namespace pelmora::platform {

/// The only source of time. Thread: any.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Wall time; may jump when the user sets the clock.
  [[nodiscard]] virtual ReferenceTime now() const = 0;

  /// Seconds since an arbitrary start, never backward: what animations and timers run on.
  [[nodiscard]] virtual double mediaTime() const = 0;
};

}  // namespace pelmora::platform

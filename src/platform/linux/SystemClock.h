#pragma once

#include "platform/Clock.h"

namespace pelmora::platform {

/// The machine's clocks. Media time is CLOCK_MONOTONIC: it stands still while the machine sleeps.
class SystemClock : public Clock {
 public:
  [[nodiscard]] ReferenceTime now() const override;
  [[nodiscard]] double mediaTime() const override;
};

}  // namespace pelmora::platform

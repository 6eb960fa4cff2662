#pragma once

#include "shared/ReferenceTime.h"

namespace pelmora::platform {

/// The weekday of a moment in the user's time zone, 1 = Sunday … 7 = Saturday. Thread: any.
[[nodiscard]] int weekday(ReferenceTime moment);

/// The first moment of the day after that of `moment`, in the user's time zone: its midnight, or
/// what follows where the clocks are put forward at midnight. A moment that no calendar knows gives
/// the one 24 hours later. Thread: any.
[[nodiscard]] ReferenceTime beginOfNextDay(ReferenceTime moment);

}  // namespace pelmora::platform

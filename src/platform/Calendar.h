#pragma once

#include "shared/ReferenceTime.h"

namespace pelmora::platform {

/// The weekday of a moment in the user's time zone, 1 = Sunday … 7 = Saturday. Thread: any.
[[nodiscard]] int weekday(ReferenceTime moment);

}  // namespace pelmora::platform

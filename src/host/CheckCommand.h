#pragma once

#include "host/CheckRun.h"
#include "host/Options.h"

namespace pelmora::host {

/// What `pelmora check` was asked for, or what is wrong with it. Thread: any.
[[nodiscard]] Result<CheckRequest> parseCheckRequest(const Arguments& arguments);
[[nodiscard]] std::span<const Option> checkOptions();

}  // namespace pelmora::host

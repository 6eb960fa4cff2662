#pragma once

#include "shared/Result.h"

#include <cstddef>

namespace pelmora::host {

/// As many open files as the toolkit, the index and a picture on its way take together. With fewer,
/// libraries end the process by a signal, or nothing is shown for long.
inline constexpr std::size_t kFewestDescriptors = 40;

/// Raises the limit of open files to the fewest that do, where the system allows it. An error: it
/// does not. Thread: any.
[[nodiscard]] Status ensureDescriptors(std::size_t fewest = kFewestDescriptors);

}  // namespace pelmora::host

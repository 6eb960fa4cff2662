#pragma once

#include <chrono>
#include <functional>

namespace pelmora::platform {

/// How long others are waited for.
struct Patience {
  std::chrono::milliseconds atMost{3000};
  std::function<bool()> isOver = [] { return false; };  // ends it early
};

/// Locks an open file (flock), which the system's own waiting does without a limit of time. False:
/// it was not to be had, and `errno` says why: EWOULDBLOCK where others have it. Thread: any.
[[nodiscard]] bool lockFile(int descriptor, const Patience& patience);

}  // namespace pelmora::platform

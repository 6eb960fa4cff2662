#pragma once

#include "platform/ScriptRunner.h"
#include "platform/Services.h"

namespace pelmora::nowplaying {

// The music player of the system. Which application it is, and which script asks it, depends on the
// system's version.

/// Whether it runs; it is never launched. Thread: any.
[[nodiscard]] bool isMusicPlayerRunning(const platform::Services& services);

/// Runs the script that asks it for its current track, a text among the module's resources. Nothing
/// where the script is missing. Thread: any; waits for the player, at most a second.
[[nodiscard]] platform::ScriptResult runTrackScript(const platform::Services& services);

}  // namespace pelmora::nowplaying

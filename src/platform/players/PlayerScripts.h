#pragma once

#include "platform/players/TrackSource.h"
#include "platform/ScriptRunner.h"
#include "platform/Services.h"

#include <string>

namespace pelmora::platform::players {

/// Runs track scripts against the session's music players. Thread: any. Errors: a text that is no
/// script, one for an application that does not run, and a player without a track or an answer all
/// return nothing.
class PlayerScripts : public ScriptRunner {
 public:
  /// `players` outlives it, and answers for the application that such a system knows.
  PlayerScripts(TrackSource& players, const SystemVersion& version);

  [[nodiscard]] ScriptResult execute(const std::string& script) override;

 private:
  TrackSource& _players;
  const std::string _identifier;
};

}  // namespace pelmora::platform::players

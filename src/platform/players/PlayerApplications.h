#pragma once

#include "platform/players/TrackSource.h"
#include "platform/RunningApplications.h"
#include "platform/Services.h"

#include <string>
#include <vector>

namespace pelmora::platform::players {

/// The identifier under which a system of that version knows its music player.
[[nodiscard]] std::string playerIdentifier(const SystemVersion& version);

/// The music players as the applications that run: one, while there is any player. Thread: any.
class PlayerApplications : public RunningApplications {
 public:
  /// `players` outlives it.
  PlayerApplications(const TrackSource& players, const SystemVersion& version)
      : _players(players), _identifier(playerIdentifier(version)) {}

  [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;

 private:
  const TrackSource& _players;
  const std::string _identifier;
};

}  // namespace pelmora::platform::players

#include "platform/players/PlayerScripts.h"

#include "platform/players/PlayerApplications.h"
#include "platform/players/TrackScript.h"

#include <optional>

namespace pelmora::platform::players {

PlayerScripts::PlayerScripts(TrackSource& players, const SystemVersion& version)
    : _players(players), _identifier(playerIdentifier(version)) {}

ScriptResult PlayerScripts::execute(const std::string& script) {
  const std::optional<TrackScript> parsed = parseTrackScript(script);
  if (!parsed || parsed->application != _identifier) return {};
  const std::optional<Track> track = _players.currentTrack();
  if (!track) return {};
  return recordOf(*parsed, *track);
}

}  // namespace pelmora::platform::players

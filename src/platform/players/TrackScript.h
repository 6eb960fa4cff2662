#pragma once

#include "platform/players/PlayerState.h"
#include "platform/ScriptRunner.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pelmora::platform::players {

enum class TrackProperty : std::uint8_t { title, artist, album, userRating };

/// A script that asks a player for its track; docs/track-scripts.md tells how it is written.
/// Thread: a plain value.
struct TrackScript {
  std::string application;                      // as "com.apple.Music"
  std::map<std::string, TrackProperty> fields;  // by keywords of four letters; not empty
};

/// Reads a script's text, which may be any bytes, no more than 4096; nullopt where it is no script.
[[nodiscard]] std::optional<TrackScript> parseTrackScript(std::string_view text);

/// What the script returns of a track: the fields that the track has.
[[nodiscard]] ScriptRecord recordOf(const TrackScript& script, const Track& track);

}  // namespace pelmora::platform::players

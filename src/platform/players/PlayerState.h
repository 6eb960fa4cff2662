#pragma once

#include "platform/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>

namespace pelmora::platform::players {

/// What a player tells of a track. Texts from the bus are never empty, and fit to be shown
/// (`trackText`).
struct Track {
  std::optional<std::string> name{};
  std::optional<std::string> artist{};  // several are joined by ", "
  std::optional<std::string> album{};
  std::optional<double> rating{};  // 0 to 100
  bool operator==(const Track&) const = default;
};

/// In the order in which players come to count.
enum class Playback : std::uint8_t { stopped, paused, playing };

/// What a player does. Thread: a plain value.
struct PlayerState {
  Playback playback = Playback::stopped;
  /// Nothing where the player is stopped, or tells neither name nor artist nor album.
  std::optional<Track> track{};
  bool operator==(const PlayerState&) const = default;
};

/// Reads the properties of "org.mpris.MediaPlayer2.Player". They are untrusted: what is of a wrong
/// type, or no number from 0 to 1 for a rating, is taken as absent.
[[nodiscard]] PlayerState playerState(const plist::Dictionary& properties);

}  // namespace pelmora::platform::players

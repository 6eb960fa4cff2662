#pragma once

#include "platform/players/PlayerState.h"

#include <optional>

namespace pelmora::platform::players {

/// The music players of the session, seen as one.
class TrackSource {
 public:
  virtual ~TrackSource() = default;
  /// Whether there is one, as far as is known: never waits. Thread: any.
  [[nodiscard]] virtual bool isPlayerThere() const = 0;
  /// Asks the player that counts what it plays; nothing where it does not answer within a second.
  /// Thread: any.
  [[nodiscard]] virtual std::optional<Track> currentTrack() = 0;
};

}  // namespace pelmora::platform::players

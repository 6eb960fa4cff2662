#pragma once

#include "platform/NotificationCenter.h"
#include "platform/players/PlayerState.h"

#include <optional>

namespace pelmora::platform::players {

/// When the module hears of a track: a moment after it changed, so that players which tell of a
/// track bit by bit, or of two of which one takes over, make one notification; and none where
/// nothing came of it. Thread: one. Units: seconds of any clock that never goes back.
class TrackNews {
 public:
  /// `settle` is how long a change waits.
  explicit TrackNews(double settle) : _settle(settle) {}

  /// What is played now.
  void set(const std::optional<Track>& track, double now);
  /// The module knows of this track without a notification.
  void told(const Track& track);
  /// The notification to post now, if any.
  [[nodiscard]] std::optional<Notification> take(double now);
  [[nodiscard]] std::optional<double> nextDue() const { return _due; }

 private:
  const double _settle;
  std::optional<Track> _track;
  std::optional<Track> _told;
  std::optional<double> _due;
};

/// "com.apple.iTunes.playerInfo", with "Name", "Artist", "Album" and "Rating" as far as they are
/// known.
[[nodiscard]] Notification playerInfo(const std::optional<Track>& track);

}  // namespace pelmora::platform::players

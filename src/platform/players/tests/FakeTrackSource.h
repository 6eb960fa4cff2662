#pragma once

#include "platform/players/TrackSource.h"

namespace pelmora::platform::players {

/// Players that play what a test says. Thread: one.
class FakeTrackSource : public TrackSource {
 public:
  [[nodiscard]] bool isPlayerThere() const override { return isThere; }
  [[nodiscard]] std::optional<Track> currentTrack() override {
    ++asked;
    return track;
  }

  bool isThere = true;
  std::optional<Track> track;
  int asked = 0;
};

}  // namespace pelmora::platform::players

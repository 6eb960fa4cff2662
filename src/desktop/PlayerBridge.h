#pragma once

#include "desktop/PlayerWatch.h"
#include "desktop/SessionBus.h"
#include "platform/players/TrackSource.h"

#include <atomic>
#include <memory>
#include <optional>

namespace pelmora::desktop {

/// The music players of the session. What they play is put into an inbox, as
/// "com.apple.iTunes.playerInfo": it reaches the observers of this process alone, since every saver
/// of the session sees the players itself.
/// Thread: any but the bus's. Errors: without a bus there are no players.
class PlayerBridge : public platform::players::TrackSource {
 public:
  /// The bus and the clock outlive it.
  PlayerBridge(SessionBus& bus, const platform::Clock& clock,
               std::shared_ptr<NotificationInbox> inbox,
               const platform::players::PlayerPace& pace = {});

  [[nodiscard]] bool isPlayerThere() const override { return *_isPlayerThere; }
  /// Waits as long as the pace has patience.
  [[nodiscard]] std::optional<platform::players::Track> currentTrack() override;

 private:
  const std::chrono::duration<double> _patience;
  const std::shared_ptr<std::atomic<bool>> _isPlayerThere =
      std::make_shared<std::atomic<bool>>(false);
  OnBus<PlayerWatch> _watch;
};

}  // namespace pelmora::desktop

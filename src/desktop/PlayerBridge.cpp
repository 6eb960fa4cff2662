#include "desktop/PlayerBridge.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace pelmora::desktop {

namespace {

using platform::players::Track;

/// What the bus's thread answers to one that waits, or has waited long enough.
struct Reply {
  std::mutex mutex;
  std::condition_variable arrived;
  bool isThere = false;        // under the mutex
  bool isWaitedFor = true;     // under the mutex
  std::optional<Track> track;  // under the mutex
};

}  // namespace

PlayerBridge::PlayerBridge(SessionBus& bus, const platform::Clock& clock,
                           std::shared_ptr<NotificationInbox> inbox,
                           const platform::players::PlayerPace& pace)
    : _patience(pace.patience),
      _watch(bus,
             [around = PlayerWatch::Surroundings{clock, pace, std::move(inbox), _isPlayerThere}](
                 const QDBusConnection& connection) {
               return std::make_unique<PlayerWatch>(connection, around);
             }) {}

std::optional<Track> PlayerBridge::currentTrack() {
  if (!isPlayerThere()) return std::nullopt;
  const auto reply = std::make_shared<Reply>();
  _watch.call([reply](PlayerWatch& watch) {
    watch.ask([reply](const std::optional<Track>& track) {
      const std::lock_guard lock(reply->mutex);
      reply->isThere = true;
      reply->track = track;
      reply->arrived.notify_all();
      return reply->isWaitedFor;
    });
  });
  std::unique_lock lock(reply->mutex);
  reply->arrived.wait_for(lock, _patience, [&reply] { return reply->isThere; });
  reply->isWaitedFor = false;
  return reply->track;
}

}  // namespace pelmora::desktop

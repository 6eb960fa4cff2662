#include "platform/players/TrackNews.h"

namespace pelmora::platform::players {

void TrackNews::set(const std::optional<Track>& track, double now) {
  _track = track;
  if (_track == _told) {
    _due.reset();
  } else if (!_due) {
    _due = now + _settle;
  }
}

void TrackNews::told(const Track& track) {
  _told = track;
  if (_track == _told) _due.reset();
}

std::optional<Notification> TrackNews::take(double now) {
  if (!_due || *_due > now) return std::nullopt;
  _due.reset();
  _told = _track;
  return playerInfo(_track);
}

Notification playerInfo(const std::optional<Track>& track) {
  Notification notification{.name = "com.apple.iTunes.playerInfo", .object = {}, .userInfo = {}};
  if (!track) return notification;
  const auto tell = [&notification](const char* key, const auto& value) {
    if (value) notification.userInfo.emplace(key, *value);
  };
  tell("Name", track->name);
  tell("Artist", track->artist);
  tell("Album", track->album);
  tell("Rating", track->rating);
  return notification;
}

}  // namespace pelmora::platform::players

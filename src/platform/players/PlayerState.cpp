#include "platform/players/PlayerState.h"

#include "platform/players/TrackText.h"

#include <string_view>
#include <utility>

namespace pelmora::platform::players {

namespace {

const plist::Value* find(const plist::Dictionary& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? nullptr : &found->second;
}

std::string joined(const plist::Array& texts) {
  std::string all;
  for (const plist::Value& each : texts) {
    const auto* text = each.get<std::string>();
    std::string shown = text ? trackText(*text) : std::string();
    if (shown.empty()) continue;
    if (!all.empty()) all += ", ";
    all += shown;
    if (all.size() > 4 * kLongestTrackText) break;  // what follows is cut off anyway
  }
  return trackText(all);
}

/// A text, or several in one; nullopt where there is none to show.
std::optional<std::string> textOf(const plist::Value* value) {
  std::string text;
  if (value && value->get<std::string>()) text = trackText(*value->get<std::string>());
  if (value && value->get<plist::Array>()) text = joined(*value->get<plist::Array>());
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<double> ratingOf(const plist::Value* value) {
  if (!value || !(value->get<double>() || value->get<std::int64_t>())) return std::nullopt;
  const double rating = value->doubleValue();
  if (!(rating >= 0 && rating <= 1)) return std::nullopt;
  return rating * 100;
}

Playback playbackOf(const plist::Value* value) {
  const auto* text = value ? value->get<std::string>() : nullptr;
  if (!text) return Playback::stopped;
  if (*text == "Playing") return Playback::playing;
  return *text == "Paused" ? Playback::paused : Playback::stopped;
}

}  // namespace

PlayerState playerState(const plist::Dictionary& properties) {
  PlayerState state{.playback = playbackOf(find(properties, "PlaybackStatus"))};
  const plist::Value* metadata = find(properties, "Metadata");
  const auto* told = metadata ? metadata->get<plist::Dictionary>() : nullptr;
  if (!told || state.playback == Playback::stopped) return state;
  Track track{.name = textOf(find(*told, "xesam:title")),
              .artist = textOf(find(*told, "xesam:artist")),
              .album = textOf(find(*told, "xesam:album")),
              .rating = ratingOf(find(*told, "xesam:userRating"))};
  if (track.name || track.artist || track.album) state.track = std::move(track);
  return state;
}

}  // namespace pelmora::platform::players

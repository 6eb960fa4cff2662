#include "platform/players/PlayerList.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace pelmora::platform::players {

namespace {

constexpr std::string_view kPlayerNames = "org.mpris.MediaPlayer2.";
constexpr std::string_view kMirror = "org.mpris.MediaPlayer2.playerctld";  // repeats other players
constexpr std::size_t kMostPlayers = 64;
constexpr std::size_t kMostNames = 8;
constexpr int kMostFailures = 3;

}  // namespace

void PlayerList::nameChanged(std::string_view name, const std::string& owner, double now) {
  if (!name.starts_with(kPlayerNames) || name == kMirror) return;
  for (Player& each : _players) {
    if (each.owner == owner) continue;
    if (const auto known = each.names.find(name); known != each.names.end()) {
      each.names.erase(known);
    }
  }
  std::erase_if(_players, [](const Player& each) { return each.names.empty() && !each.isAsked; });
  if (!owner.empty()) add(name, owner, now);
}

void PlayerList::add(std::string_view name, const std::string& owner, double now) {
  Player* player = find(owner);
  if (!player) {
    if (_players.size() >= kMostPlayers) return;
    player = &_players.emplace_back();
    player->owner = owner;
  }
  if (player->names.size() >= kMostNames) return;
  if (player->names.empty()) {
    player->state = {};
    player->askAt = now + _pace.interval;
  }
  player->names.emplace(name);
}

void PlayerList::hint(std::string_view owner, double now) {
  Player* player = find(owner);
  if (!player || player->names.empty()) return;
  player->failures = 0;
  player->askAt = std::min(player->askAt.value_or(now + _pace.interval), now + _pace.interval);
}

std::vector<std::string> PlayerList::takeDue(double now) {
  std::vector<std::string> due;
  for (Player& each : _players) {
    if (each.isAsked || !each.askAt || *each.askAt > now) continue;
    each.askAt.reset();
    each.askedAt = now;
    each.isAsked = true;
    due.push_back(each.owner);
  }
  return due;
}

void PlayerList::answered(std::string_view owner, const std::optional<PlayerState>& state,
                          double now) {
  Player* player = find(owner);
  if (!player || !player->isAsked) return;
  player->isAsked = false;
  if (player->names.empty()) {
    std::erase_if(_players, [owner](const Player& each) { return each.owner == owner; });
    return;
  }
  player->isSilent = !state;
  if (!state) {
    if (++player->failures < kMostFailures && !player->askAt) player->askAt = now + _pace.retry;
    return;
  }
  player->failures = 0;
  const bool played = player->state.playback == Playback::playing;
  if (played != (state->playback == Playback::playing)) player->playedLast = ++_plays;
  player->state = *state;
}

std::optional<double> PlayerList::nextDue() const {
  std::optional<double> next;
  for (const Player& each : _players) {
    if (each.askAt && !each.isAsked) next = std::min(next.value_or(*each.askAt), *each.askAt);
  }
  return next;
}

bool PlayerList::has(std::string_view owner) const {
  const Player* player = find(owner);
  return player && !player->names.empty();
}

std::optional<Track> PlayerList::track() const {
  const Player* player = counting();
  return player ? player->state.track : std::nullopt;
}

std::string PlayerList::refresh(double now) {
  const Player* first = counting();
  if (!first) return {};
  Player* player = find(first->owner);
  // One that has just failed to answer is not waited for again and again.
  const double pause = player->isSilent ? _pace.patience + _pace.retry : _pace.interval;
  if (!player->askedAt || now - *player->askedAt >= pause) player->askAt = now;
  return player->owner;
}

bool PlayerList::isAsked(std::string_view owner) const {
  const Player* player = find(owner);
  return player && player->isAsked;
}

std::optional<Track> PlayerList::answeredTrack(std::string_view owner) const {
  const Player* player = find(owner);
  if (!player || player->names.empty() || player->isSilent) return std::nullopt;
  return player->state.track;
}

const PlayerList::Player* PlayerList::find(std::string_view owner) const {
  const auto found = std::find_if(_players.begin(), _players.end(),
                                  [owner](const Player& each) { return each.owner == owner; });
  return found == _players.end() ? nullptr : &*found;
}

PlayerList::Player* PlayerList::find(std::string_view owner) {
  return const_cast<Player*>(std::as_const(*this).find(owner));
}

const PlayerList::Player* PlayerList::counting() const {
  const auto rank = [](const Player& each) {
    return std::tuple(!each.names.empty(), each.state.playback, each.playedLast);
  };
  const auto first =
      std::max_element(_players.begin(), _players.end(),
                       [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
  return first == _players.end() || first->names.empty() ? nullptr : &*first;
}

}  // namespace pelmora::platform::players

#pragma once

#include "platform/players/PlayerState.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform::players {

/// How often players are asked, in seconds.
struct PlayerPace {
  double interval = 0.2;  // from the news of a change to the question, and between two questions
  double patience = 1.0;  // for an answer
  double retry = 2.0;     // from a failure to the next question
  double settle = 0.2;    // from a change to its notification
};

/// The music players of a session: who they are, when to ask each of them what it plays, and which
/// one counts. It knows no bus and no clock: whoever drives it tells what happens and when, and
/// asks those players that it names. A player is a connection to the bus, its owner, whatever the
/// number of its names. A player that says at every moment that it changed is still asked once an
/// interval only, and never twice at a time. Thread: one. Units: seconds of any clock that never
/// goes back. Errors: what players say is untrusted; more than 64 of them, or 8 names of one, are
/// not looked at.
class PlayerList {
 public:
  explicit PlayerList(const PlayerPace& pace) : _pace(pace) {}

  /// A name on the bus has another owner; "" when it has none. Names of no player are ignored.
  void nameChanged(std::string_view name, const std::string& owner, double now);
  /// The bus is gone, and with it all players.
  void clear() { _players.clear(); }
  /// A player may have changed.
  void hint(std::string_view owner, double now);

  /// Whom to ask now, each to be followed by one `answered`.
  [[nodiscard]] std::vector<std::string> takeDue(double now);
  /// What a player answered; nullopt when it did not, or not in time. It is then still what it was,
  /// and asked again, three times in a row at most.
  void answered(std::string_view owner, const std::optional<PlayerState>& state, double now);
  /// When there is somebody to be asked; nullopt without need.
  [[nodiscard]] std::optional<double> nextDue() const;

  [[nodiscard]] bool has(std::string_view owner) const;
  [[nodiscard]] bool isEmpty() const { return counting() == nullptr; }
  /// What the player that counts plays: of those that play, then of those that pause, then of all,
  /// the one that played last.
  [[nodiscard]] std::optional<Track> track() const;

  /// Makes the player that counts due now, unless it was asked within the last interval; gives back
  /// its owner, or "" without a player.
  std::string refresh(double now);
  [[nodiscard]] bool isAsked(std::string_view owner) const;
  /// What that player plays by its latest answer; nothing if that failed.
  [[nodiscard]] std::optional<Track> answeredTrack(std::string_view owner) const;

 private:
  struct Player {
    std::string owner;
    std::set<std::string, std::less<>> names;  // empty: it has gone, and still owes an answer
    PlayerState state;
    std::uint64_t playedLast = 0;  // when it last began or ended to play, counted in such events
    std::optional<double> askAt;
    std::optional<double> askedAt;
    bool isAsked = false;
    bool isSilent = false;  // it did not answer when it was asked last
    int failures = 0;       // in a row, and without news of it
  };

  [[nodiscard]] const Player* find(std::string_view owner) const;
  [[nodiscard]] Player* find(std::string_view owner);
  [[nodiscard]] const Player* counting() const;
  void add(std::string_view name, const std::string& owner, double now);

  const PlayerPace _pace;
  std::vector<Player> _players;  // in the order in which they came
  std::uint64_t _plays = 0;
};

}  // namespace pelmora::platform::players

#pragma once

#include <optional>

namespace pelmora::idle {

/// When the saver runs: what the user, the inhibitors and the saver do goes in, what is to be done
/// comes out.
///
/// The user becomes idle → the inhibitors are asked → the saver starts, unless one is held; then it
/// starts when the user has been idle, and nothing held, for the whole delay. Activity ends it. A
/// saver that ends by itself is not started again before the user was active.
/// Thread: a plain value. Units: seconds of `Clock::mediaTime`.
class IdlePolicy {
 public:
  enum class State { active, asking, waiting, running, ending, ended };
  /// What to do: ask the inhibitors, then call `answered`; start or stop the saver, and call
  /// `saverEnded` when it is no more, however that came.
  enum class Action { none, ask, start, stop };

  explicit IdlePolicy(double delay) : _delay(delay) {}

  [[nodiscard]] Action becameIdle();
  [[nodiscard]] Action becameActive();
  /// Whether anything is held that keeps the saver from starting. It never ends one that runs.
  [[nodiscard]] Action inhibitionChanged(bool isInhibited, double now);
  /// Someone asked for the delay to count anew.
  [[nodiscard]] Action postponed(double now);
  [[nodiscard]] Action answered(double now);
  [[nodiscard]] Action timeReached(double now);
  [[nodiscard]] Action saverEnded();

  [[nodiscard]] State state() const { return _state; }
  [[nodiscard]] bool isInhibited() const { return _isInhibited; }
  /// When to call `timeReached`: nothing unless it waits for that.
  [[nodiscard]] std::optional<double> wakeAt() const;

 private:
  [[nodiscard]] Action consider(double now);

  const double _delay;
  State _state = State::active;
  bool _isIdle = false;
  bool _isInhibited = false;
  std::optional<double> _freeSince;  // when the last inhibitor went, if there ever was one
};

}  // namespace pelmora::idle

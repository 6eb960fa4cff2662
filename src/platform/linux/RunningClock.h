#pragma once

#include "platform/Clock.h"

#include <mutex>

namespace pelmora::platform {

/// A clock whose media time stands still also while the process is stopped, as some hosts stop
/// their savers behind a dialog: what moves goes on from where it was. It hears of the continuation
/// by SIGCONT, and takes the time since it was last read, which is a frame's while anything moves.
/// Thread: any.
class RunningClock : public Clock {
 public:
  /// `machine` outlives it. SIGCONT is handled from now on.
  explicit RunningClock(const Clock& machine);

  [[nodiscard]] ReferenceTime now() const override { return _machine.now(); }
  [[nodiscard]] double mediaTime() const override;

 private:
  const Clock& _machine;
  mutable std::mutex _mutex;  // guards all below
  mutable unsigned _continuations;
  mutable double _last;         // when it was read, by the machine
  mutable double _stopped = 0;  // seconds in all
};

}  // namespace pelmora::platform

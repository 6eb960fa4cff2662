#pragma once

#include "platform/Clock.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "shared/FilePath.h"

#include <functional>

namespace pelmora::platform {

/// Whose turn it is to read files into an index that several savers share (one for each monitor is
/// usual), so that not all of them read the same ones at the same time. No more than that: a saver
/// that was stopped while it had the turn is not waited for long, and the index is right without.
/// Thread: one.
class IndexTurn {
 public:
  /// `file` is locked for it, and made if missing; an empty path: the turn is nobody's. The clock
  /// outlives it.
  IndexTurn(FilePath file, const Clock& clock, Patience patience);

  /// Has the turn until it ends.
  class Held {
   public:
    explicit Held(int descriptor) : _descriptor(descriptor) {}
    ~Held();
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    /// False: it was not to be had in time.
    [[nodiscard]] bool isOurs() const { return _descriptor >= 0; }

   private:
    const int _descriptor;
  };

  /// Waits for the turn; where that was in vain, it is not waited for again for a while.
  [[nodiscard]] Held take();

  static constexpr double kUnwaited = 60;  // seconds

 private:
  const FilePath _file;
  const Clock& _clock;
  const Patience _patience;
  FileDescriptor _descriptor;
  double _waitsAgain = 0;  // the clock's media time from which on it is waited for
};

}  // namespace pelmora::platform

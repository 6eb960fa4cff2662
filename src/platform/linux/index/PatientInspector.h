#pragma once

#include "platform/Clock.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/index/EmbeddedMetadata.h"
#include "platform/Log.h"
#include "shared/Result.h"

#include <cstddef>
#include <functional>
#include <span>
#include <utility>

namespace pelmora::platform {

/// Has read what is embedded in files; where no inspector is to be had for that, it asks for none
/// for a minute, and for twice as long each time in a row, an hour at most. Thread: one. Units:
/// seconds of the clock's media time. Errors: one log line, and no other until a file was read.
class PatientInspector {
 public:
  using Take = std::function<void(std::size_t index, EmbeddedMetadata embedded)>;
  /// What takes an answer says whether more are wanted.
  using TakeNext = std::function<bool(std::size_t index, EmbeddedMetadata embedded)>;
  /// Reads open files in their order. An error: the rest of them was not looked at.
  using Inspect =
      std::function<Status(std::span<const FileDescriptor> files, const TakeNext& take)>;

  static constexpr double kShortestPause = 60;
  static constexpr double kLongestPause = 3600;

  /// The clock and the log outlive it. `isOver` is asked between files.
  PatientInspector(
      Inspect inspect, const Clock& clock, Log& log,
      std::function<bool()> isOver = [] { return false; })
      : _inspect(std::move(inspect)), _clock(clock), _log(log), _isOver(std::move(isOver)) {}

  /// Files that `take` is not called for were not looked at: it waits, from now on at the latest,
  /// or it is over.
  void inspect(std::span<const FileDescriptor> files, const Take& take);

  [[nodiscard]] bool isWaiting() const { return _clock.mediaTime() < _waitsUntil; }
  [[nodiscard]] double waitsUntil() const { return _waitsUntil; }

 private:
  void waitBecauseOf(const Error& problem);

  const Inspect _inspect;
  const Clock& _clock;
  Log& _log;
  const std::function<bool()> _isOver;
  double _pause = 0;  // the last one; 0: a file was read since
  double _waitsUntil = 0;
};

}  // namespace pelmora::platform

#include "platform/linux/index/PatientInspector.h"

#include <algorithm>

namespace pelmora::platform {

void PatientInspector::inspect(std::span<const FileDescriptor> files, const Take& take) {
  if (isWaiting()) return;
  const Status status = _inspect(files, [&](std::size_t index, EmbeddedMetadata embedded) {
    if (embedded) _pause = 0;
    take(index, std::move(embedded));
    return !_isOver();
  });
  if (!status) waitBecauseOf(status.error());
}

void PatientInspector::waitBecauseOf(const Error& problem) {
  if (_pause == 0) {
    _log.print("Pelmora: What is embedded in pictures cannot be read for now: %s",
               problem.message.c_str());
  }
  _pause = std::clamp(2 * _pause, kShortestPause, kLongestPause);
  _waitsUntil = _clock.mediaTime() + _pause;
}

}  // namespace pelmora::platform

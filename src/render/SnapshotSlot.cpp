#include "render/SnapshotSlot.h"

#include "platform/Clock.h"
#include "render/Snapshot.h"

#include <utility>

namespace pelmora::render {

void SnapshotSlot::put(std::shared_ptr<const Snapshot> snapshot) {
  const std::lock_guard lock(_mutex);
  _newest = std::move(snapshot);
  if (!_isShown && _newest) _newest->beginAnimations(_clock.mediaTime());
}

std::shared_ptr<const Snapshot> SnapshotSlot::newest() const {
  const std::lock_guard lock(_mutex);
  return _newest;
}

void SnapshotSlot::setShown(bool isShown) {
  const std::lock_guard lock(_mutex);
  _isShown = isShown;
  _wasShown = _wasShown || isShown;
  if (!_isShown && _newest) _newest->beginAnimations(_clock.mediaTime());
}

bool SnapshotSlot::isHidden() const {
  const std::lock_guard lock(_mutex);
  return _wasShown && !_isShown;
}

}  // namespace pelmora::render

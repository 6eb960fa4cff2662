#pragma once

#include <memory>
#include <mutex>

namespace pelmora::platform {
class Clock;
}

namespace pelmora::render {

struct Snapshot;

/// Where the module's thread leaves snapshots and a window picks up the newest. It sees to it that
/// animations which the window will not show begin all the same.
/// Thread: any.
class SnapshotSlot {
 public:
  explicit SnapshotSlot(const platform::Clock& clock) : _clock(clock) {}

  void put(std::shared_ptr<const Snapshot> snapshot);
  /// The newest; null before the first.
  [[nodiscard]] std::shared_ptr<const Snapshot> newest() const;
  /// Whether frames are being shown; at first they are not.
  void setShown(bool isShown);
  /// Whether frames were shown once, and are no more.
  [[nodiscard]] bool isHidden() const;

 private:
  const platform::Clock& _clock;
  mutable std::mutex _mutex;  // guards what follows
  std::shared_ptr<const Snapshot> _newest;
  bool _isShown = false;
  bool _wasShown = false;
};

}  // namespace pelmora::render

#pragma once

#include "platform/linux/CurrentMounts.h"

#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace pelmora::platform {

/// The mounted file systems whose files are on other machines, or come from other programs, so that
/// a look at one may never end. Thread: any.
class RemoteMounts {
 public:
  explicit RemoteMounts(std::shared_ptr<CurrentMounts> current) : _current(std::move(current)) {}

  /// Whether there is any.
  [[nodiscard]] bool hasAny();
  /// The point of the one that a path lies on, its symbolic links not regarded; nullopt for others.
  [[nodiscard]] std::optional<FilePath> pointOf(const FilePath& path);
  /// The point of the one that a path leads to by the symbolic links that this machine's storage
  /// has in it: nothing on a remote one is looked at. nullopt for others, and for circles.
  [[nodiscard]] std::optional<FilePath> pointBehind(const FilePath& path);

 private:
  /// What is mounted now where any of it is remote, else null.
  [[nodiscard]] std::shared_ptr<const MountTable> tableWithRemote();

  const std::shared_ptr<CurrentMounts> _current;
  std::mutex _mutex;                         // guards all below
  std::shared_ptr<const MountTable> _table;  // which `_hasRemote` is about
  bool _hasRemote = false;
};

}  // namespace pelmora::platform

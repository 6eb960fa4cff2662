#pragma once

#include "platform/FileDescriptor.h"
#include "platform/linux/MountTable.h"

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace pelmora::platform {

/// The mounted file systems whose files are on other machines, or come from other programs, so that
/// a look at one may never end. Read anew when something was mounted or unmounted. Thread: any.
class RemoteMounts {
 public:
  using Reader = std::function<MountTable()>;

  RemoteMounts();
  /// Reads what is mounted by `read`, each time that it is asked.
  explicit RemoteMounts(Reader read) : _read(std::move(read)) {}

  /// Whether there is any.
  [[nodiscard]] bool hasAny();
  /// The point of the one that a path lies on, its symbolic links not regarded; nullopt for others.
  [[nodiscard]] std::optional<FilePath> pointOf(const FilePath& path);
  /// The point of the one that a path leads to by the symbolic links that this machine's storage
  /// has in it: nothing on a remote one is looked at. nullopt for others, and for circles.
  [[nodiscard]] std::optional<FilePath> pointBehind(const FilePath& path);

 private:
  void update();
  [[nodiscard]] bool hasChanged();

  const Reader _read;
  FileDescriptor _mountInfo;  // tells of changes; closed where the reader is another's
  std::mutex _mutex;          // guards all below
  bool _isRead = false;
  MountTable _mounts;
  bool _hasRemote = false;
};

}  // namespace pelmora::platform

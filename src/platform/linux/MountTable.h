#pragma once

#include "shared/FilePath.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform {

/// One mounted filesystem, or a part of one.
struct Mount {
  FilePath point;
  FilePath root;       // the part of the filesystem that is seen at `point`
  std::string type;    // such as "ext4"
  std::string source;  // such as "/dev/sda1" or "server:/export"

  /// Whether it is on a disk or in memory, so that a look at it never waits for another machine or
  /// another program.
  [[nodiscard]] bool isLocalStorage() const;
  /// A path at or below `point` as the filesystem itself calls it.
  [[nodiscard]] FilePath pathInFilesystem(const FilePath& path) const;
  /// The reverse; an empty path when it is not seen here.
  [[nodiscard]] FilePath pathHere(const FilePath& pathInFilesystem) const;
};

/// Whether `path` is `folder` or below it.
[[nodiscard]] bool isAtOrBelow(const FilePath& path, const FilePath& folder);

/// What is mounted where. Thread: a plain value.
class MountTable {
 public:
  /// From the text of a `mountinfo` file; lines that make no sense are passed over.
  [[nodiscard]] static MountTable parse(std::string_view mountInfo);
  /// What this process sees now; empty when it cannot be told.
  [[nodiscard]] static MountTable ofThisProcess();

  [[nodiscard]] const std::vector<Mount>& mounts() const { return _mounts; }
  /// The mount that a path without symbolic links lies on; nullptr when there is none.
  [[nodiscard]] const Mount* mountOf(const FilePath& path) const;

 private:
  std::vector<Mount> _mounts;
};

}  // namespace pelmora::platform

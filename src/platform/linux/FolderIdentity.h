#pragma once

#include "shared/FilePath.h"

#include <cstdint>
#include <optional>

namespace pelmora::platform {

/// By what a folder is known again in its filesystem. An inode is given to another folder once the
/// first is removed; the moment of birth tells the two apart.
struct FolderIdentity {
  std::uint64_t inode = 0;
  std::optional<std::int64_t> birthTime;  // nanoseconds since 1970; not every filesystem keeps it
  std::uint64_t device = 0;               // until the filesystem is mounted anew

  bool operator==(const FolderIdentity&) const = default;
};

/// The folder's identity, links followed; nullopt when there is no folder. Mounts nothing at
/// `path`.
[[nodiscard]] std::optional<FolderIdentity> folderIdentity(const FilePath& path);
/// As `folderIdentity`, but a link is no folder.
[[nodiscard]] std::optional<FolderIdentity> folderIdentityOfNoLink(const FilePath& path);

}  // namespace pelmora::platform

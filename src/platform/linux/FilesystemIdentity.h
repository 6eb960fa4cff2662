#pragma once

#include "platform/linux/MountTable.h"
#include "shared/FilePath.h"

#include <cstdint>
#include <string>

namespace pelmora::platform {

/// By what a filesystem is known again after a restart or on another mount point.
struct FilesystemIdentity {
  std::string name;     // its UUID, or what a network filesystem is mounted from; empty if unknown
  std::int64_t id = 0;  // the kernel's, where it lasts; 0 if unknown

  bool operator==(const FilesystemIdentity&) const = default;
};

/// Whether both are known to be the same filesystem.
[[nodiscard]] bool isSame(const FilesystemIdentity& one, const FilesystemIdentity& other);

/// The identity of the filesystem that holds `folder`, which lies on `mount` (nullptr: unknown).
[[nodiscard]] FilesystemIdentity filesystemIdentity(const FilePath& folder, const Mount* mount);

/// Whether a file's inode is the same after the filesystem was mounted anew.
[[nodiscard]] bool hasLastingInodes(const FilePath& folder);

/// The name of the link in `linksByUuid` (normally /dev/disk/by-uuid) that leads to the device file
/// `deviceFile`; empty if there is none.
[[nodiscard]] std::string uuidOfDevice(const FilePath& deviceFile, const FilePath& linksByUuid);

}  // namespace pelmora::platform

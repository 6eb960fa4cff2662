#include "platform/linux/index/LocalStorage.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>

namespace pelmora::platform {

namespace {

constexpr long kZfsMagic = 0x2FC12FC1;
constexpr long kBcachefsMagic = 0xCA451A4E;
constexpr long kGfs2Magic = 0x01161970;

/// Those that are on several devices or on none, and thus have a device number of their own.
constexpr auto kWithoutDevice = std::to_array<long>(
    {BTRFS_SUPER_MAGIC, TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC, kZfsMagic, kBcachefsMagic});
/// Those that several machines mount from one disk.
constexpr auto kShared = std::to_array<long>({OCFS2_SUPER_MAGIC, kGfs2Magic});

template <std::size_t n>
bool contains(const std::array<long, n>& types, long type) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

}  // namespace

bool isOnLocalStorage(const FilePath& folder) {
  struct stat status {};
  struct statfs filesystem {};
  if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
  if (::statfs(folder.c_str(), &filesystem) != 0) return false;
  // Programs too have file systems on a disk, such as NTFS; those that have none have no major
  // number, as network file systems.
  const bool hasDevice = major(status.st_dev) != 0;
  return hasDevice ? !contains(kShared, filesystem.f_type)
                   : contains(kWithoutDevice, filesystem.f_type);
}

}  // namespace pelmora::platform

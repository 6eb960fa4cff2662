#include "platform/linux/FilesystemIdentity.h"

#include "platform/FileDescriptor.h"
#include "platform/linux/PosixFiles.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace pelmora::platform {

namespace {

constexpr long kXfsMagic = 0x58465342;
constexpr long kZfsMagic = 0x2FC12FC1;
constexpr long kBcachefsMagic = 0xCA451A4E;
constexpr long kJfsMagic = 0x3153464A;
constexpr long kHfsPlusMagic = 0x482B;

/// Those that derive the kernel's identity from what is stored on them. Others, such as XFS, give
/// the number of the device, which changes with every new connection.
constexpr auto kTypesWithLastingId =
    std::to_array<long>({EXT4_SUPER_MAGIC, BTRFS_SUPER_MAGIC, TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC,
                         kZfsMagic, kBcachefsMagic});
constexpr auto kTypesWithLastingInodes =
    std::to_array<long>({EXT4_SUPER_MAGIC, BTRFS_SUPER_MAGIC, TMPFS_MAGIC, OVERLAYFS_SUPER_MAGIC,
                         kZfsMagic, kBcachefsMagic, kXfsMagic, F2FS_SUPER_MAGIC, kJfsMagic,
                         kHfsPlusMagic, NILFS_SUPER_MAGIC, REISERFS_SUPER_MAGIC});

template <std::size_t n>
bool contains(const std::array<long, n>& types, long type) {
  return std::find(types.begin(), types.end(), type) != types.end();
}

/// What the kernel's FS_IOC_GETFSUUID fills; it came with 6.9, and headers may be older.
struct KernelUuid {
  std::uint8_t length;
  std::uint8_t bytes[16];
};
constexpr unsigned long kGetFilesystemUuid = _IOR(0x15, 0, KernelUuid);

std::string uuidFromKernel(const FilePath& folder) {
  const FileDescriptor descriptor(
      ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
  KernelUuid uuid{};
  if (!descriptor.isOpen() || ::ioctl(descriptor.get(), kGetFilesystemUuid, &uuid) != 0) return {};
  if (uuid.length != sizeof uuid.bytes) return {};
  std::string text;
  for (std::size_t i = 0; i < sizeof uuid.bytes; ++i) {
    std::array<char, 3> hex{};
    std::snprintf(hex.data(), hex.size(), "%02x", uuid.bytes[i]);
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += hex.data();
  }
  return text;
}

}  // namespace

bool isSame(const FilesystemIdentity& one, const FilesystemIdentity& other) {
  const bool namesKnown = !one.name.empty() && !other.name.empty();
  const bool idsKnown = one.id != 0 && other.id != 0;
  if (namesKnown && one.name != other.name) return false;
  // Subvolumes share a name and have inodes of their own.
  if (idsKnown && one.id != other.id) return false;
  return namesKnown || idsKnown;
}

FilesystemIdentity filesystemIdentity(const FilePath& folder, const Mount* mount) {
  FilesystemIdentity identity;
  struct statfs status {};
  if (::statfs(folder.c_str(), &status) != 0) return identity;
  if (contains(kTypesWithLastingId, status.f_type)) {
    static_assert(sizeof status.f_fsid == sizeof identity.id);
    std::memcpy(&identity.id, &status.f_fsid, sizeof identity.id);
  }
  if (mount && !mount->isLocalStorage()) {
    identity.name = mount->source;
    return identity;
  }
  identity.name = uuidFromKernel(folder);
  if (identity.name.empty() && mount) {
    identity.name = uuidOfDevice(FilePath(mount->source), FilePath("/dev/disk/by-uuid"));
  }
  return identity;
}

bool hasLastingInodes(const FilePath& folder) {
  struct statfs status {};
  return ::statfs(folder.c_str(), &status) == 0 && contains(kTypesWithLastingInodes, status.f_type);
}

std::string uuidOfDevice(const FilePath& deviceFile, const FilePath& linksByUuid) {
  struct stat device {};
  if (::stat(deviceFile.c_str(), &device) != 0 || device.st_rdev == 0) return {};
  const auto links = PosixFiles().list(linksByUuid, FinalLink::follow);
  if (!links) return {};
  for (const std::string_view name : *(*links)->names) {
    struct stat target {};
    const FilePath link = linksByUuid / name;
    if (::stat(link.c_str(), &target) == 0 && target.st_rdev == device.st_rdev) {
      return std::string(name);
    }
  }
  return {};
}

}  // namespace pelmora::platform

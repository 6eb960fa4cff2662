#include "platform/linux/FolderIdentity.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace pelmora::platform {

namespace {

constexpr std::uint64_t kNanosecondsInSecond = 1'000'000'000;

std::optional<FolderIdentity> identityOf(const FilePath& path, int linkFlag) {
  struct statx status {};
  const int flags = AT_NO_AUTOMOUNT | linkFlag;
  if (::statx(AT_FDCWD, path.c_str(), flags, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0) {
    return std::nullopt;
  }
  if (!S_ISDIR(status.stx_mode)) return std::nullopt;
  FolderIdentity identity{status.stx_ino, std::nullopt,
                          ::makedev(status.stx_dev_major, status.stx_dev_minor)};
  if ((status.stx_mask & STATX_BTIME) != 0) {
    // Wraps around for a moment that a damaged filesystem tells: no worse than any other lie.
    identity.birthTime = static_cast<std::int64_t>(
        static_cast<std::uint64_t>(status.stx_btime.tv_sec) * kNanosecondsInSecond +
        status.stx_btime.tv_nsec);
  }
  return identity;
}

}  // namespace

std::optional<FolderIdentity> folderIdentity(const FilePath& path) { return identityOf(path, 0); }

std::optional<FolderIdentity> folderIdentityOfNoLink(const FilePath& path) {
  return identityOf(path, AT_SYMLINK_NOFOLLOW);
}

}  // namespace pelmora::platform

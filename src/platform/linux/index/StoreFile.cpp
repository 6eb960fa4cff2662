#include "platform/linux/index/StoreFile.h"

#include "platform/linux/CanonicalPath.h"
#include "platform/linux/MakeFolders.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace pelmora::platform {

Result<StoreFile::Lock> StoreFile::lock() {
  if (Status made = makeFolders(_path.parent()); !made) return made.error();
  if (const auto folder = canonicalPath(_path.parent())) {
    _path = *folder / std::string(_path.lastComponent());
  }
  const FilePath beside(_path.bytes() + ".lock");
  FileDescriptor lock(
      ::open(beside.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!lock.isOpen()) return systemError(beside, errno);
  if (!lockFile(lock.get(), _patience)) return systemError(beside, errno);
  return lock;
}

Status StoreFile::make() {
  struct stat status {};
  const bool isThere = ::lstat(_path.c_str(), &status) == 0;
  if (isThere && S_ISREG(status.st_mode) && status.st_size > 0) return Done{};
  // A log without its database is another one's. And a pipe would never answer.
  takeAwayLog();
  if (isThere && !S_ISREG(status.st_mode)) unlinkWith("");
  // Not opened: closing it again would drop the locks that a connection of ours has on it.
  if (::mknod(_path.c_str(), S_IFREG | 0600, 0) != 0 && errno != EEXIST) {
    return systemError(_path, errno);
  }
  if (::lstat(_path.c_str(), &status) != 0) return systemError(_path, errno);
  if (!S_ISREG(status.st_mode)) return Error{_path.bytes() + " is not a file"};
  return Done{};
}

void StoreFile::takeAway() {
  takeAwayLog();
  unlinkWith("");
}

void StoreFile::takeAwayLog() {
  unlinkWith("-wal");
  unlinkWith("-shm");
}

std::optional<StoreFile::Identity> StoreFile::identityWith(const char* suffix) const {
  struct stat status {};
  if (::lstat((_path.bytes() + suffix).c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

void StoreFile::unlinkWith(const char* suffix) { ::unlink((_path.bytes() + suffix).c_str()); }

}  // namespace pelmora::platform

#include "platform/linux/SmallFile.h"

#include "platform/FileDescriptor.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace pelmora::platform {

namespace {

// One byte more than the limit is asked for, to tell a file that is too large.
Result<std::string> readAtMost(int descriptor, const char* name, std::size_t limit) {
  constexpr std::size_t kStep = 4096;
  std::string bytes;
  while (bytes.size() <= limit) {
    const std::size_t before = bytes.size();
    bytes.resize(before + std::min(kStep, limit + 1 - before));
    const ssize_t got = ::read(descriptor, bytes.data() + before, bytes.size() - before);
    if (got < 0 && errno != EINTR) return systemError(FilePath(name), errno);
    bytes.resize(before + (got > 0 ? static_cast<std::size_t>(got) : 0));
    if (got == 0) return bytes;
  }
  return systemError(FilePath(name), EFBIG);
}

}  // namespace

Result<std::string> readSmallFile(int folderDescriptor, const char* name, std::size_t limit) {
  const FileDescriptor file(
      ::openat(folderDescriptor, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.isOpen()) return systemError(FilePath(name), errno);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return systemError(FilePath(name), errno);
  if (S_ISDIR(status.st_mode)) return systemError(FilePath(name), EISDIR);
  if (!S_ISREG(status.st_mode)) return Error{std::string(name) + ": not a regular file"};
  return readAtMost(file.get(), name, limit);
}

}  // namespace pelmora::platform

#include "platform/FileContents.h"

#include "platform/FileDescriptor.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace pelmora::platform {

namespace {

Error errorAt(const FilePath& file, const char* reason) {
  return Error{file.bytes() + ": " + reason};
}

FileStamp stampFrom(const struct stat& facts) {
  return {.device = facts.st_dev,
          .inode = facts.st_ino,
          .size = facts.st_size,
          .modifiedSeconds = facts.st_mtim.tv_sec,
          .modifiedNanoseconds = facts.st_mtim.tv_nsec};
}

/// As many bytes as there are, up to `size`; negative for an error.
ssize_t readFully(int descriptor, std::uint8_t* into, std::size_t size) {
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t got = ::read(descriptor, into + filled, size - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  return static_cast<ssize_t>(filled);
}

}  // namespace

std::optional<FileStamp> stampOf(const FilePath& file) {
  struct stat facts {};
  if (::stat(file.c_str(), &facts) != 0) return std::nullopt;
  return stampFrom(facts);
}

Result<FileContents> FileContents::read(const FilePath& file, std::size_t limit) {
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor.isOpen()) return systemError(file, errno);
  struct stat facts {};
  if (::fstat(descriptor.get(), &facts) != 0) return systemError(file, errno);
  if (!S_ISREG(facts.st_mode)) return errorAt(file, "Not a regular file");
  const auto size = static_cast<std::size_t>(facts.st_size);
  if (size > limit) return errorAt(file, "The file is too large");

  FileContents contents;
  contents._stamp = stampFrom(facts);
  contents._data = std::make_unique_for_overwrite<std::uint8_t[]>(size);
  const ssize_t got = readFully(descriptor.get(), contents._data.get(), size);
  if (got < 0) return systemError(file, errno);
  contents._size = static_cast<std::size_t>(got);
  return contents;
}

}  // namespace pelmora::platform

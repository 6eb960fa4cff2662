#include "platform/AtomicFile.h"

#include "platform/FileDescriptor.h"
#include "platform/SystemError.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace pelmora::platform {

namespace {

constexpr int kMostAttempts = 100;
constexpr std::string_view kUnique = "XXXXXX";  // what mkostemp fills in

std::string temporaryPrefix(const FilePath& file) {
  return '.' + std::string(file.lastComponent()) + ".tmp-";
}

bool lock(int descriptor, int operation) {
  int outcome = 0;
  do {
    outcome = ::flock(descriptor, operation);
  } while (outcome != 0 && errno == EINTR);
  return outcome == 0;
}

/// An open temporary file, locked for as long as it is written. Removed at the end unless it was
/// renamed.
class TemporaryFile {
 public:
  /// nullopt, and errno, when it cannot be made.
  static std::optional<TemporaryFile> makeFor(const FilePath& file);
  ~TemporaryFile() {
    if (_descriptor.isOpen() && !_path.empty()) ::unlink(_path.c_str());
  }
  TemporaryFile(TemporaryFile&&) = default;

  bool takeModeOf(const struct stat& facts);
  bool write(std::span<const std::uint8_t> bytes);
  bool renameTo(const FilePath& file);

 private:
  TemporaryFile(std::string path, FileDescriptor descriptor)
      : _path(std::move(path)), _descriptor(std::move(descriptor)) {}

  std::string _path;  // empty once renamed
  FileDescriptor _descriptor;
};

std::optional<TemporaryFile> TemporaryFile::makeFor(const FilePath& file) {
  // A sweep that comes between the making and the locking takes the file away: then make another.
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::string path = (file.parent() / (temporaryPrefix(file) + std::string(kUnique))).bytes();
    FileDescriptor descriptor(::mkostemp(path.data(), O_CLOEXEC));
    if (!descriptor.isOpen()) return std::nullopt;
    TemporaryFile made(std::move(path), std::move(descriptor));
    struct stat facts {};
    // Where nothing can be locked, as on some network folders, nothing is swept either.
    if (!lock(made._descriptor.get(), LOCK_EX)) return made;
    if (::fstat(made._descriptor.get(), &facts) != 0) return std::nullopt;
    if (facts.st_nlink > 0) return made;
  }
  errno = EBUSY;
  return std::nullopt;
}

/// The owner first: a change of owner takes rights away.
bool TemporaryFile::takeModeOf(const struct stat& facts) {
  const bool isOwned = ::fchown(_descriptor.get(), facts.st_uid, facts.st_gid) == 0;
  const mode_t rights = facts.st_mode & (isOwned ? 07777U : 0777U);
  return ::fchmod(_descriptor.get(), rights) == 0;
}

bool TemporaryFile::write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(_descriptor.get(), bytes.data(), bytes.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(put));
  }
  return ::fsync(_descriptor.get()) == 0;
}

bool TemporaryFile::renameTo(const FilePath& file) {
  if (::rename(_path.c_str(), file.c_str()) != 0) return false;
  _path.clear();
  return true;
}

/// Some file systems cannot flush a folder; the rename is done all the same.
void flushFolder(const FilePath& folder) {
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.isOpen()) static_cast<void>(::fsync(descriptor.get()));
}

/// Removes a temporary file that nobody holds locked.
void removeIfAbandoned(const FilePath& file) {
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC;
  const FileDescriptor descriptor(::open(file.c_str(), kFlags));
  struct stat facts {};
  if (!descriptor.isOpen() || ::fstat(descriptor.get(), &facts) != 0) return;
  if (!S_ISREG(facts.st_mode)) return;
  if (lock(descriptor.get(), LOCK_EX | LOCK_NB)) ::unlink(file.c_str());
}

/// `like`: whose mode it takes; its own when there is none.
Status write(const FilePath& file, std::span<const std::uint8_t> bytes, const struct stat* like) {
  std::optional<TemporaryFile> temporary = TemporaryFile::makeFor(file);
  if (!temporary || (like != nullptr && !temporary->takeModeOf(*like)) ||
      !temporary->write(bytes) || !temporary->renameTo(file)) {
    return systemError(file, errno);
  }
  flushFolder(file.parent());
  return Done{};
}

}  // namespace

Status writeAtomically(const FilePath& file, std::span<const std::uint8_t> bytes) {
  return write(file, bytes, nullptr);
}

Status replaceContents(const FilePath& file, std::span<const std::uint8_t> bytes) {
  struct stat facts {};
  if (::lstat(file.c_str(), &facts) != 0) {
    return errno == ENOENT ? writeAtomically(file, bytes) : systemError(file, errno);
  }
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(file.c_str(), nullptr), &std::free);
  if (!real || ::stat(real.get(), &facts) != 0) return systemError(file, errno);
  return write(FilePath(real.get()), bytes, &facts);
}

void sweepTemporaryFiles(const FilePath& file) {
  const std::string prefix = temporaryPrefix(file);
  const FilePath folder = file.parent();
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), &::closedir);
  if (!entries) return;
  while (const dirent* entry = ::readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (name.size() == prefix.size() + kUnique.size() && name.starts_with(prefix)) {
      removeIfAbandoned(folder / name);
    }
  }
}

}  // namespace pelmora::platform

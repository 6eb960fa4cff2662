#include "platform/linux/PosixFiles.h"

#include "platform/FileDescriptor.h"
#include "platform/linux/CanonicalPath.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/FileUrl.h"
#include "platform/linux/FolderReader.h"
#include "platform/linux/PackageName.h"
#include "platform/linux/SmallFile.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace pelmora::platform {

namespace {

FileFacts factsOf(const struct stat& status, EntryKind kind) {
  // A folder is linked from its parent, from itself and from each folder in it.
  constexpr nlink_t kLinksOfALeaf = 2;
  return {kind,
          {status.st_dev, status.st_ino},
          ReferenceTime::fromPosix(status.st_mtim.tv_sec, status.st_mtim.tv_nsec),
          kind == EntryKind::folder && status.st_nlink > kLinksOfALeaf};
}

EntryKind kindOf(const FilePath& path, const struct stat& status) {
  if (S_ISDIR(status.st_mode)) return EntryKind::folder;
  if (S_ISLNK(status.st_mode)) return EntryKind::alias;
  const bool link = S_ISREG(status.st_mode) && DesktopEntry::hasEntryName(path.lastComponent()) &&
                    isDesktopLink(AT_FDCWD, path.c_str());
  return link ? EntryKind::alias : EntryKind::file;
}

std::optional<FilePath> targetOfDesktopEntry(const FilePath& path) {
  const Result<std::string> text = readSmallFile(AT_FDCWD, path.c_str(), DesktopEntry::kMaxBytes);
  if (!text) return std::nullopt;
  const std::optional<FilePath> target = localPathOfFileUrl(DesktopEntry::parse(*text).url);
  return target ? canonicalPath(*target) : std::nullopt;
}

}  // namespace

Result<std::shared_ptr<const Listing>> PosixFiles::list(const FilePath& folder,
                                                        FinalLink link) const {
  const int linkFlag = link == FinalLink::refuse ? O_NOFOLLOW : 0;
  const FileDescriptor descriptor(
      ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | linkFlag));
  if (!descriptor.isOpen()) return systemError(folder, errno);
  // Before the entries are read: a change from here on gives the folder a date newer than this one.
  struct stat status {};
  if (::fstat(descriptor.get(), &status) != 0) return systemError(folder, errno);
  auto listing = std::make_shared<Listing>();
  listing->folder = factsOf(status, EntryKind::folder);
  const int error = readVisibleEntries(descriptor.get(), *listing);
  if (error != 0) return systemError(folder, error);
  return std::shared_ptr<const Listing>(std::move(listing));
}

std::optional<FileFacts> PosixFiles::facts(const FilePath& path, FinalLink link) const {
  struct stat status {};
  const int flags = link == FinalLink::refuse ? AT_SYMLINK_NOFOLLOW : 0;
  if (::fstatat(AT_FDCWD, path.c_str(), &status, flags) != 0) return std::nullopt;
  return factsOf(status, kindOf(path, status));
}

std::optional<FilePath> PosixFiles::resolveAlias(const FilePath& path) const {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return path;
  if (kindOf(path, status) != EntryKind::alias) return path;
  return S_ISLNK(status.st_mode) ? canonicalPath(path) : targetOfDesktopEntry(path);
}

std::optional<bool> PosixFiles::isPackage(const FilePath& folder) const {
  struct stat status {};
  if (::lstat(folder.c_str(), &status) != 0) return std::nullopt;
  if (!S_ISDIR(status.st_mode)) return false;
  if (hasPackageSuffix(folder.lastComponent())) return true;
  const FilePath propertyList = folder / "Contents/Info.plist";
  return ::stat(propertyList.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool PosixFiles::hasPackageSuffix(std::string_view name) const { return isPackageName(name); }

}  // namespace pelmora::platform

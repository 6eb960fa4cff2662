#include "platform/linux/BookmarkResolver.h"

#include "platform/linux/CanonicalPath.h"
#include "platform/linux/FolderIdentity.h"

#include <sys/stat.h>

namespace pelmora::platform {

BookmarkResolver::BookmarkResolver(const BookmarkRecord& record, const MountTable& mounts,
                                   const Clock& clock, SearchLimits limits)
    : _record(record), _mounts(mounts), _clock(clock), _limits(limits) {}

std::optional<FilePath> BookmarkResolver::resolve() const {
  if (mayLookAtPath() && isWhereItWas()) return _record.path;
  if (const auto folder = findOnOtherMounts()) return folder;
  if (const auto folder = findByInode()) return folder;
  const bool anotherFolder = mayLookAtPath() && folderIdentity(_record.path).has_value();
  if (anotherFolder && hasHalfOfTheNames(_record.path)) return _record.path;
  return std::nullopt;
}

// A look below a folder that is mounted on demand would mount it.
bool BookmarkResolver::mayLookAtPath() const {
  const Mount* const mount = _mounts.mountOf(_record.path);
  return !mount || mount->type != "autofs";
}

bool BookmarkResolver::isWhereItWas() const {
  const std::optional<FolderIdentity> identity = folderIdentity(_record.path);
  if (!identity) return false;
  const bool pathIsAllWeKnow = !_record.inode && _record.filesystem == FilesystemIdentity();
  if (pathIsAllWeKnow) return hasHalfOfTheNames(_record.path);
  const std::optional<FilePath> canonical = canonicalPath(_record.path);
  const Mount* const mount = canonical ? _mounts.mountOf(*canonical) : nullptr;
  if (!isOnSameFilesystem(_record.path, mount)) return false;
  if (!_record.inode) return true;
  const bool bornTogether =
      !_record.birthTime || !identity->birthTime || _record.birthTime == identity->birthTime;
  return identity->inode == _record.inode && bornTogether;
}

std::optional<FilePath> BookmarkResolver::findOnOtherMounts() const {
  if (_record.pathInFilesystem.empty()) return std::nullopt;
  for (const Mount& mount : _mounts.mounts()) {
    if (!mount.isLocalStorage()) continue;
    const FilePath candidate = mount.pathHere(_record.pathInFilesystem);
    if (!candidate.empty() && isTheFolder(candidate, &mount)) return candidate;
  }
  return std::nullopt;
}

std::optional<FilePath> BookmarkResolver::findByInode() const {
  if (!_record.inode || _record.pathInFilesystem.empty()) return std::nullopt;
  FolderSearch search(*_record.inode, _clock, _limits);
  for (const Mount& mount : _mounts.mounts()) {
    if (!mount.isLocalStorage() || !isOnSameFilesystem(mount.point, &mount)) continue;
    if (const auto folder = findByInodeOn(mount, search)) return folder;
  }
  return std::nullopt;
}

std::optional<FilePath> BookmarkResolver::findByInodeOn(const Mount& mount,
                                                        FolderSearch& search) const {
  const auto accept = [&](const FilePath& candidate) { return isTheFolder(candidate, &mount); };
  FilePath searched;
  FilePath ancestor = mount.pathHere(_record.pathInFilesystem);
  for (const std::uint64_t inode : _record.ancestorInodes) {
    if (ancestor.empty() || ancestor == mount.point) break;
    ancestor = ancestor.parent();
    if (_mounts.mountOf(ancestor) != &mount) continue;
    const std::optional<FolderIdentity> identity = folderIdentityOfNoLink(ancestor);
    if (!identity || identity->inode != inode) continue;
    if (auto folder = search.find(ancestor, searched, accept)) return folder;
    searched = ancestor;
  }
  return searched == mount.point ? std::nullopt : search.find(mount.point, searched, accept);
}

/// Whether a folder at another path is the one, beyond doubt.
bool BookmarkResolver::isTheFolder(const FilePath& candidate, const Mount* mount) const {
  if (_mounts.mountOf(candidate) != mount) return false;  // another one covers it
  const std::optional<FolderIdentity> identity = folderIdentityOfNoLink(candidate);
  if (!identity || (_record.inode && identity->inode != _record.inode)) return false;
  if (!isOnSameFilesystem(candidate, mount)) return false;
  if (_record.inode && _record.birthTime && identity->birthTime) {
    return _record.birthTime == identity->birthTime;
  }
  return !_record.childNames.empty() && hasHalfOfTheNames(candidate);
}

bool BookmarkResolver::hasHalfOfTheNames(const FilePath& folder) const {
  std::size_t found = 0;
  for (const std::string& name : _record.childNames) {
    struct stat status {};
    if (::lstat((folder / name).c_str(), &status) == 0) ++found;
  }
  return 2 * found >= _record.childNames.size();
}

bool BookmarkResolver::isOnSameFilesystem(const FilePath& folder, const Mount* mount) const {
  return isSame(filesystemIdentity(folder, mount), _record.filesystem);
}

}  // namespace pelmora::platform

#include "platform/linux/LinuxBookmarks.h"

#include "platform/linux/BookmarkResolver.h"
#include "platform/linux/CanonicalPath.h"
#include "platform/linux/FolderIdentity.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"

#include <algorithm>

namespace pelmora::platform {

namespace {

/// The first names in byte order, so that the same folder gives the same bookmark.
std::vector<std::string> someNames(const NameList& names) {
  std::vector<std::string> some(std::min<std::size_t>(names.size(), BookmarkRecord::kChildNames));
  std::partial_sort_copy(names.begin(), names.end(), some.begin(), some.end(),
                         [](std::string_view a, std::string_view b) { return a < b; });
  return some;
}

/// Of the folders above `folder`, the nearest first, up to the mount's own.
std::vector<std::uint64_t> inodesAbove(FilePath folder, const Mount& mount) {
  std::vector<std::uint64_t> inodes;
  while (folder != mount.point && isAtOrBelow(folder, mount.point)) {
    folder = folder.parent();
    const std::optional<FolderIdentity> identity = folderIdentityOfNoLink(folder);
    inodes.push_back(identity ? identity->inode : 0);
  }
  return inodes;
}

}  // namespace

Result<plist::Bytes> LinuxBookmarks::make(const FilePath& folder) const {
  const auto listing = PosixFiles().list(folder, FinalLink::follow);
  if (!listing) return listing.error();
  const std::optional<FilePath> canonical = canonicalPath(folder);
  const std::optional<FolderIdentity> identity = folderIdentity(folder);
  if (!canonical || !identity) return Error{folder.bytes() + ": vanished meanwhile"};

  const auto mounts = _mounts->table();
  const Mount* const mount = mounts->mountOf(*canonical);
  BookmarkRecord record;
  record.path = folder;
  record.filesystem = filesystemIdentity(*canonical, mount);
  record.childNames = someNames(*(*listing)->names);
  if (mount) record.pathInFilesystem = mount->pathInFilesystem(*canonical);
  if (mount && hasLastingInodes(*canonical)) {
    record.inode = identity->inode;
    record.birthTime = identity->birthTime;
    record.ancestorInodes = inodesAbove(*canonical, *mount);
  }
  return record.encoded();
}

Result<FilePath> LinuxBookmarks::resolve(const plist::Bytes& bookmark) const {
  const Result<BookmarkRecord> record = BookmarkRecord::decode(bookmark);
  if (!record) return record.error();
  const auto mounts = _mounts->table();
  const auto folder = BookmarkResolver(*record, *mounts, _clock, _limits).resolve();
  if (!folder) return Error{record->path.bytes() + ": the folder is gone"};
  return *folder;
}

std::shared_ptr<const Bookmarks> makeLinuxBookmarks(std::shared_ptr<CurrentMounts> mounts) {
  struct OwnBookmarks {
    explicit OwnBookmarks(std::shared_ptr<CurrentMounts> mounts)
        : bookmarks(clock, std::move(mounts)) {}
    SystemClock clock;
    LinuxBookmarks bookmarks;
  };
  const auto own = std::make_shared<OwnBookmarks>(std::move(mounts));
  return {own, &own->bookmarks};
}

}  // namespace pelmora::platform

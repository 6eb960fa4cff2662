#pragma once

#include "platform/Bookmarks.h"
#include "platform/Clock.h"
#include "platform/linux/BookmarkRecord.h"
#include "platform/linux/FolderSearch.h"
#include "platform/linux/MountTable.h"

#include <functional>
#include <memory>
#include <utility>

namespace pelmora::platform {

/// Bookmarks that know a folder by its filesystem, inode and moment of birth, so that it is found
/// again after it was renamed or moved within its filesystem, or mounted elsewhere.
/// Thread: any; holds no state. A resolution that has to search may take as long as the limits
/// allow.
class LinuxBookmarks : public Bookmarks {
 public:
  using MountReader = std::function<MountTable()>;

  /// `clock` must outlive this.
  explicit LinuxBookmarks(const Clock& clock, SearchLimits limits = {},
                          MountReader readMounts = &MountTable::ofThisProcess)
      : _clock(clock), _limits(limits), _readMounts(std::move(readMounts)) {}

  [[nodiscard]] Result<plist::Bytes> make(const FilePath& folder) const override;
  [[nodiscard]] Result<FilePath> resolve(const plist::Bytes& bookmark) const override;

 private:
  const Clock& _clock;
  const SearchLimits _limits;
  const MountReader _readMounts;
};

/// With a clock of their own: a resolution that hangs keeps both.
[[nodiscard]] std::shared_ptr<const Bookmarks> makeLinuxBookmarks();

}  // namespace pelmora::platform

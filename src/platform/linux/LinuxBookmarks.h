#pragma once

#include "platform/Bookmarks.h"
#include "platform/Clock.h"
#include "platform/linux/BookmarkRecord.h"
#include "platform/linux/CurrentMounts.h"
#include "platform/linux/FolderSearch.h"

#include <memory>
#include <utility>

namespace pelmora::platform {

/// Bookmarks that know a folder by its filesystem, inode and moment of birth, so that it is found
/// again after it was renamed or moved within its filesystem, or mounted elsewhere.
/// Thread: any. A resolution that has to search may take as long as the limits allow.
class LinuxBookmarks : public Bookmarks {
 public:
  /// `clock` must outlive this.
  LinuxBookmarks(const Clock& clock, std::shared_ptr<CurrentMounts> mounts,
                 SearchLimits limits = {})
      : _clock(clock), _mounts(std::move(mounts)), _limits(limits) {}

  [[nodiscard]] Result<plist::Bytes> make(const FilePath& folder) const override;
  [[nodiscard]] Result<FilePath> resolve(const plist::Bytes& bookmark) const override;

 private:
  const Clock& _clock;
  const std::shared_ptr<CurrentMounts> _mounts;
  const SearchLimits _limits;
};

/// With a clock of their own: a resolution that hangs keeps all three.
[[nodiscard]] std::shared_ptr<const Bookmarks> makeLinuxBookmarks(
    std::shared_ptr<CurrentMounts> mounts);

}  // namespace pelmora::platform

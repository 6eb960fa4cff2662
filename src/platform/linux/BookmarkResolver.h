#pragma once

#include "platform/Clock.h"
#include "platform/linux/BookmarkRecord.h"
#include "platform/linux/FolderSearch.h"
#include "platform/linux/MountTable.h"

#include <optional>

namespace pelmora::platform {

/// Finds the folder of one bookmark, by the first of these that succeeds: the same folder at the
/// same path; the same filesystem mounted elsewhere; a search by inode, from the nearest of the
/// folders above that is still there; another folder at the same path with at least half of the
/// names in it. Thread: any, one at a time. The arguments must outlive it.
class BookmarkResolver {
 public:
  BookmarkResolver(const BookmarkRecord& record, const MountTable& mounts, const Clock& clock,
                   SearchLimits limits);

  [[nodiscard]] std::optional<FilePath> resolve() const;

 private:
  [[nodiscard]] bool mayLookAtPath() const;
  [[nodiscard]] bool isWhereItWas() const;
  [[nodiscard]] bool isTheFolder(const FilePath& candidate, const Mount* mount) const;
  [[nodiscard]] std::optional<FilePath> findOnOtherMounts() const;
  [[nodiscard]] std::optional<FilePath> findByInode() const;
  [[nodiscard]] std::optional<FilePath> findByInodeOn(const Mount& mount,
                                                      FolderSearch& search) const;
  [[nodiscard]] bool hasHalfOfTheNames(const FilePath& folder) const;
  [[nodiscard]] bool isOnSameFilesystem(const FilePath& folder, const Mount* mount) const;

  const BookmarkRecord& _record;
  const MountTable& _mounts;
  const Clock& _clock;
  const SearchLimits _limits;
};

}  // namespace pelmora::platform

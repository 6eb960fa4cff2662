#pragma once

#include "platform/Services.h"
#include "shared/FilePath.h"
#include "shared/NameList.h"
#include "shared/ReferenceTime.h"

#include <memory>
#include <optional>
#include <shared_mutex>
#include <string_view>
#include <unordered_map>

namespace pelmora::cache {

/// The names of the files and subfolders of each folder walked, with the folder's date, so that an
/// unchanged folder is not listed again. Read from "FolderCache.plist" at the start of a run and
/// written at most once, at its end; entries whose date nobody asked for in the run are then
/// dropped. Thread: any (`_mutex`); load and save read and write the file outside the lock. Errors:
/// logged and swallowed; the cache then works from memory alone.
class FolderCache {
 public:
  /// The one cache of the process, made on first use.
  static std::shared_ptr<FolderCache> sharedCache(const platform::Services& services);
  /// Lets go of the shared cache, so that the next use makes a new one: one process, several runs.
  static void endSharedCache();

  explicit FolderCache(const platform::Services& services);

  /// Caches a folder under its path, replacing an older entry. Without a date (`listedAt`, the date
  /// that the folder had before it was listed) the folder's present one is read; if that fails,
  /// nothing is cached. `subfolderNames` may be null: not known.
  void addFolder(const FilePath& folder, SharedNames fileNames, SharedNames subfolderNames,
                 std::optional<ReferenceTime> listedAt = std::nullopt);

  /// The cached date. Marks the entry as used: ask for it before the names, or the entry is dropped
  /// at the next save.
  [[nodiscard]] std::optional<ReferenceTime> mdateOfFolder(const FilePath& folder);
  /// The cached names; null when there are none. Neither marks nor changes anything.
  [[nodiscard]] SharedNames fileNamesOfFolder(const FilePath& folder) const;
  [[nodiscard]] SharedNames folderNamesOfFolder(const FilePath& folder) const;
  /// All that is cached of a folder, at one moment. Neither marks nor changes anything.
  struct CachedFolder {
    ReferenceTime mdate;
    SharedNames fileNames;
    SharedNames folderNames;  // null: not known
  };
  [[nodiscard]] std::optional<CachedFolder> cachedFolder(const FilePath& folder) const;
  /// Replaces the subfolder names of an existing entry; does nothing without one, and leaves the
  /// cache as clean as it was.
  void setFolderNames(SharedNames names, const FilePath& ofFolder);

  /// Reads the file once in a process; false after a failure, true ever after.
  bool loadForAppName(std::string_view name);
  /// Writes the file, if something was added and nothing was written yet.
  void saveForAppName(std::string_view name);

 private:
  struct Entry {
    ReferenceTime mdate;
    SharedNames names;
    SharedNames folderNames;
    bool accessed = false;
  };
  using Entries = std::unordered_map<FilePath, Entry>;
  friend class FolderCacheFile;  // the file's form

  /// Drops the entries that were not used, takes the mark of use from the others and gives a copy.
  Entries prune();

  const platform::Services& _services;
  /// Guards all below. Lookups share it, so that the threads of a walk don't wait for each other; a
  /// mark of use is set by an atomic access then.
  mutable std::shared_mutex _mutex;
  Entries cache;
  bool loaded = false;
  bool saved = false;
  bool dirty = false;
};

}  // namespace pelmora::cache

#pragma once

#include "cache/FolderCache.h"
#include "platform/Files.h"
#include "platform/OperationQueue.h"
#include "shared/FilePath.h"
#include "shared/NameList.h"
#include "shared/ReferenceTime.h"

#include <memory>
#include <optional>

namespace pelmora::sources {

/// The names directly in a folder.
struct FolderContents {
  SharedNames files;    // never null
  SharedNames folders;  // null: not known
};

/// What is known of a folder before its names are asked for.
struct FoundFolder {
  FilePath url;
  platform::FileFacts facts;
  bool isAliasTarget = false;                        // not where it was looked for
  std::shared_ptr<const platform::Listing> listing;  // null: not listed yet
  std::optional<cache::FolderCache::CachedFolder> cached;
};

/// A source folder's own names.
struct BaseFolderContents {
  FolderContents names;
  std::optional<platform::FileFacts> facts;  // nullopt: the folder cannot be looked at
  bool isFromCache = false;
};

/// Reads folders at the least cost: an unchanged one is looked at once, any other is opened once,
/// and what came of that serves all who ask. Thread: any; holds no state. Errors: a folder that
/// cannot be listed has no names.
class ContentsReader {
 public:
  ContentsReader(const platform::Files& files, cache::FolderCache& cache)
      : _files(files), _cache(cache) {}

  /// The names in a source folder, aliases among the files. Not entered into the cache yet. A
  /// listing ends where `operation` is cancelled, after one entry at least.
  [[nodiscard]] BaseFolderContents readBaseFolder(const FilePath& folder,
                                                  const platform::Operation& operation) const;

  /// The folder that `subfolder` is or leads to; nullopt for a package by its name, for what is not
  /// there, and for an alias that does not lead to a folder. The cache does not count it as used.
  [[nodiscard]] std::optional<FoundFolder> find(FilePath subfolder) const;

  /// The names in a found folder, where an alias to a folder counts as a folder. A folder that had
  /// to be listed is entered into the cache. nullopt for a package by what is in it.
  [[nodiscard]] std::optional<FolderContents> readFolder(const FoundFolder& folder) const;

  /// The names of the files in a folder of any kind, read and entered in the same way.
  [[nodiscard]] SharedNames fileNamesOf(const FilePath& folder) const;

  /// The names of the subfolders, aliases to folders included: the cached ones, without a look at
  /// the date, else listed and entered into the cache.
  [[nodiscard]] SharedNames subfolderNamesOf(const FilePath& folder) const;

 private:
  [[nodiscard]] std::optional<FoundFolder> findUnlisted(
      FilePath subfolder, std::optional<cache::FolderCache::CachedFolder> cached) const;
  [[nodiscard]] std::optional<FoundFolder> findTarget(const FilePath& alias) const;
  [[nodiscard]] bool isPackage(const FoundFolder& folder, const NameList* names) const;
  [[nodiscard]] std::optional<FolderContents> cachedContents(const FoundFolder& folder) const;
  [[nodiscard]] FolderContents enter(const FilePath& folder,
                                     const platform::Listing* listing) const;
  [[nodiscard]] FolderContents split(const FilePath& folder,
                                     const platform::Listing& listing) const;

  const platform::Files& _files;
  cache::FolderCache& _cache;
};

}  // namespace pelmora::sources

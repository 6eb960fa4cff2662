#pragma once

#include "platform/linux/FileLock.h"
#include "platform/metadata/FileMetadata.h"
#include "platform/predicate/Predicate.h"
#include "shared/FilePath.h"
#include "shared/ReferenceTime.h"
#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pelmora::platform {

/// What tells that a file is still the one that was read: when any of it differs, it is read anew.
struct IndexStamp {
  std::uint64_t inode = 0;
  std::int64_t bytes = 0;
  std::int64_t changeSeconds = 0;  // of the status, which no program sets
  std::int64_t changeNanoseconds = 0;
  bool operator==(const IndexStamp&) const = default;
};

/// A predicate made ready for a store.
class StoreQuery;

/// The metadata of files, kept from run to run in a database (SQLite, its log written ahead), which
/// several processes share: each sees what the others have written. It is a cache: one that is
/// damaged, of another version or not to be had is begun anew, and where nothing can be written it
/// is kept in memory for this run. Thread: one at a time. Errors: what cannot be answered is empty,
/// and what cannot be kept is not; `failures` tells.
///
/// Each change of a file has a number, its revision, greater than all before, so that a query is
/// asked for what changed since the last time.
class MetadataStore {
 public:
  using FolderId = std::int64_t;
  using Revision = std::int64_t;

  /// Opens the database, or begins it anew; `problem` is called with a line for the log then (not
  /// where there was none yet). An empty path: in memory. Never fails. Other processes are
  /// waited for with patience, each time.
  using Report = std::function<void(const std::string& problem)>;
  MetadataStore(FilePath file, Report problem, Patience patience = {});
  ~MetadataStore();

  [[nodiscard]] bool isInMemory() const;

  /// Counts how often it was begun anew under its users (deleted, damaged, a full disk): then
  /// nothing is known of any folder, and folders' ids and revisions mean nothing any more. Looks at
  /// the file, at most a system call.
  [[nodiscard]] std::uint64_t generation();

  /// Counts what was in vain, most often because another process was writing.
  [[nodiscard]] std::uint64_t failures() const;

  /// The folder's id, never 0; one that is not known is entered. It counts as used today. 0 when
  /// that fails.
  [[nodiscard]] FolderId folderId(const FilePath& folder);
  /// The files that are known in a folder, and as which they were read.
  [[nodiscard]] std::unordered_map<std::string, IndexStamp> filesIn(FolderId folder);

  /// The same of one file; nullopt when it is not known.
  [[nodiscard]] std::optional<IndexStamp> stampOf(FolderId folder, const std::string& name);

  struct Entry {
    std::string name;
    IndexStamp stamp;
    metadata::FileMetadata metadata;  // without name and path
  };
  /// Enters files, in one transaction; those that are known are replaced.
  void put(FolderId folder, const FilePath& path, const std::vector<Entry>& entries);
  /// Takes files out, in one transaction.
  void remove(FolderId folder, const std::vector<std::string>& names);
  /// Forgets the folders that nobody has used for so many days.
  void forgetUnused(int days);

  /// The revision of the newest change, by any process.
  [[nodiscard]] Revision newestRevision();

  [[nodiscard]] std::shared_ptr<StoreQuery> prepare(const predicate::Predicate& predicate);
  /// The files directly in a folder that match and changed after `since` (0: all), sorted by name.
  [[nodiscard]] std::vector<std::string> matches(StoreQuery& query, FolderId folder,
                                                 Revision since = 0);
  /// What is known of a file, name and path included; nullopt when it is not known.
  [[nodiscard]] std::optional<metadata::FileMetadata> metadataOf(FolderId folder,
                                                                 const std::string& name);
  /// The texts that an attribute has in the files that are known: no more than `count`, each once,
  /// those that most files have first. Of files in great number the newest are counted. `isOver`
  /// is asked meanwhile, and ends it with what was found.
  [[nodiscard]] std::vector<std::string> frequentTexts(std::size_t attribute, std::size_t count,
                                                       const std::function<bool()>& isOver);

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::platform

#pragma once

#include "platform/predicate/Predicate.h"
#include "platform/SearchScopes.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::platform {

// What a query posts to the notification center of the process, from a thread of its own.
inline constexpr const char* NSMetadataQueryGatheringProgressNotification =
    "NSMetadataQueryGatheringProgressNotification";
inline constexpr const char* NSMetadataQueryDidUpdateNotification =
    "NSMetadataQueryDidUpdateNotification";
inline constexpr const char* NSMetadataQueryDidFinishGatheringNotification =
    "NSMetadataQueryDidFinishGatheringNotification";

// In the user info of those: the files that match since the last one, where there are any, as an
// array of dictionaries; and in each of these a name and the whole path, both as their bytes.
inline constexpr const char* NSMetadataQueryUpdateAddedItemsKey = "kMDQueryUpdateAddedItems";
inline constexpr const char* NSMetadataItemFSNameKey = "kMDItemFSName";
inline constexpr const char* NSMetadataItemPathKey = "kMDItemPath";

/// A live search over the metadata of files: it first gathers what matches, and then goes on to
/// report what comes to match. Thread: any for the updates and to wait, main for all else.
class MetadataQuery {
 public:
  virtual ~MetadataQuery() = default;

  /// Before it is started.
  virtual void setPredicate(predicate::Predicate predicate) = 0;
  /// Folder paths, or a placeholder that names no folder. A folder is searched for the files that
  /// are directly in it.
  virtual void setSearchScopes(SearchScopes scopes) = 0;
  [[nodiscard]] virtual SearchScopes searchScopes() const = 0;

  /// Started again after a stop, with more scopes or the same, it goes on: what it has reported of
  /// a folder is not reported again.
  virtual void start() = 0;
  virtual void stop() = 0;

  /// Between the two nothing is posted; what comes to match meanwhile is reported afterwards. Calls
  /// are counted, so that several may do it at once.
  virtual void disableUpdates() = 0;
  virtual void enableUpdates() = 0;

  /// Waits until all that there is to gather has been posted. Not while updates are disabled by the
  /// same thread. At once when it is not started. Thread: any.
  virtual void waitUntilGathered() = 0;
};

/// How far the index behind the queries has come, in folders that anybody asked for.
struct IndexProgress {
  std::size_t foldersDone = 0;
  std::size_t foldersToDo = 0;
  std::size_t filesDone = 0;  // of all these folders
};

/// Makes queries. Thread: any.
class MetadataSearch {
 public:
  virtual ~MetadataSearch() = default;
  /// The query does not outlive this.
  [[nodiscard]] virtual std::unique_ptr<MetadataQuery> makeQuery() = 0;
  [[nodiscard]] virtual IndexProgress progress() const = 0;
  /// Asks which texts an attribute has in the files that are known, those that most files have
  /// first: no more than `count`, each once. The answer, empty where nothing is known, comes once,
  /// on any thread, and soon or late; or never, if this goes before. Thread: main.
  virtual void suggestValues(std::string attribute, std::size_t count,
                             std::function<void(std::vector<std::string>)> answer) = 0;
};

}  // namespace pelmora::platform

#pragma once

#include "platform/Clock.h"
#include "platform/linux/index/FolderIndexer.h"
#include "platform/linux/index/FolderWatcher.h"
#include "platform/linux/index/LiveQuery.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace pelmora::platform {

/// The work of the index, a piece at a time: which folders are to be brought up to date next, and
/// which queries look at them then. Thread: one. Ownership: everything it was made with outlives
/// it.
class IndexWork {
 public:
  struct Tools {
    const Files& files;
    Log& log;
    const Clock& clock;
    NotificationCenter& notifications;
    PatientInspector::Inspect inspect;
    std::function<bool()> isOver;  // whether the work is to end early; asked between files
    std::function<void(const IndexProgress&)> progress;
    FilePath file;  // where the index is kept, its folder made; empty: in memory
    std::size_t mostWatches = 0;
    std::chrono::milliseconds patience = Patience().atMost;  // with other processes
  };
  using QueryId = std::uint64_t;

  explicit IndexWork(Tools tools);

  void addQuery(QueryId id, std::shared_ptr<QueryState> state);
  void removeQuery(QueryId id);
  void setPredicate(QueryId id, predicate::Predicate predicate);
  void setScopes(QueryId id, const std::vector<FilePath>& folders);
  void addScopes(QueryId id, const std::vector<FilePath>& folders);
  void start(QueryId id, std::uint64_t number);
  void stop(QueryId id);

  /// The texts that an attribute most often has, as `MetadataSearch::suggestValues` gives them.
  [[nodiscard]] std::vector<std::string> frequentTexts(const std::string& attribute,
                                                       std::size_t count);

  /// Does the next thing that is to be done now; false when there is nothing left.
  bool doNext();
  /// Readable when there is more to do.
  [[nodiscard]] int descriptor() const { return _watcher.descriptor(); }
  /// When there is more to do, if nothing happens before; in seconds of the clock.
  [[nodiscard]] std::optional<double> nextDue() const { return _watcher.nextDue(); }

 private:
  struct Folder {
    MetadataStore::FolderId id = 0;  // 0: the store has nothing of it that may be told
    bool isQueued = false;
    bool isUpToDate = false;
    std::size_t fileCount = 0;
    double pause = 0;      // before what could not be read is tried again; 0: all could be
    double triedFrom = 0;  // when that is
  };
  enum class Place { first, last };

  void enter(LiveQuery& query, const std::vector<FilePath>& folders);
  void leave(const std::vector<FilePath>& folders);
  void enqueue(const FilePath& path, Folder& folder, Place place);
  void takeChanges();
  void beginAnewIfTheStoreDid();
  void update(const FilePath& path, Folder& folder);
  void lookAt(const FilePath& path, const Folder& folder, bool isUpToDate);
  void setUpToDate(Folder& folder, bool isUpToDate);
  double nextLook(Folder& folder, const FolderIndexer::Outcome& outcome, double begin);
  void report(bool all);
  void tellProgress();
  void tellOfPolling();
  [[nodiscard]] bool isSearched(const FilePath& folder) const;
  [[nodiscard]] bool isSearchedNow(const FilePath& folder) const;

  const Tools _tools;
  MetadataStore _store;
  std::uint64_t _generation;
  FolderWatcher _watcher;
  IndexTurn _turn;
  PatientInspector _inspector;
  FolderIndexer _indexer;
  std::map<QueryId, LiveQuery> _queries;
  std::unordered_map<FilePath, Folder> _folders;
  std::deque<FilePath> _queue;            // of folders to update; some may be gone
  std::unordered_set<FilePath> _leftOut;  // for no query was started that searches them
  IndexProgress _progress;
  double _lastReport = 0;
  bool _hasToldOfPolling = false;
  std::optional<double> _toldOfLoss;  // when the log was, last
};

}  // namespace pelmora::platform

#pragma once

#include "platform/linux/index/MetadataStore.h"
#include "platform/MetadataQuery.h"
#include "platform/NotificationCenter.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace pelmora::platform {

/// What is shared between a query, whoever waits for it, and the thread of the index.
class QueryState {
 public:
  /// A start has a number, from 1.
  void begin(std::uint64_t start);
  void finish(std::uint64_t start);
  void end();
  void waitUntilFinished();

  std::atomic<int> disabled{0};  // how often updates are disabled

 private:
  std::mutex _mutex;  // guards all below
  std::condition_variable _changed;
  std::uint64_t _started = 0;   // 0: not started
  std::uint64_t _finished = 0;  // the last start whose gathering has been posted
};

/// A query as the thread of the index sees it: what it has reported of which folders, and what it
/// has yet to report. Thread: that of the index.
class LiveQuery {
 public:
  LiveQuery(NotificationCenter& center, std::shared_ptr<QueryState> state)
      : _center(center), _state(std::move(state)) {}

  void setPredicate(predicate::Predicate predicate);
  /// Gives back the folders that are searched no more.
  std::vector<FilePath> setScopes(const std::vector<FilePath>& folders);
  void addScopes(const std::vector<FilePath>& folders);
  void start(std::uint64_t number);
  void stop() { _start = 0; }
  [[nodiscard]] bool isStarted() const { return _start != 0; }
  [[nodiscard]] bool searches(const FilePath& folder) const { return _scopes.contains(folder); }
  /// Its folders.
  [[nodiscard]] std::vector<FilePath> scopes() const;

  /// Looks for what matches in a folder since the last look, started or not; `isUpToDate`: the
  /// store knows the whole folder, which is gathered then. An id of 0: there is nothing to be found
  /// in the folder for now. False: the store failed, and it is to be looked at again.
  bool look(MetadataStore& store, const FilePath& folder, MetadataStore::FolderId id,
            bool isUpToDate);
  /// The store was begun anew: everything is looked at again, but nothing reported twice.
  void forgetRevisions();

  /// Posts what there is to report, if it is worth it or `all` is set, and the end of the gathering
  /// when all folders have been looked at.
  void report(bool all);

 private:
  struct Scope {
    MetadataStore::Revision since = 0;
    bool isGathered = false;
  };

  bool find(MetadataStore& store, const FilePath& folder, MetadataStore::FolderId id, Scope& scope);
  void post(const char* notification, plist::Dictionary userInfo);
  void postItems();

  NotificationCenter& _center;
  const std::shared_ptr<QueryState> _state;
  predicate::Predicate _predicate;
  std::shared_ptr<StoreQuery> _prepared;  // for the store as it is
  std::unordered_map<FilePath, Scope> _scopes;
  std::size_t _toGather = 0;                    // scopes that are not gathered
  std::unordered_set<std::uint64_t> _reported;  // the paths that were found, by their hash
  std::deque<plist::Value> _items;              // to be reported
  std::uint64_t _start = 0;                     // 0: not started
  std::uint64_t _finishedStart = 0;
};

}  // namespace pelmora::platform

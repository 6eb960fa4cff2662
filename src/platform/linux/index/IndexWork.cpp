#include "platform/linux/index/IndexWork.h"

#include <algorithm>
#include <utility>

namespace pelmora::platform {

namespace {

// Found files wait no longer than this for others to be reported with.
constexpr double kReportAfter = 0.1;  // seconds
// What has been asked for by nobody for so long is forgotten.
constexpr int kUnusedDays = 60;

// Each folder is looked at again, in seconds after the last time: where all is well, once a day, as
// there are changes that nobody tells of, and the store is to know that it is used still;
constexpr double kDay = 86'400;
// when the store failed, most often as another process was writing;
constexpr double kAfterFailure = 1;
// and where something could not be read, after this, doubled each time up to a day.
constexpr double kShortestPause = 60;

constexpr double kTellLossAfter = 600;  // seconds

FilePath turnFile(const FilePath& file) {
  return file.empty() ? FilePath() : FilePath(file.bytes() + "-turn");
}

}  // namespace

IndexWork::IndexWork(Tools tools)
    : _tools(std::move(tools)),
      _store(
          _tools.file,
          [this](const std::string& problem) { _tools.log.print("Pelmora: %s", problem.c_str()); },
          {.atMost = _tools.patience, .isOver = _tools.isOver}),
      _generation(_store.generation()),
      _watcher(_tools.mostWatches,
               [this](const FilePath& folder) {
                 return _tools.files.facts(folder, FinalLink::follow).has_value();
               }),
      _turn(turnFile(_tools.file), _tools.clock,
            {.atMost = _tools.patience, .isOver = _tools.isOver}),
      _inspector(_tools.inspect, _tools.clock, _tools.log, _tools.isOver),
      _indexer({.files = _tools.files,
                .log = _tools.log,
                .store = _store,
                .turn = _turn,
                .inspector = _inspector,
                .isOver = _tools.isOver}) {
  _store.forgetUnused(kUnusedDays);
}

// Queries -----------------------------------------------------------------------------------------

void IndexWork::addQuery(QueryId id, std::shared_ptr<QueryState> state) {
  _queries.try_emplace(id, _tools.notifications, std::move(state));
}

void IndexWork::removeQuery(QueryId id) {
  const auto found = _queries.find(id);
  if (found == _queries.end()) return;
  const std::vector<FilePath> scopes = found->second.scopes();
  _queries.erase(found);
  leave(scopes);
}

void IndexWork::setPredicate(QueryId id, predicate::Predicate predicate) {
  _queries.at(id).setPredicate(std::move(predicate));
}

void IndexWork::setScopes(QueryId id, const std::vector<FilePath>& folders) {
  LiveQuery& query = _queries.at(id);
  leave(query.setScopes(folders));
  enter(query, folders);
}

void IndexWork::addScopes(QueryId id, const std::vector<FilePath>& folders) {
  LiveQuery& query = _queries.at(id);
  query.addScopes(folders);
  enter(query, folders);
}

void IndexWork::start(QueryId id, std::uint64_t number) {
  _queries.at(id).start(number);
  for (const FilePath& path : std::exchange(_leftOut, {})) {
    const auto found = _folders.find(path);
    if (found != _folders.end()) enqueue(path, found->second, Place::last);
  }
}

void IndexWork::stop(QueryId id) { _queries.at(id).stop(); }

void IndexWork::enter(LiveQuery& query, const std::vector<FilePath>& folders) {
  beginAnewIfTheStoreDid();
  for (const FilePath& path : folders) {
    Folder& folder = _folders[path];
    const bool isKnown = folder.isUpToDate && query.look(_store, path, folder.id, true);
    if (!isKnown) enqueue(path, folder, Place::last);
  }
  tellProgress();
}

void IndexWork::leave(const std::vector<FilePath>& folders) {
  for (const FilePath& path : folders) {
    if (isSearched(path)) continue;
    _watcher.unwatch(path);
    _leftOut.erase(path);
    const auto found = _folders.find(path);
    if (found == _folders.end()) continue;
    setUpToDate(found->second, false);
    _progress.filesDone -= found->second.fileCount;
    _folders.erase(found);
  }
  tellProgress();
}

bool IndexWork::isSearched(const FilePath& folder) const {
  return std::any_of(_queries.begin(), _queries.end(),
                     [&folder](const auto& query) { return query.second.searches(folder); });
}

bool IndexWork::isSearchedNow(const FilePath& folder) const {
  return std::any_of(_queries.begin(), _queries.end(), [&folder](const auto& query) {
    return query.second.isStarted() && query.second.searches(folder);
  });
}

// Work --------------------------------------------------------------------------------------------

void IndexWork::enqueue(const FilePath& path, Folder& folder, Place place) {
  if (std::exchange(folder.isQueued, true)) return;
  if (place == Place::first) {
    _queue.push_front(path);
  } else {
    _queue.push_back(path);
  }
}

std::vector<std::string> IndexWork::frequentTexts(const std::string& attribute, std::size_t count) {
  const std::optional<std::size_t> position = metadata::attributeNamed(attribute);
  if (!position) return {};
  return _store.frequentTexts(*position, count, _tools.isOver);
}

bool IndexWork::doNext() {
  beginAnewIfTheStoreDid();
  takeChanges();
  if (_queue.empty()) {
    report(true);
    return false;
  }
  const FilePath path = std::move(_queue.front());
  _queue.pop_front();
  const auto found = _folders.find(path);
  if (found == _folders.end()) return true;
  found->second.isQueued = false;
  if (isSearchedNow(path)) {
    update(path, found->second);
  } else {
    _leftOut.insert(path);
    setUpToDate(found->second, false);
  }
  return true;
}

void IndexWork::takeChanges() {
  const double now = _tools.clock.mediaTime();
  const FolderWatcher::Changes changes = _watcher.changes(now);
  for (const FilePath& path : changes.folders) {
    const auto found = _folders.find(path);
    if (found != _folders.end()) enqueue(path, found->second, Place::first);
  }
  if (!changes.everythingMayHaveChanged) return;
  if (!_toldOfLoss || now - *_toldOfLoss >= kTellLossAfter) {
    _toldOfLoss = now;
    _tools.log.write("Pelmora: Too much has changed to be followed; the folders are read again.");
  }
  for (auto& [path, folder] : _folders) enqueue(path, folder, Place::last);
}

void IndexWork::beginAnewIfTheStoreDid() {
  if (_store.generation() == _generation) return;
  _generation = _store.generation();
  for (auto& [id, query] : _queries) query.forgetRevisions();
  for (auto& [path, folder] : _folders) {
    folder.id = 0;
    setUpToDate(folder, false);
    enqueue(path, folder, Place::last);
  }
}

void IndexWork::update(const FilePath& path, Folder& folder) {
  const double begin = _tools.clock.mediaTime();
  _watcher.watch(path, begin);  // before it is listed, so that no change is missed
  tellOfPolling();
  const std::uint64_t failures = _store.failures();
  folder.id = _store.folderId(path);
  FolderIndexer::Outcome outcome;
  if (folder.id != 0) {
    using Unread = FolderIndexer::Unread;
    const Unread unread = begin < folder.triedFrom ? Unread::left : Unread::tried;
    outcome = _indexer.update(path, folder.id, unread, [&] {
      lookAt(path, folder, false);
      report(false);
    });
  }
  if (_tools.isOver()) return;
  // What is stored of it is of no use while it is away.
  if (!outcome.isListed) folder.id = 0;
  _progress.filesDone += outcome.fileCount - folder.fileCount;
  folder.fileCount = outcome.fileCount;
  lookAt(path, folder, _store.failures() == failures);
  const bool isKept = _store.failures() == failures;
  setUpToDate(folder, isKept);
  tellProgress();
  report(false);
  const double end = _tools.clock.mediaTime();
  // To read what is new is no part of polling.
  _watcher.hasPolled(path, end, outcome.hasChanged ? 0 : end - begin);
  _watcher.tellAt(path, isKept ? nextLook(folder, outcome, begin) : end + kAfterFailure);
}

/// When a folder is to be looked at again that was looked at from `begin` until now.
double IndexWork::nextLook(Folder& folder, const FolderIndexer::Outcome& outcome, double begin) {
  const double now = _tools.clock.mediaTime();
  if (outcome.isListed && !outcome.hasUnread) {
    folder.pause = 0;
    folder.triedFrom = 0;
    return now + kDay;
  }
  if (_inspector.isWaiting()) return _inspector.waitsUntil();
  if (begin >= folder.triedFrom) {
    folder.pause = std::clamp(2 * folder.pause, kShortestPause, kDay);
    folder.triedFrom = now + folder.pause;
  }
  return folder.triedFrom;
}

void IndexWork::setUpToDate(Folder& folder, bool isUpToDate) {
  if (std::exchange(folder.isUpToDate, isUpToDate)) --_progress.foldersDone;
  if (isUpToDate) ++_progress.foldersDone;
}

void IndexWork::lookAt(const FilePath& path, const Folder& folder, bool isUpToDate) {
  // Begun anew meanwhile: the folder's turn comes again.
  if (_store.generation() != _generation) return;
  for (auto& [id, query] : _queries) query.look(_store, path, folder.id, isUpToDate);
}

void IndexWork::report(bool all) {
  const double now = _tools.clock.mediaTime();
  const bool isDue = now - _lastReport >= kReportAfter;
  if (isDue) _lastReport = now;
  for (auto& [id, query] : _queries) query.report(all || isDue);
}

void IndexWork::tellProgress() {
  _progress.foldersToDo = _folders.size() - _progress.foldersDone;
  _tools.progress(_progress);
}

void IndexWork::tellOfPolling() {
  if (_watcher.polledFolders() == 0 || std::exchange(_hasToldOfPolling, true)) return;
  _tools.log.write(
      "Pelmora: Some folders cannot be watched for changes; they are looked at now and then.");
}

}  // namespace pelmora::platform

#include "platform/linux/index/IndexWork.h"

#include <algorithm>
#include <utility>

namespace pelmora::platform {

namespace {

// Found files wait no longer than this for others to be reported with.
constexpr double kReportAfter = 0.1;  // seconds
// What has been asked for by nobody for so long is forgotten.
constexpr int kUnusedDays = 60;

FilePath turnFile(const FilePath& file) {
  return file.empty() ? FilePath() : FilePath(file.bytes() + "-turn");
}

}  // namespace

IndexWork::IndexWork(Tools tools)
    : _tools(std::move(tools)),
      _store(
          _tools.file,
          [this](const std::string& problem) { _tools.log.print("Pelmora: %s", problem.c_str()); }),
      _generation(_store.generation()),
      _watcher(_tools.mostWatches),
      _turn(turnFile(_tools.file), _tools.isOver),
      _inspector(_tools.inspect, _tools.clock, _tools.log),
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
  for (const FilePath& path : folders) {
    Folder& folder = _folders[path];
    if (folder.isUpToDate) {
      query.look(_store, path, folder.id, true);
    } else {
      enqueue(path, folder, Place::last);
    }
  }
  tellProgress();
}

void IndexWork::leave(const std::vector<FilePath>& folders) {
  for (const FilePath& path : folders) {
    if (isSearched(path)) continue;
    _watcher.unwatch(path);
    const auto found = _folders.find(path);
    if (found == _folders.end()) continue;
    if (found->second.isUpToDate) --_progress.foldersDone;
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

bool IndexWork::doNext() {
  beginAnewIfTheStoreDid();
  takeChanges();
  takeUnread();
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
    _leftOut.push_back(path);
    if (std::exchange(found->second.isUpToDate, false)) --_progress.foldersDone;
  }
  return true;
}

void IndexWork::takeChanges() {
  const FolderWatcher::Changes changes = _watcher.changes(_tools.clock.mediaTime());
  for (const FilePath& path : changes.folders) {
    const auto found = _folders.find(path);
    if (found != _folders.end()) enqueue(path, found->second, Place::first);
  }
  if (!changes.everythingMayHaveChanged) return;
  _tools.log.write("Pelmora: Too much has changed to be followed; the folders are read again.");
  for (auto& [path, folder] : _folders) enqueue(path, folder, Place::last);
}

void IndexWork::takeUnread() {
  if (_inspector.isWaiting()) return;
  for (const FilePath& path : std::exchange(_unread, {})) {
    const auto found = _folders.find(path);
    if (found != _folders.end()) enqueue(path, found->second, Place::last);
  }
}

std::optional<double> IndexWork::nextDue() const {
  const std::optional<double> change = _watcher.nextDue();
  if (_unread.empty()) return change;
  const double retry = _inspector.waitsUntil();
  return change ? std::min(*change, retry) : retry;
}

void IndexWork::beginAnewIfTheStoreDid() {
  if (_store.generation() == _generation) return;
  _generation = _store.generation();
  for (auto& [id, query] : _queries) query.forgetRevisions();
  for (auto& [path, folder] : _folders) {
    folder.id = 0;
    enqueue(path, folder, Place::last);
  }
}

void IndexWork::update(const FilePath& path, Folder& folder) {
  const double begin = _tools.clock.mediaTime();
  _watcher.watch(path, begin);  // before it is listed, so that no change is missed
  tellOfPolling();
  if (folder.id == 0) folder.id = _store.folderId(path);
  const FolderIndexer::Outcome outcome = _indexer.update(path, folder.id, [&] {
    lookAt(path, folder, false);
    report(false);
  });
  if (_tools.isOver()) return;
  _progress.filesDone += outcome.fileCount - folder.fileCount;
  folder.fileCount = outcome.fileCount;
  if (outcome.hasUnread) _unread.insert(path);
  if (!std::exchange(folder.isUpToDate, true)) ++_progress.foldersDone;
  tellProgress();
  lookAt(path, folder, true);
  report(false);
  const double end = _tools.clock.mediaTime();
  _watcher.hasPolled(path, end, end - begin);
}

void IndexWork::lookAt(const FilePath& path, const Folder& folder, bool isUpToDate) {
  // Begun anew meanwhile: the folder's turn comes again.
  if (_store.generation() != _generation) return;
  for (auto& [id, query] : _queries) {
    if (query.isStarted()) query.look(_store, path, folder.id, isUpToDate);
  }
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

#include "sources/PMSourceList.h"

#include "cache/FolderCache.h"
#include "platform/Calendar.h"
#include "platform/Clock.h"
#include "platform/Displays.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "sources/AddFolderOp.h"
#include "sources/FolderWalk.h"
#include "sources/LockGuards.h"
#include "sources/ScreenIndexAdditions.h"

#include <algorithm>
#include <utility>

namespace pelmora::sources {

namespace {

/// The day is over by then, however the timer is rounded.
constexpr double kAfterMidnight = 10.0;

struct Shared {
  std::mutex mutex;  // guards the pointer
  std::shared_ptr<PMSourceList> list;
};

Shared& shared() {
  static Shared shared;
  return shared;
}

}  // namespace

std::shared_ptr<PMSourceList> PMSourceList::sharedSourceList(const platform::Services& services) {
  const std::lock_guard lock(shared().mutex);
  if (!shared().list) shared().list = std::make_shared<PMSourceList>(services);
  return shared().list;
}

void PMSourceList::endSharedSourceList() {
  std::shared_ptr<PMSourceList> ended;  // after the lock is given back: it waits for its operations
  const std::lock_guard lock(shared().mutex);
  ended.swap(shared().list);
}

PMSourceList::PMSourceList(const platform::Services& services)
    : _services(services),
      _startDate(services.clock.now()),
      _currentDay(platform::weekday(_startDate) - 1),
      _mainTurns(services.scheduler),
      _enumQueue({services.enumerationConcurrency, platform::QualityOfService::background}) {
  const std::size_t numDisplays = _services.displays.screens().size();
  _services.log.print("Pelmora: NSScreen.screens.count = %zu", numDisplays);
  _weightsSums.resize(numDisplays + 1);
  _numScreens = _weightsSums.size();
  _mainTurns.run([this] { scheduleDayChange(); });
}

PMSourceList::~PMSourceList() {
  if (_dayTimer) _services.scheduler.cancel(*_dayTimer);
  _mainTurns.end();
  if (_queer) _queer->stop();
  endQueryObservers();
}

void PMSourceList::scheduleDayChange() {
  const ReferenceTime now = _services.clock.now();
  const double interval = platform::beginOfNextDay(now).seconds - now.seconds + kAfterMidnight;
  _dayTimer = _services.scheduler.after(interval, [this] { changeDayCallback(); });
}

void PMSourceList::changeDayCallback() {
  _services.log.print("A new day has dawned. Old day: %d", currentDay());
  _currentDay = platform::weekday(_services.clock.now()) - 1;
  _services.log.print("A new day has dawned. New day: %d", currentDay());
  resetWeights();
  scheduleDayChange();
}

void PMSourceList::loadSourcesFromPrefs(platform::PreferencesStore& prefs, bool enumerateFolders,
                                        bool doSecurityScoped) {
  const plist::Array stored = prefs.arrayForKey("Sources").value_or(plist::Array{});
  _services.log.print("Pelmora: Number of sources: %zu", stored.size());
  if (++_numLoaders != 1) return;
  justUnloadSources();
  _enumQueue.setSuspended(true);
  _usesSecurityScoped = doSecurityScoped;
  loadSources(stored, enumerateFolders);
  _enumQueue.setSuspended(false);
}

void PMSourceList::loadSources(const plist::Array& stored, bool enumerateFolders) {
  std::vector<SourceEntry> entries;
  _missingSources.clear();
  for (const plist::Value& value : stored) {
    Result<SourceEntry> entry = resolveStoredEntry(value, _services);
    if (!entry) {
      _services.log.print("Pelmora: Error resolving bookmark: %s", entry.error().message.c_str());
      _missingSources.push_back(entry.error().message);
      continue;
    }
    _services.log.print("Pelmora: loaded folder %s days %llu", entry->url.c_str(),
                        static_cast<unsigned long long>(entry->days));
    if (enumerateFolders && entry->enabled) addEnumOpToQueue(_enumQueue, entry->url, 0, true);
    entries.push_back(*std::move(entry));
  }
  setSources(std::move(entries));
}

void PMSourceList::setSources(std::vector<SourceEntry> entries) {
  auto sources = std::make_shared<const SourceEntries>(std::move(entries));
  const std::lock_guard lock(_sourcesMutex);
  _sources.swap(sources);
}

SharedSourceEntries PMSourceList::sources() const {
  const std::lock_guard lock(_sourcesMutex);
  return _sources;
}

void PMSourceList::unloadSources() {
  if (_numLoaders <= 0) return;
  if (--_numLoaders != 0) return;
  if (_queer) _queer->stop();
  endQueryObservers();
  justUnloadSources();
  clearAll();
}

void PMSourceList::justUnloadSources() { setSources({}); }

void PMSourceList::cancelOperations() {
  if (_enumQueue.operationCount() > 0) _enumQueue.cancelAllOperations();
}

void PMSourceList::clearAll() {
  {
    const WriteGuard guard(dirItemsLock);
    _dirItems.clear();
  }
  resetWeights();
}

void PMSourceList::resetWeights() {
  const WriteGuard guard(weightsSumLock);
  std::fill(_weightsSums.begin(), _weightsSums.end(), 0);
}

std::shared_ptr<PMFolder> PMSourceList::getFolderAtIndex(std::uint64_t index) const {
  const ReadGuard guard(dirItemsLock, _services.log);
  return index < _dirItems.size() ? _dirItems.all()[index] : nullptr;
}

std::uint64_t PMSourceList::indexOfEnumeratedFolderWithURL(const FilePath& url) const {
  const auto facts = _services.files.facts(url, platform::FinalLink::follow);
  return facts ? indexOfEnumeratedFolder(facts->identity) : kNotFound;
}

std::uint64_t PMSourceList::indexOfEnumeratedFolder(const platform::FileIdentity& identity) const {
  const ReadGuard guard(dirItemsLock, _services.log);
  return _dirItems.indexOf(identity);
}

bool PMSourceList::isSourceEnabled(const FilePath& url) const {
  const auto facts = _services.files.facts(url, platform::FinalLink::follow);
  return !facts || sources()->isEnabled(facts->identity);
}

std::uint64_t PMSourceList::daysForFolder(std::string_view folder) const {
  return sources()->valuesForFolder(folder).days;
}

double PMSourceList::priorityForFolder(std::string_view folder) const {
  return sources()->valuesForFolder(folder).priority;
}

std::string PMSourceList::screensForFolder(std::string_view folder) const {
  return sources()->valuesForFolder(folder).screens;
}

void PMSourceList::addFolder(const std::shared_ptr<PMFolder>& record, std::uint64_t forScreen,
                             [[maybe_unused]] bool watchForChanges) {
  append(record, forScreen, nullptr);
}

bool PMSourceList::addWalkedFolder(const std::shared_ptr<PMFolder>& record, std::uint64_t forScreen,
                                   const platform::Operation& operation) {
  return append(record, forScreen, &operation);
}

bool PMSourceList::append(const std::shared_ptr<PMFolder>& record, std::uint64_t forScreen,
                          const platform::Operation* ofWalk) {
  if (record->filenames->empty() || !includesScreenIndex(record->screens, forScreen)) return true;
  bool isFirst = false;
  {
    const WriteGuard guard(dirItemsLock);
    // Whoever cancels a walk empties the list afterwards: asked under the lock, no record slips in
    // behind that.
    if (ofWalk && ofWalk->isCancelled()) return false;
    isFirst = _dirItems.empty();
    if (!ofWalk) {
      _dirItems.append(record);
    } else if (!_dirItems.appendIfNew(record)) {
      return false;
    }
  }
  if (_isFiltered) addSearchScope(record->url, ofWalk);
  if (isFirst) {
    _services.notifications.post(
        {"FirstFolderAdded", static_cast<std::int64_t>(forScreen), plist::Dictionary{}});
  }
  return true;
}

void PMSourceList::setPriorityAndScreens(std::uint64_t ofFolderAtIndex,
                                         const FolderValues& values) {
  const WriteGuard guard(dirItemsLock, _services.log, kReadLockFailed);
  _dirItems.setPriorityAndScreens(ofFolderAtIndex, values.priority, values.screens);
}

void PMSourceList::addSpotlightFilename(std::uint64_t toFolderAtIndex, std::string name) {
  const WriteGuard guard(dirItemsLock);
  _dirItems.addSpotlightFilename(toFolderAtIndex, std::move(name));
}

void PMSourceList::addEnumOpToQueue(platform::OperationQueue& queue, FilePath forFolder,
                                    std::uint64_t forScreen, bool isBaseFolder,
                                    const platform::Operation* ofWalk, SharedNames withSubfolders) {
  const auto operation = std::make_shared<AddFolderOp>(
      std::move(forFolder), forScreen, isBaseFolder, queue, *this, std::move(withSubfolders));
  const bool findsNothing =
      !isBaseFolder && operation->subfolders && operation->subfolders->empty();
  if (findsNothing) {  // most folders of a walk: to queue it would take longer than to run it
    operation->main();
    return;
  }
  queue.addOperation(operation);
  // Asked last: a cancellation of the queue finds either the new operation there or this one.
  if (ofWalk && ofWalk->isCancelled()) operation->cancel();
}

void PMSourceList::enumFolder(const FilePath& folder, std::uint64_t forScreen, bool isBaseFolder,
                              platform::OperationQueue& addOpToQueue,
                              const platform::Operation& currentOperation,
                              const SharedNames& withSubfolders) {
  if (currentOperation.isCancelled()) return;
  walkFolder(folder, forScreen, isBaseFolder, addOpToQueue, currentOperation, withSubfolders);
  resetWeights();
}

void PMSourceList::walkFolder(const FilePath& folder, std::uint64_t forScreen, bool isBaseFolder,
                              platform::OperationQueue& addOpToQueue,
                              const platform::Operation& currentOperation,
                              const SharedNames& withSubfolders) {
  const bool isLeaf = !isBaseFolder && withSubfolders && withSubfolders->empty();
  if (isLeaf) return;
  const auto cache = cache::FolderCache::sharedCache(_services);
  const FolderWalk walk(*this, *cache, forScreen, addOpToQueue, currentOperation);
  if (isBaseFolder) {
    walk.walkBaseFolder(folder);
  } else {
    walk.walkSubfolder(folder, withSubfolders);
  }
}

std::vector<std::shared_ptr<PMFolder>> PMSourceList::dirItems() const {
  const ReadGuard guard(dirItemsLock, _services.log);
  return _dirItems.all();
}

std::vector<std::uint64_t> PMSourceList::weightsSums() const {
  const ReadGuard guard(weightsSumLock, _services.log);
  return _weightsSums;
}

std::string PMSourceList::description() const {
  const ReadGuard guard(dirItemsLock, _services.log);
  std::string text = "PMSourceList: (";
  for (const auto& record : _dirItems.all()) {
    text += text.back() == '(' ? "\n    " : ",\n    ";
    text += record->description();
  }
  return text + "\n)";
}

}  // namespace pelmora::sources

#include "StressRound.h"

#include "cache/FolderCache.h"
#include "platform/predicate/Predicate.h"

#include <set>

namespace pelmora::stress {

namespace {

constexpr std::uint64_t kScreens = 4;  // three displays and the preview
constexpr double kDay = 86400;         // seconds
constexpr int kMostLoaders = 4;
constexpr int kPicksOfAStep = 4;
constexpr int kMostNames = 5;  // in one notification
constexpr std::string_view kName = "Pelmora";

/// The filter's answer as the index gives it.
plist::Value item(const FilePath& file) {
  return plist::Dictionary{{platform::NSMetadataItemFSNameKey, std::string(file.lastComponent())},
                           {platform::NSMetadataItemPathKey, file.bytes()}};
}

}  // namespace

StressRound::StressRound(StressServices& services, StressTree& tree, StressCounts& counts,
                         std::uint64_t seed)
    : _services(services),
      _tree(tree),
      _counts(counts),
      _random(seed),
      _list(std::make_unique<sources::PMSourceList>(services.services)) {
  srandom(static_cast<unsigned>(seed));
  _services.fakes.preferences.setObject("Sources", _tree.sources());
}

StressRound::~StressRound() {
  _isOver = true;
  for (std::thread& thread : _threads) thread.join();
  _list.reset();
  cache::FolderCache::endSharedCache();
}

void StressRound::start(void (StressRound::*work)(Random&)) {
  _threads.emplace_back([this, work, random = Random(_random())]() mutable {
    while (!_isOver) (this->*work)(random);
  });
}

void StressRound::pick(Random& random) {
  const std::uint64_t screen = random() % kScreens;
  if (_list->randomImageAndURLForScreenIndex(screen)) ++_counts.pictures;
  ++_counts.picks;
  const FilePath folder = _tree.anyFolder(random);
  switch (random() % 8) {
    case 0:
      static_cast<void>(_list->getFolderAtIndex(_list->indexOfEnumeratedFolderWithURL(folder)));
      break;
    case 1:
      static_cast<void>(_list->isSourceEnabled(folder));
      static_cast<void>(_list->daysForFolder(folder.bytes()));
      break;
    case 2:
      static_cast<void>(_list->dirItems());
      static_cast<void>(_list->weightsSums());
      break;
    case 3:
      static_cast<void>(_list->randomURLForScreenIndex(screen));
      break;
    case 4:
      static_cast<void>(_list->queer());
      static_cast<void>(_list->currentDay());
      break;
    default:
      return;
  }
  ++_counts.lookups;
}

void StressRound::notify(Random& random) {
  static constexpr const char* kNotifications[] = {
      platform::NSMetadataQueryGatheringProgressNotification,
      platform::NSMetadataQueryDidUpdateNotification,
      platform::NSMetadataQueryDidFinishGatheringNotification};
  plist::Array items;
  for (std::uint64_t i = random() % kMostNames; i > 0; --i)
    items.push_back(item(_tree.anyFile(random)));
  plist::Dictionary userInfo;
  if (!items.empty()) {
    userInfo[platform::NSMetadataQueryUpdateAddedItemsKey] = std::move(items);
  }
  _services.fakes.notifications.post({kNotifications[random() % 3], {}, std::move(userInfo)});
  // No faster than pictures are picked: what handles them keeps all that arrived.
  const std::uint64_t picks = _counts.picks;
  ++_counts.notifications;
  while (!_isOver && _counts.picks == picks) std::this_thread::yield();
}

void StressRound::useCache(Random& random) {
  const auto cache = cache::FolderCache::sharedCache(_services.services);
  const FilePath folder = _tree.anyFolder(random);
  static_cast<void>(cache->mdateOfFolder(folder));
  static_cast<void>(cache->cachedFolder(folder));
  const SharedNames folders = cache->folderNamesOfFolder(folder);
  if (folders && random() % 4 == 0) cache->setFolderNames(folders, folder);
  if (random() % 64 == 0) cache->saveForAppName(kName);
  ++_counts.cacheCalls;
  std::this_thread::yield();
}

void StressRound::change(Random& random) {
  _tree.changeSomething(random);
  ++_counts.changes;
  std::this_thread::yield();
}

void StressRound::useFilter() {
  using namespace platform::predicate;
  ++_counts.filters;
  if (_random() % 3 == 0) return _list->setSpotlightQuery(std::nullopt);
  const char* const text = _random() % 2 == 0 ? "beach" : "3";
  _list->setSpotlightQuery(
      Comparison{KeyPath{"kMDItemFSName"}, Operator::contains, Constant(text)});
}

void StressRound::step() {
  switch (_random() % 16) {
    case 0:
    case 1:
    case 2:
      if (_list->numLoaders() == kMostLoaders) break;
      cache::FolderCache::sharedCache(_services.services)->loadForAppName(kName);
      _list->loadSourcesFromPrefs(_services.fakes.preferences, true, false);
      ++_counts.loads;
      break;
    case 3:
    case 4:
      _list->cancelOperations();
      _list->unloadSources();
      ++_counts.unloads;
      break;
    case 5:
      _list->cancelOperations();
      ++_counts.cancellations;
      break;
    case 6:
      _services.fakes.scheduler.advanceBy(kDay);
      ++_counts.dayChanges;
      break;
    case 7:
      useFilter();
      break;
    default:
      break;
  }
  letOthersWork();
}

void StressRound::letOthersWork() {
  for (const std::uint64_t enough = _counts.picks + kPicksOfAStep; _counts.picks < enough;) {
    _services.fakes.scheduler.runPosted();
    std::this_thread::yield();
  }
}

std::vector<std::string> StressRound::run(int steps) {
  for (std::uint64_t i = 0; i < kScreens; ++i) start(&StressRound::pick);
  start(&StressRound::notify);
  start(&StressRound::notify);
  start(&StressRound::useCache);
  start(&StressRound::change);
  for (int i = 0; i < steps; ++i) step();
  stopAll();

  std::vector<std::string> problems;
  if (_list->numLoaders() != 0 || !_list->dirItems().empty()) {
    problems.push_back("the list is not empty after its last unload");
  }
  for (const std::uint64_t sum : _list->weightsSums()) {
    if (sum != 0) problems.push_back("a weight stayed after the last unload");
  }
  walkToTheEnd();
  checkRecords(problems);
  checkChoice(problems);
  return problems;
}

/// Main goes on with its turns meanwhile, as the others may wait for one.
void StressRound::stopAll() {
  _isOver = true;
  _list->cancelOperations();
  std::atomic<bool> isDone = false;
  std::thread waiter([this, &isDone] {
    for (std::thread& thread : _threads) thread.join();
    _list->enumQueue().waitUntilAllOperationsAreFinished();
    isDone = true;
    _services.fakes.scheduler.wake();
  });
  _services.fakes.scheduler.runPostedUntil([&isDone] { return isDone.load(); });
  waiter.join();
  _threads.clear();
  _list->setSpotlightQuery(std::nullopt);
  while (_list->numLoaders() > 0) _list->unloadSources();
}

/// With a new cache: the one of the round may know folders as they were before.
void StressRound::walkToTheEnd() {
  cache::FolderCache::endSharedCache();
  _list->loadSourcesFromPrefs(_services.fakes.preferences, true, false);
  _list->enumQueue().waitUntilAllOperationsAreFinished();
}

void StressRound::checkRecords(std::vector<std::string>& problems) {
  const auto expected = _tree.filesOfFolders();
  const auto cache = cache::FolderCache::sharedCache(_services.services);
  std::set<std::string> found;
  for (const auto& record : _list->dirItems()) {
    const std::string& folder = record->url.bytes();
    if (!found.insert(folder).second) problems.push_back(folder + " has two records");
    const auto files = expected.find(folder);
    if (files == expected.end() || files->second != record->filenames->size()) {
      problems.push_back(folder + " has a record with other files than it has");
    }
    const SharedNames cached = cache->fileNamesOfFolder(record->url);
    if (!cached || cached->size() != record->filenames->size()) {
      problems.push_back(folder + " is not cached as it was found");
    }
  }
  if (found.size() != expected.size()) {
    problems.push_back("of " + std::to_string(expected.size()) + " folders " +
                       std::to_string(found.size()) + " have records");
  }
}

void StressRound::checkChoice(std::vector<std::string>& problems) {
  for (std::uint64_t screen = 0; screen < kScreens; ++screen) {
    const std::uint64_t expected = _tree.weight(screen, _list->currentDay());
    const bool isDrawn = _list->randomFolderForScreen(screen) != nullptr;
    if (isDrawn != (expected > 0)) {
      problems.push_back("screen " + std::to_string(screen) + " draws wrongly");
    }
    if (_list->weightsSums()[screen] != expected) {
      problems.push_back("screen " + std::to_string(screen) + " weighs " +
                         std::to_string(_list->weightsSums()[screen]) + " instead of " +
                         std::to_string(expected));
    }
  }
}

}  // namespace pelmora::stress

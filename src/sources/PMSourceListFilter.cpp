#include "platform/Log.h"
#include "platform/MetadataQuery.h"
#include "platform/predicate/PredicateEmptiness.h"
#include "sources/LockGuards.h"
#include "sources/PMSourceList.h"

#include <utility>

namespace pelmora::sources {

namespace {

using platform::predicate::Predicate;

/// A compound of one thing is that thing.
const Predicate& withoutWrapping(const Predicate& predicate) {
  const auto* compound = predicate.get<platform::predicate::Compound>();
  const bool wrapsOne = compound && compound->subpredicates.size() == 1;
  return wrapsOne ? compound->subpredicates.front() : predicate;
}

plist::Array addedItems(const platform::Notification& notification) {
  const auto found = notification.userInfo.find(platform::NSMetadataQueryUpdateAddedItemsKey);
  if (found == notification.userInfo.end()) return {};
  const auto* items = found->second.get<plist::Array>();
  return items ? *items : plist::Array{};
}

const std::string* textIn(const plist::Value& item, const char* key) {
  const auto* values = item.get<plist::Dictionary>();
  if (!values) return nullptr;
  const auto found = values->find(key);
  return found == values->end() ? nullptr : found->second.get<std::string>();
}

}  // namespace

void PMSourceList::setSpotlightQuery(const std::optional<Predicate>& predicate) {
  if (_queer) {
    _queer->stop();
    const WriteGuard guard(spotlightScopesLock);
    _queer = nullptr;
    _isFiltered = false;
  }
  endQueryObservers();
  if (!predicate || platform::predicate::isEmpty(*predicate, _services.log)) return;
  {
    const WriteGuard guard(spotlightScopesLock);
    _queer = _services.metadata.makeQuery();
    _isFiltered = true;  // before the records are read: each is a scope from there or from its own
  }
  _queer->setPredicate(withoutWrapping(*predicate));
  platform::SearchScopes scopes;
  for (const auto& record : dirItems()) scopes.append(record->url.bytes());
  if (scopes.empty()) scopes.append(kPlaceholderScope);
  _queer->setSearchScopes(std::move(scopes));
  observeQuery();
  _queer->start();
}

std::shared_ptr<platform::MetadataQuery> PMSourceList::queer() const {
  const ReadGuard guard(spotlightScopesLock, _services.log);
  return _queer;
}

void PMSourceList::observeQuery() {
  const auto observer = [this](const char* notification, const char* queueName, int which) {
    return std::make_unique<QueueObserver>(
        _services.notifications, notification, queueName,
        [this, which](const auto& posted) { handleQueryNotification(posted, which); });
  };
  _observerForQueryGatheringProgress =
      observer(platform::NSMetadataQueryGatheringProgressNotification,
               "queue for query gathering progress", 1);
  _observerForQueryDidUpdate =
      observer(platform::NSMetadataQueryDidUpdateNotification, "queue for query did update", 2);
  _observerForQueryFinishedGather =
      observer(platform::NSMetadataQueryDidFinishGatheringNotification,
               "queue for query finished gather", 3);
}

void PMSourceList::endQueryObservers() {
  _observerForQueryGatheringProgress.reset();
  _observerForQueryDidUpdate.reset();
  _observerForQueryFinishedGather.reset();
}

/// On the notification's own queue.
void PMSourceList::handleQueryNotification(const platform::Notification& notification,
                                           [[maybe_unused]] int which) {
  const auto query = queer();
  if (query) query->disableUpdates();
  const plist::Array items = addedItems(notification);
  _services.log.print("Spotlight found %lu images.", static_cast<unsigned long>(items.size()));
  addSpotlightFilenames(items);
  resetWeights();
  if (query) query->enableUpdates();
}

void PMSourceList::addSpotlightFilenames(const plist::Array& items) {
  std::string lastFolder;
  std::optional<platform::FileFacts> facts;  // of it: what comes together is mostly in one folder
  for (const plist::Value& item : items) {
    const std::string* const name = textIn(item, platform::NSMetadataItemFSNameKey);
    const std::string* const path = textIn(item, platform::NSMetadataItemPathKey);
    if (!name || !path) continue;
    const FilePath folder = FilePath(*path).parent();
    if (folder.bytes() != lastFolder) {
      lastFolder = folder.bytes();
      facts = _services.files.facts(folder, platform::FinalLink::follow);
    }
    if (facts) addSpotlightFilename(indexOfEnumeratedFolder(facts->identity), *name);
  }
}

void PMSourceList::waitUntilGathered() const {
  if (const auto query = queer()) query->waitUntilGathered();
  for (const auto* observer : {&_observerForQueryGatheringProgress, &_observerForQueryDidUpdate,
                               &_observerForQueryFinishedGather}) {
    if (*observer) (*observer)->queue().waitUntilAllOperationsAreFinished();
  }
}

void PMSourceList::addSearchScope(const FilePath& folder, const platform::Operation* ofWalk) {
  _mainTurns.runAndWait([this, &folder, ofWalk] {
    const WriteGuard guard(spotlightScopesLock);
    if (!_queer || (ofWalk && ofWalk->isCancelled())) return;
    _queer->stop();
    platform::SearchScopes scopes = _queer->searchScopes();
    if (scopes.size() == 1 && scopes[0] == kPlaceholderScope) scopes = {};
    scopes.append(folder.bytes());
    _queer->setSearchScopes(std::move(scopes));
    _queer->start();
  });
}

}  // namespace pelmora::sources

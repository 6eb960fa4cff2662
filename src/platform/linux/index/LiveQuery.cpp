#include "platform/linux/index/LiveQuery.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pelmora::platform {

namespace {

// How many files are reported together.
constexpr std::size_t kWorthReporting = 256;
constexpr std::size_t kMostItems = 1024;

plist::Value item(const std::string& name, std::string path) {
  plist::Dictionary values;
  values.emplace(NSMetadataItemFSNameKey, name);
  values.emplace(NSMetadataItemPathKey, std::move(path));
  return values;
}

}  // namespace

void QueryState::begin(std::uint64_t start) {
  const std::lock_guard lock(_mutex);
  _started = start;
}

void QueryState::finish(std::uint64_t start) {
  const std::lock_guard lock(_mutex);
  _finished = start;
  _changed.notify_all();
}

void QueryState::end() {
  const std::lock_guard lock(_mutex);
  _started = 0;
  _changed.notify_all();
}

void QueryState::waitUntilFinished() {
  std::unique_lock lock(_mutex);
  _changed.wait(lock, [this] { return _started == 0 || _finished >= _started; });
}

void LiveQuery::setPredicate(predicate::Predicate predicate) {
  _predicate = std::move(predicate);
  _prepared = nullptr;
}

std::vector<FilePath> LiveQuery::setScopes(const std::vector<FilePath>& folders) {
  std::unordered_map<FilePath, Scope> former = std::exchange(_scopes, {});
  _toGather = 0;
  for (const FilePath& folder : folders) {
    const auto known = former.find(folder);
    const Scope scope = known == former.end() ? Scope{} : known->second;
    if (_scopes.emplace(folder, scope).second && !scope.isGathered) ++_toGather;
    if (known != former.end()) former.erase(known);
  }
  std::vector<FilePath> left;
  for (const auto& [folder, scope] : former) left.push_back(folder);
  return left;
}

void LiveQuery::addScopes(const std::vector<FilePath>& folders) {
  for (const FilePath& folder : folders) {
    if (_scopes.emplace(folder, Scope{}).second) ++_toGather;
  }
}

void LiveQuery::start(std::uint64_t number) { _start = number; }

std::vector<FilePath> LiveQuery::scopes() const {
  std::vector<FilePath> folders;
  for (const auto& [folder, scope] : _scopes) folders.push_back(folder);
  return folders;
}

bool LiveQuery::look(MetadataStore& store, const FilePath& folder, MetadataStore::FolderId id,
                     bool isUpToDate) {
  const auto found = _scopes.find(folder);
  if (found == _scopes.end()) return true;
  Scope& scope = found->second;
  if (id != 0 && !find(store, folder, id, scope)) return false;
  if (isUpToDate && !scope.isGathered) {
    scope.isGathered = true;
    --_toGather;
  }
  return true;
}

bool LiveQuery::find(MetadataStore& store, const FilePath& folder, MetadataStore::FolderId id,
                     Scope& scope) {
  const std::uint64_t failures = store.failures();
  if (!_prepared) _prepared = store.prepare(_predicate);
  // Read first: what changes meanwhile is looked at again, and not reported twice.
  const MetadataStore::Revision newest = store.newestRevision();
  const std::vector<std::string> matches = store.matches(*_prepared, id, scope.since);
  if (store.failures() != failures) return false;
  for (const std::string& name : matches) {
    std::string path = (folder / name).bytes();
    const bool isNew = _reported.insert(std::hash<std::string>{}(path)).second;
    if (isNew) _items.push_back(item(name, std::move(path)));
  }
  scope.since = newest;
  return true;
}

void LiveQuery::forgetRevisions() {
  for (auto& [folder, scope] : _scopes) scope.since = 0;
  _prepared = nullptr;
}

void LiveQuery::report(bool all) {
  if (!isStarted() || _state->disabled > 0) return;
  const bool isGathered = _toGather == 0;
  const bool isWorth = all || isGathered || _items.size() >= kWorthReporting;
  // All of them: nothing might happen that they could wait for.
  while (isWorth && !_items.empty() && _state->disabled == 0) postItems();
  if (isGathered && _finishedStart != _start && _items.empty()) {
    _finishedStart = _start;
    post(NSMetadataQueryDidFinishGatheringNotification, {});
    _state->finish(_start);
  }
}

void LiveQuery::postItems() {
  const char* const notification = _finishedStart == _start
                                       ? NSMetadataQueryDidUpdateNotification
                                       : NSMetadataQueryGatheringProgressNotification;
  const std::size_t count = std::min(_items.size(), kMostItems);
  const auto end = _items.begin() + static_cast<std::ptrdiff_t>(count);
  plist::Array items(std::move_iterator(_items.begin()), std::move_iterator(end));
  _items.erase(_items.begin(), end);
  plist::Dictionary userInfo;
  userInfo.emplace(NSMetadataQueryUpdateAddedItemsKey, std::move(items));
  post(notification, std::move(userInfo));
}

void LiveQuery::post(const char* notification, plist::Dictionary userInfo) {
  _center.post({notification, {}, std::move(userInfo)});
}

}  // namespace pelmora::platform

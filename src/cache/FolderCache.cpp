#include "cache/FolderCache.h"

#include "cache/FolderCacheFile.h"
#include "platform/AtomicFile.h"
#include "platform/FileContents.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/UserFolders.h"

#include <sys/stat.h>

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

namespace pelmora::cache {

namespace {

/// More than ten times a million names; beyond it the file is taken for damaged.
constexpr std::size_t kLargestFile = 512 << 20;

std::mutex sharedMutex;  // guards the shared cache
std::shared_ptr<FolderCache>& sharedSlot() {
  static std::shared_ptr<FolderCache> shared;
  return shared;
}

FilePath fileIn(const FilePath& cacheFolder) { return cacheFolder / "FolderCache.plist"; }

}  // namespace

std::shared_ptr<FolderCache> FolderCache::sharedCache(const platform::Services& services) {
  const std::lock_guard lock(sharedMutex);
  std::shared_ptr<FolderCache>& shared = sharedSlot();
  if (!shared) shared = std::make_shared<FolderCache>(services);
  return shared;
}

void FolderCache::endSharedCache() {
  const std::lock_guard lock(sharedMutex);
  sharedSlot().reset();
}

FolderCache::FolderCache(const platform::Services& services) : _services(services) {}

void FolderCache::addFolder(const FilePath& folder, SharedNames fileNames,
                            SharedNames subfolderNames, std::optional<ReferenceTime> listedAt) {
  if (!listedAt) {
    const auto facts = _services.files.facts(folder, platform::FinalLink::follow);
    if (!facts) return;
    listedAt = facts->contentModificationDate;
  }
  if (!fileNames) fileNames = makeNameList({});
  const std::string name(folder.lastComponent());
  _services.log.print("Pelmora: caching folder %s with %lu files and %lu folders.", name.c_str(),
                      static_cast<unsigned long>(fileNames->size()),
                      static_cast<unsigned long>(subfolderNames ? subfolderNames->size() : 0));

  const std::lock_guard lock(_mutex);
  cache.insert_or_assign(folder, Entry{.mdate = *listedAt,
                                       .names = std::move(fileNames),
                                       .folderNames = std::move(subfolderNames),
                                       .accessed = true});
  dirty = true;
}

std::optional<ReferenceTime> FolderCache::mdateOfFolder(const FilePath& folder) {
  const std::shared_lock lock(_mutex);
  const auto found = cache.find(folder);
  if (found == cache.end()) return std::nullopt;
  std::atomic_ref(found->second.accessed).store(true, std::memory_order_relaxed);
  return found->second.mdate;
}

SharedNames FolderCache::fileNamesOfFolder(const FilePath& folder) const {
  const std::shared_lock lock(_mutex);
  const auto found = cache.find(folder);
  return found == cache.end() ? nullptr : found->second.names;
}

SharedNames FolderCache::folderNamesOfFolder(const FilePath& folder) const {
  const std::shared_lock lock(_mutex);
  const auto found = cache.find(folder);
  return found == cache.end() ? nullptr : found->second.folderNames;
}

std::optional<FolderCache::CachedFolder> FolderCache::cachedFolder(const FilePath& folder) const {
  const std::shared_lock lock(_mutex);
  const auto found = cache.find(folder);
  if (found == cache.end()) return std::nullopt;
  const Entry& entry = found->second;
  return CachedFolder{entry.mdate, entry.names, entry.folderNames};
}

void FolderCache::setFolderNames(SharedNames names, const FilePath& ofFolder) {
  const std::lock_guard lock(_mutex);
  const auto found = cache.find(ofFolder);
  if (found != cache.end()) found->second.folderNames = std::move(names);
}

bool FolderCache::loadForAppName(std::string_view name) {
  {
    const std::lock_guard lock(_mutex);
    if (std::exchange(loaded, true)) return true;
  }
  const std::vector<FilePath> caches = _services.userFolders.caches();
  if (caches.empty()) return false;

  _services.log.write("Pelmora: Loading folder cache.");
  const auto contents = platform::FileContents::read(fileIn(caches.front() / name), kLargestFile);
  if (!contents) {
    _services.log.print("Pelmora: Error reading folder cache: %s",
                        contents.error().message.c_str());
    return false;
  }
  Result<Entries> entries = FolderCacheFile::decode(contents->bytes());
  if (!entries) {
    _services.log.print("Pelmora: Error unarchiving folder cache: %s",
                        entries.error().message.c_str());
    return false;
  }
  const std::lock_guard lock(_mutex);
  cache.swap(*entries);
  return true;
}

void FolderCache::saveForAppName(std::string_view name) {
  {
    const std::lock_guard lock(_mutex);
    if (saved || !dirty) return;
    saved = true;
    dirty = false;
  }
  const std::vector<FilePath> caches = _services.userFolders.caches();
  if (caches.empty()) return;

  _services.log.write("Pelmora: Saving folder cache.");
  const FilePath folder = caches.front() / name;
  static_cast<void>(::mkdir(folder.c_str(), 0700));
  const Result<plist::Bytes> archive = FolderCacheFile::encode(prune());
  if (!archive) {
    _services.log.print("Pelmora: Folder cache could not be archived: %s",
                        archive.error().message.c_str());
    return;
  }
  platform::sweepTemporaryFiles(fileIn(folder));
  if (!platform::writeAtomically(fileIn(folder), *archive)) {
    _services.log.write("Pelmora: Error writing folder cache.");
  }
}

FolderCache::Entries FolderCache::prune() {
  const std::lock_guard lock(_mutex);
  std::erase_if(cache, [](const auto& pair) { return !pair.second.accessed; });
  for (auto& [folder, entry] : cache) entry.accessed = false;
  return cache;
}

}  // namespace pelmora::cache

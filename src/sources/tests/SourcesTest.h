#pragma once

#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "sources/PMSourceList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace pelmora::sources {

/// A source list over folders of the test's own, with a folder cache that is empty at first.
class SourcesTest : public testing::Test {
 public:
  SourcesTest() { cache::FolderCache::endSharedCache(); }
  ~SourcesTest() override {
    list.reset();
    cache::FolderCache::endSharedCache();
  }

 protected:
  struct Source {
    FilePath folder;
    double chance = 100;
    std::int64_t days = 127;
    std::string screens = {};
    bool enabled = true;
  };

  PMSourceList& makeList() {
    list = std::make_unique<PMSourceList>(services);
    fakes.log.clear();
    return *list;
  }

  void setSources(const std::vector<Source>& sources) {
    plist::Array stored;
    for (const Source& source : sources) {
      stored.emplace_back(
          plist::Dictionary{{"bookmark", platform::FakeBookmarks::bookmarkOf(source.folder)},
                            {"enabled", source.enabled},
                            {"chance", source.chance},
                            {"days", source.days},
                            {"screens", source.screens}});
    }
    fakes.preferences.setObject("Sources", std::move(stored));
  }

  /// Loads the sources into a new list, and lets the walk end.
  PMSourceList& load(const std::vector<Source>& sources) {
    setSources(sources);
    makeList().loadSourcesFromPrefs(fakes.preferences, true, false);
    list->enumQueue().waitUntilAllOperationsAreFinished();
    return *list;
  }

  /// The same once more, from the cache alone and with the calls counted anew.
  void loadAgain() {
    list->unloadSources();
    fakes.files.clearCounts();
    list->loadSourcesFromPrefs(fakes.preferences, true, false);
    list->enumQueue().waitUntilAllOperationsAreFinished();
  }

  [[nodiscard]] std::shared_ptr<PMFolder> recordOf(const FilePath& folder) const {
    return list->getFolderAtIndex(list->indexOfEnumeratedFolderWithURL(folder));
  }

  [[nodiscard]] cache::FolderCache& cache() const {
    return *cache::FolderCache::sharedCache(services);
  }

  /// Steps main until the walk has ended.
  void runUntilWalked() {
    std::atomic<bool> isWalked = false;
    std::thread waiter([this, &isWalked] {
      list->enumQueue().waitUntilAllOperationsAreFinished();
      isWalked = true;
      fakes.scheduler.wake();
    });
    fakes.scheduler.runPostedUntil([&isWalked] { return isWalked.load(); });
    waiter.join();
  }

  /// Narrows the list by a filter that is not empty, and whose query finds nothing by itself.
  platform::FakeMetadataQuery& useFilter() {
    using namespace platform::predicate;
    list->setSpotlightQuery(
        Comparison{KeyPath{"kMDItemFSName"}, Operator::contains, Constant("a")});
    return *fakes.metadata.lastQuery();
  }

  using Names = std::vector<std::string>;

  [[nodiscard]] static Names inOrder(const SharedNames& nameList) {
    return {nameList->begin(), nameList->end()};
  }
  /// Sorted, since a folder lists its entries in an order of its own.
  [[nodiscard]] static Names names(const SharedNames& nameList) {
    if (!nameList) return {"(null)"};
    Names sorted = inOrder(nameList);
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

  platform::TemporaryFolder temporary;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  std::unique_ptr<PMSourceList> list;
};

/// Holds a lock without the guards, which keep the order of the locks: whoever asks for it on this
/// thread gets an error.
class HeldLock {
 public:
  explicit HeldLock(ListLock& lock) : _lock(lock) { EXPECT_EQ(lock.lockForWriting(), 0); }
  ~HeldLock() { _lock.unlock(); }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
  ListLock& _lock;
};

/// An operation that does nothing but be cancelled.
class IdleOperation : public platform::Operation {
 public:
  void main() override {}
};

/// A record in memory alone: `files` names, made up.
inline std::shared_ptr<PMFolder> makeFolder(std::string path, std::size_t files,
                                            double priority = 1.0, std::string screens = {},
                                            std::uint64_t days = 127) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < files; ++i) names.push_back(std::to_string(i) + ".jpg");
  return std::make_shared<PMFolder>(FilePath(std::move(path)), false,
                                    PMFolder::Contents{.contentNames = makeNameList(names)},
                                    priority, std::move(screens), days);
}

}  // namespace pelmora::sources

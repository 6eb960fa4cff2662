#include "cache/FolderCache.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/FileContents.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <limits>
#include <thread>

namespace pelmora::cache {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kApp = "Pelmora";

class FolderCacheTest : public testing::Test {
 protected:
  FolderCacheTest() { fakes.userFolders.cachesFolders = {folder.path() / "caches"}; }

  /// A cache as a process that starts now has it.
  [[nodiscard]] std::unique_ptr<FolderCache> newProcess() const {
    return std::make_unique<FolderCache>(services);
  }
  void saveFolders(const std::vector<FilePath>& paths) const {
    const auto cache = newProcess();
    for (const FilePath& path : paths) cache->addFolder(path, names, nullptr, date);
    cache->saveForAppName(kApp);
  }
  [[nodiscard]] bool isSaved(const FilePath& path) const {
    const auto cache = newProcess();
    return cache->loadForAppName(kApp) && cache->mdateOfFolder(path).has_value();
  }
  [[nodiscard]] std::string bytesOfFile() const {
    const auto contents = platform::FileContents::read(file, 1 << 20);
    if (!contents) return {};
    return {contents->bytes().begin(), contents->bytes().end()};
  }

  platform::TemporaryFolder folder;
  platform::FakeServices fakes;
  platform::Services services = fakes.services();
  FilePath caches = folder.mkdir("caches");
  FilePath file = caches / "Pelmora/FolderCache.plist";
  SharedNames names = makeNameList({"a.jpg", "b.jpg"});
  ReferenceTime date{718283.25};
};

}  // namespace

TEST_F(FolderCacheTest, isSharedUntilItEnds) {
  const auto first = FolderCache::sharedCache(services);
  EXPECT_EQ(FolderCache::sharedCache(services), first);
  FolderCache::endSharedCache();
  EXPECT_NE(FolderCache::sharedCache(services), first);
  FolderCache::endSharedCache();
}

TEST_F(FolderCacheTest, givesBackWhatWasAdded) {
  const auto cache = newProcess();
  const SharedNames folders = makeNameList({"sub"});
  cache->addFolder(FilePath("/p"), names, folders, date);
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/p")), date);
  EXPECT_EQ(cache->fileNamesOfFolder(FilePath("/p")), names);
  EXPECT_EQ(cache->folderNamesOfFolder(FilePath("/p")), folders);
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder p with 2 files and 1 folders."), 1U);
}

TEST_F(FolderCacheTest, tellsAllOfAFolderAtOnce) {
  const auto cache = newProcess();
  EXPECT_FALSE(cache->cachedFolder(FilePath("/p")));
  const SharedNames folders = makeNameList({"sub"});
  cache->addFolder(FilePath("/p"), names, folders, date);
  const auto cached = cache->cachedFolder(FilePath("/p"));
  ASSERT_TRUE(cached);
  EXPECT_EQ(cached->mdate, date);
  EXPECT_EQ(cached->fileNames, names);
  EXPECT_EQ(cached->folderNames, folders);
}

TEST_F(FolderCacheTest, knowsNothingOfOtherFolders) {
  const auto cache = newProcess();
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/p")), std::nullopt);
  EXPECT_EQ(cache->fileNamesOfFolder(FilePath("/p")), nullptr);
  EXPECT_EQ(cache->folderNamesOfFolder(FilePath("/p")), nullptr);
}

TEST_F(FolderCacheTest, tellsNoSubfoldersFromNotKnown) {
  const auto cache = newProcess();
  cache->addFolder(FilePath("/p"), names, makeNameList({}), date);
  cache->addFolder(FilePath("/q"), nullptr, nullptr, date);
  cache->saveForAppName(kApp);
  const auto next = newProcess();
  ASSERT_TRUE(next->loadForAppName(kApp));
  ASSERT_NE(next->folderNamesOfFolder(FilePath("/p")), nullptr);
  EXPECT_TRUE(next->folderNamesOfFolder(FilePath("/p"))->empty());
  EXPECT_EQ(next->folderNamesOfFolder(FilePath("/q")), nullptr);
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder q with 0 files and 0 folders."), 1U);
}

TEST_F(FolderCacheTest, replacesAnOlderEntry) {
  const auto cache = newProcess();
  cache->addFolder(FilePath("/p"), names, makeNameList({"sub"}), date);
  cache->addFolder(FilePath("/p"), makeNameList({"c"}), nullptr, ReferenceTime{9});
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/p")), ReferenceTime{9});
  EXPECT_EQ(*cache->fileNamesOfFolder(FilePath("/p")), *makeNameList({"c"}));
  EXPECT_EQ(cache->folderNamesOfFolder(FilePath("/p")), nullptr);
}

TEST_F(FolderCacheTest, readsTheDateOfAFolderThatComesWithoutOne) {
  const FilePath pictures = folder.mkdir("pictures");
  const auto facts = fakes.posixFiles.facts(pictures, platform::FinalLink::follow);
  ASSERT_TRUE(facts);
  const auto cache = newProcess();
  cache->addFolder(pictures, names, nullptr);
  EXPECT_EQ(cache->mdateOfFolder(pictures), facts->contentModificationDate);
}

TEST_F(FolderCacheTest, neverCachesAFolderWhoseDateCannotBeRead) {
  const auto cache = newProcess();
  const FilePath missing = folder.path() / "missing";
  cache->addFolder(missing, names, nullptr);
  EXPECT_EQ(cache->mdateOfFolder(missing), std::nullopt);
  EXPECT_THAT(fakes.log.lines(), IsEmpty());
  cache->saveForAppName(kApp);
  EXPECT_FALSE(std::filesystem::exists(file.bytes())) << "nothing was added";
}

TEST_F(FolderCacheTest, dropsFoldersThatNobodyAskedFor) {
  saveFolders({FilePath("/asked"), FilePath("/forgotten")});
  const auto cache = newProcess();
  ASSERT_TRUE(cache->loadForAppName(kApp));
  EXPECT_TRUE(cache->mdateOfFolder(FilePath("/asked")));
  EXPECT_TRUE(cache->fileNamesOfFolder(FilePath("/forgotten"))) << "names do not mark";
  EXPECT_FALSE(cache->folderNamesOfFolder(FilePath("/forgotten")));
  cache->addFolder(FilePath("/new"), names, nullptr, date);
  cache->saveForAppName(kApp);

  EXPECT_TRUE(isSaved(FilePath("/asked")));
  EXPECT_TRUE(isSaved(FilePath("/new")));
  EXPECT_FALSE(isSaved(FilePath("/forgotten")));
  EXPECT_EQ(cache->fileNamesOfFolder(FilePath("/forgotten")), nullptr) << "dropped in memory too";
  EXPECT_EQ(bytesOfFile().find("accessed"), std::string::npos);
}

TEST_F(FolderCacheTest, savesOnceInAProcess) {
  const auto cache = newProcess();
  cache->addFolder(FilePath("/first"), names, nullptr, date);
  cache->saveForAppName(kApp);
  cache->addFolder(FilePath("/late"), names, nullptr, date);
  cache->saveForAppName(kApp);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
  EXPECT_TRUE(isSaved(FilePath("/first")));
  EXPECT_FALSE(isSaved(FilePath("/late")));
}

TEST_F(FolderCacheTest, savesNothingWhenNothingWasAdded) {
  saveFolders({FilePath("/p")});
  fakes.log.clear();
  const auto cache = newProcess();
  ASSERT_TRUE(cache->loadForAppName(kApp));
  cache->saveForAppName(kApp);
  EXPECT_THAT(fakes.log.lines(), ElementsAre("Pelmora: Loading folder cache."));
  EXPECT_TRUE(isSaved(FilePath("/p"))) << "though nobody asked for it";
}

TEST_F(FolderCacheTest, logsAMissingFileOnceAndStaysEmpty) {
  const auto cache = newProcess();
  EXPECT_FALSE(cache->loadForAppName(kApp));
  EXPECT_TRUE(cache->loadForAppName(kApp));
  EXPECT_THAT(fakes.log.lines(), ElementsAre("Pelmora: Loading folder cache.",
                                             "Pelmora: Error reading folder cache: " +
                                                 file.bytes() + ": No such file or directory"));
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/p")), std::nullopt);
}

TEST_F(FolderCacheTest, staysAsItWasWhenTheFileIsDamaged) {
  folder.write("caches/Pelmora/FolderCache.plist", "bplist00 but no more");
  const auto cache = newProcess();
  cache->addFolder(FilePath("/p"), names, nullptr, date);
  fakes.log.clear();
  EXPECT_FALSE(cache->loadForAppName(kApp));
  EXPECT_THAT(fakes.log.lines(), ElementsAre("Pelmora: Loading folder cache.",
                                             "Pelmora: Error unarchiving folder cache: "
                                             "the property list is cut short"));
  EXPECT_EQ(cache->fileNamesOfFolder(FilePath("/p")), names);
  EXPECT_EQ(bytesOfFile(), "bplist00 but no more") << "it is not deleted";
  cache->saveForAppName(kApp);
  EXPECT_TRUE(isSaved(FilePath("/p"))) << "but overwritten";
}

TEST_F(FolderCacheTest, replacesWhatItHeldWhenItLoads) {
  saveFolders({FilePath("/saved")});
  const auto cache = newProcess();
  cache->addFolder(FilePath("/early"), names, nullptr, date);
  ASSERT_TRUE(cache->loadForAppName(kApp));
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/early")), std::nullopt);
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/saved")), date);
}

TEST_F(FolderCacheTest, setsSubfolderNamesOfKnownFoldersOnly) {
  saveFolders({FilePath("/p")});
  const auto cache = newProcess();
  ASSERT_TRUE(cache->loadForAppName(kApp));
  const SharedNames folders = makeNameList({"sub"});
  cache->setFolderNames(folders, FilePath("/unknown"));
  EXPECT_EQ(cache->folderNamesOfFolder(FilePath("/unknown")), nullptr);
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/unknown")), std::nullopt);
  cache->setFolderNames(folders, FilePath("/p"));
  EXPECT_EQ(cache->folderNamesOfFolder(FilePath("/p")), folders);
  cache->saveForAppName(kApp);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U) << "that of saveFolders alone";
}

TEST_F(FolderCacheTest, worksFromMemoryWithoutACachesFolder) {
  fakes.userFolders.cachesFolders.clear();
  const auto cache = newProcess();
  EXPECT_FALSE(cache->loadForAppName(kApp));
  EXPECT_TRUE(cache->loadForAppName(kApp));
  cache->addFolder(FilePath("/p"), names, nullptr, date);
  cache->saveForAppName(kApp);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 0U);
  EXPECT_EQ(cache->mdateOfFolder(FilePath("/p")), date);

  fakes.userFolders.cachesFolders = {caches};
  cache->addFolder(FilePath("/q"), names, nullptr, date);
  cache->saveForAppName(kApp);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 0U) << "that was the one save";
}

TEST_F(FolderCacheTest, doesNotMakeTheCachesFolderItself) {
  fakes.userFolders.cachesFolders = {folder.path() / "missing"};
  saveFolders({FilePath("/p")});
  EXPECT_EQ(fakes.log.count("Pelmora: Error writing folder cache."), 1U);
  EXPECT_FALSE(std::filesystem::exists((folder.path() / "missing").bytes()));
}

TEST_F(FolderCacheTest, logsWhatCannotBeArchived) {
  const auto cache = newProcess();
  cache->addFolder(FilePath("/p"), names, nullptr,
                   ReferenceTime{std::numeric_limits<double>::quiet_NaN()});
  cache->saveForAppName(kApp);
  EXPECT_EQ(fakes.log.count("Pelmora: Folder cache could not be archived: /p has no date"), 1U);
  EXPECT_FALSE(std::filesystem::exists(file.bytes()));
}

TEST_F(FolderCacheTest, keepsNamesThatAreNotUtf8) {
  const FilePath path("/p/caf\xE9");
  const auto cache = newProcess();
  cache->addFolder(path, makeNameList({"\xE9t\xE9.jpg", "été.jpg"}), nullptr, date);
  cache->saveForAppName(kApp);
  const auto next = newProcess();
  ASSERT_TRUE(next->loadForAppName(kApp));
  EXPECT_EQ(next->mdateOfFolder(path), date);
  EXPECT_EQ(*next->fileNamesOfFolder(path), *makeNameList({"\xE9t\xE9.jpg", "été.jpg"}));
}

TEST_F(FolderCacheTest, sweepsWhatKilledRunsLeft) {
  const FilePath left = folder.write("caches/Pelmora/.FolderCache.plist.tmp-abcdef", "half");
  saveFolders({FilePath("/p")});
  EXPECT_FALSE(std::filesystem::exists(left.bytes()));
}

TEST_F(FolderCacheTest, servesManyThreadsAtOnce) {
  const auto cache = newProcess();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&cache, t, this] {
      for (int i = 0; i < 200; ++i) {
        const FilePath path("/p/" + std::to_string(i % 50));
        cache->addFolder(path, names, nullptr, ReferenceTime{static_cast<double>(t)});
        cache->setFolderNames(names, path);
        static_cast<void>(cache->mdateOfFolder(path));
        static_cast<void>(cache->fileNamesOfFolder(path));
        if (i == 100) cache->saveForAppName(kApp);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
  for (int i = 0; i < 50; ++i) {
    EXPECT_TRUE(cache->mdateOfFolder(FilePath("/p/" + std::to_string(i))));
  }
}

}  // namespace pelmora::cache

#include "sources/FolderWalk.h"

#include "sources/tests/SourcesTest.h"

#include <functional>

namespace pelmora::sources {

namespace {

using Call = platform::CountingFiles::Call;

/// Does something just after a folder was listed, and knows of a folder that it has subfolders, as
/// file systems do that count them.
class ListeningFiles : public platform::CountingFiles {
 public:
  using CountingFiles::CountingFiles;

  [[nodiscard]] Result<std::shared_ptr<const platform::Listing>> list(
      const FilePath& folder, platform::FinalLink link) const override {
    auto listing = CountingFiles::list(folder, link);
    if (afterList) afterList(folder);
    return listing;
  }

  [[nodiscard]] std::optional<platform::FileFacts> facts(const FilePath& path,
                                                         platform::FinalLink link) const override {
    auto facts = CountingFiles::facts(path, link);
    if (facts && path == withSubfolders) facts->hasSubfolders = true;
    return facts;
  }

  std::function<void(const FilePath&)> afterList;
  FilePath withSubfolders;
};

class FolderWalkTest : public SourcesTest {
 protected:
  PMSourceList& makeListeningList() {
    list = std::make_unique<PMSourceList>(listening);
    return *list;
  }

  /// The paths of the records, sorted, below the test's folder.
  Names records() const {
    Names paths;
    for (const auto& record : list->dirItems()) {
      paths.push_back(record->url.bytes().substr(temporary.path().bytes().size() + 1));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  FilePath path(std::string_view name) const { return temporary.path() / name; }

  /// A source of two files and two subfolders with one each.
  FilePath makeSource() const {
    for (const char* name : {"p/1.jpg", "p/2.jpg", "p/a/3.jpg", "p/b/4.jpg"}) {
      (void)temporary.write(name);
    }
    return path("p");
  }

  ListeningFiles files{fakes.posixFiles};
  const platform::Services listening{.clock = fakes.clock,
                                     .scheduler = fakes.scheduler,
                                     .log = fakes.log,
                                     .files = files,
                                     .userFolders = fakes.userFolders,
                                     .bookmarks = fakes.bookmarks,
                                     .preferences = fakes.preferences,
                                     .displays = fakes.displays,
                                     .workspace = fakes.workspace,
                                     .images = fakes.images,
                                     .metadata = fakes.metadata,
                                     .sound = fakes.sound,
                                     .notifications = fakes.notifications,
                                     .distributedNotifications = fakes.distributedNotifications,
                                     .runningApplications = fakes.runningApplications,
                                     .scripts = fakes.scripts};
};

}  // namespace

TEST_F(FolderWalkTest, makesARecordForEachFolderOfASource) {
  const FilePath source = makeSource();
  load({{.folder = source, .chance = 50, .days = 65, .screens = ""}});
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/b"}));
  const auto base = recordOf(source);
  EXPECT_TRUE(base->isBaseFolder);
  EXPECT_EQ(names(base->filenames), (Names{"1.jpg", "2.jpg"}));
  EXPECT_EQ(base->priority, 0.5);
  EXPECT_EQ(base->days, 65U);
  const auto sub = recordOf(source / "a");
  EXPECT_FALSE(sub->isBaseFolder);
  EXPECT_EQ(names(sub->filenames), Names{"3.jpg"});
  EXPECT_EQ(sub->priority, 0.5);
  EXPECT_EQ(sub->days, 65U);
}

TEST_F(FolderWalkTest, opensEachFolderOnce) {
  load({{.folder = makeSource()}});
  EXPECT_EQ(fakes.files.count(Call::list), 3U);
  EXPECT_EQ(fakes.files.count(Call::list, path("p/a")), 1U);
}

TEST_F(FolderWalkTest, readsNoDirectoryInASecondLoadWithUnchangedDates) {
  load({{.folder = makeSource()}});
  loadAgain();
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/b"}));
  EXPECT_EQ(fakes.files.count(Call::list), 0U);
  EXPECT_EQ(fakes.files.count(Call::isPackage), 0U);
}

TEST_F(FolderWalkTest, sharesNamesBetweenRecordAndCache) {
  const FilePath source = makeSource();
  load({{.folder = source}});
  EXPECT_EQ(recordOf(source)->filenames, cache().fileNamesOfFolder(source));
  EXPECT_EQ(recordOf(source / "a")->filenames, cache().fileNamesOfFolder(source / "a"));
}

TEST_F(FolderWalkTest, entersEveryFolderIntoTheCache) {
  load({{.folder = makeSource()}});
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder p with 2 files and 2 folders."), 1U);
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder a with 1 files and 0 folders."), 1U);
  EXPECT_EQ(names(cache().folderNamesOfFolder(path("p"))), (Names{"a", "b"}));
  EXPECT_EQ(cache().folderNamesOfFolder(path("p/a")), nullptr);
}

TEST_F(FolderWalkTest, walksDeepTrees) {
  std::string name = "p";
  for (int depth = 0; depth < 12; ++depth) name += "/d";
  (void)temporary.write(name + "/deep.jpg");
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{name});
  loadAgain();
  EXPECT_EQ(records(), Names{name});
}

TEST_F(FolderWalkTest, makesNoRecordOfAFolderWithoutFilesButWalksOn) {
  (void)temporary.write("p/empty/full/a.jpg");
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{"p/empty/full"});
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder empty with 0 files and 0 folders."), 1U);
  EXPECT_EQ(names(cache().folderNamesOfFolder(path("p/empty"))), Names{"full"});
}

TEST_F(FolderWalkTest, skipsPackagesWithEverythingInThem) {
  (void)temporary.write("p/Library.photoslibrary/originals/a.jpg");
  (void)temporary.write("p/bundle/Contents/Info.plist");
  (void)temporary.write("p/bundle/b.jpg");
  (void)temporary.write("p/c.jpg");
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{"p"});
  EXPECT_EQ(cache().fileNamesOfFolder(path("p/bundle")), nullptr);
}

TEST_F(FolderWalkTest, skipsHiddenFilesAndFolders) {
  (void)temporary.write("p/.hidden/a.jpg");
  (void)temporary.write("p/.b.jpg");
  (void)temporary.write("p/c.jpg");
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{"p"});
  EXPECT_EQ(names(recordOf(path("p"))->filenames), Names{"c.jpg"});
}

TEST_F(FolderWalkTest, findsTheTargetOfAnAliasWithNoDayToBeShownOn) {
  (void)temporary.write("elsewhere/e.jpg");
  (void)temporary.write("p/a/1.jpg");
  (void)temporary.link("p/a/alias", path("elsewhere"));
  load({{.folder = path("p"), .chance = 50, .screens = "1"}});
  EXPECT_EQ(records(), (Names{"elsewhere", "p/a"}));
  const auto target = recordOf(path("elsewhere"));
  EXPECT_EQ(target->days, 0U);
  EXPECT_EQ(target->priority, 1.0);
  EXPECT_EQ(target->screens, "");
}

TEST_F(FolderWalkTest, givesTheTargetOfAnAliasTheValuesOfTheSourceThatItIsIn) {
  (void)temporary.write("q/below/e.jpg");
  (void)temporary.write("p/a/1.jpg");
  (void)temporary.link("p/a/alias", path("q/below"));
  load({{.folder = path("p")}, {.folder = path("q"), .chance = 50, .days = 3, .enabled = false}});
  EXPECT_EQ(records(), (Names{"p/a", "q/below"}));
  EXPECT_EQ(recordOf(path("q/below"))->days, 3U);
  EXPECT_EQ(recordOf(path("q/below"))->priority, 0.5);
}

TEST_F(FolderWalkTest, doesNotWalkTheSubfoldersOfAnAliasesTarget) {
  (void)temporary.write("elsewhere/e.jpg");
  (void)temporary.write("elsewhere/below/f.jpg");
  (void)temporary.mkdir("p/a");
  (void)temporary.link("p/a/alias", path("elsewhere"));
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{"elsewhere"});
  loadAgain();
  EXPECT_EQ(records(), Names{"elsewhere"});
}

TEST_F(FolderWalkTest, walksAnAliasesTargetThatBecameASourceItself) {
  (void)temporary.write("elsewhere/e.jpg");
  (void)temporary.write("elsewhere/below/f.jpg");
  (void)temporary.mkdir("p/a");
  (void)temporary.link("p/a/alias", path("elsewhere"));
  load({{.folder = path("p")}});
  // The walk before knew nothing of its subfolders, and its date is the same.
  load({{.folder = path("elsewhere")}});
  EXPECT_EQ(records(), (Names{"elsewhere", "elsewhere/below"}));
}

TEST_F(FolderWalkTest, takesAnAliasDirectlyInASourceForAFile) {
  (void)temporary.write("elsewhere/e.jpg");
  (void)temporary.mkdir("p");
  (void)temporary.link("p/alias", path("elsewhere"));
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), Names{"p"});
  EXPECT_EQ(names(recordOf(path("p"))->filenames), Names{"alias"});
}

TEST_F(FolderWalkTest, endsCyclesOfAliases) {
  (void)temporary.write("p/a/1.jpg");
  (void)temporary.link("p/a/up", path("p"));
  (void)temporary.link("p/a/self", path("p/a"));
  (void)temporary.write("p/a/b/2.jpg");
  (void)temporary.link("p/a/b/back", path("p/a"));
  load({{.folder = path("p")}});
  EXPECT_EQ(records(), (Names{"p/a", "p/a/b"}));
  loadAgain();
  EXPECT_EQ(records(), (Names{"p/a", "p/a/b"}));
}

TEST_F(FolderWalkTest, keepsOneRecordOfAFolderInTwoSources) {
  const FilePath source = makeSource();
  setSources({{.folder = source, .days = 1}, {.folder = source / "a", .days = 2}});
  platform::Services several = services;
  several.enumerationConcurrency = 4;
  list = std::make_unique<PMSourceList>(several);
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/b"}));
  EXPECT_EQ(recordOf(source / "a")->days, 2U);
  list.reset();
}

TEST_F(FolderWalkTest, takesAFolderInItsOwnSourceForThatSources) {
  const FilePath source = makeSource();
  load({{.folder = source, .chance = 100}, {.folder = source / "a", .chance = 25}});
  // Found by the first source's walk, or by its own, it has its own source's values.
  EXPECT_EQ(recordOf(source / "a")->priority, 0.25);
}

TEST_F(FolderWalkTest, walksNoSubfolderThatIsASourceSwitchedOff) {
  const FilePath source = makeSource();
  load({{.folder = source}, {.folder = source / "a", .enabled = false}});
  EXPECT_EQ(records(), (Names{"p", "p/b"}));
}

TEST_F(FolderWalkTest, setsAFoundRecordsPriorityAndScreensAnew) {
  const FilePath source = makeSource();
  makeList();
  const auto record = makeFolder(source.bytes(), 3, 1.0, "", 1);
  record->identity = fakes.files.facts(source, platform::FinalLink::follow)->identity;
  list->addFolder(record, 0, true);
  setSources({{.folder = source, .chance = 50, .days = 2, .screens = "0,1"}});
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/b"}));
  EXPECT_EQ(recordOf(source), record);
  EXPECT_EQ(record->priority, 0.5);
  EXPECT_EQ(record->screens, "0,1");
  EXPECT_EQ(record->days, 1U);
  EXPECT_EQ(record->filenames->size(), 3U);
}

TEST_F(FolderWalkTest, queuesAnOperationForEachSubfolderThatHasSubfolders) {
  makeList();
  platform::OperationQueue queue({});
  queue.setSuspended(true);
  (void)temporary.write("p/a/below/5.jpg");
  list->enumFolder(makeSource(), 0, true, queue, IdleOperation());
  EXPECT_EQ(queue.operationCount(), 1U);
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/b"}));
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/a/below", "p/b"}));
}

TEST_F(FolderWalkTest, listsASubfolderOfWhichNothingIsKnown) {
  makeList();
  platform::OperationQueue queue({});
  queue.setSuspended(true);
  list->enumFolder(makeSource(), 0, false, queue, IdleOperation());
  EXPECT_EQ(records(), (Names{"p/a", "p/b"}));
}

TEST_F(FolderWalkTest, finishesAWalkThatWasCutShortWhereTheFileSystemCountsFolders) {
  const FilePath source = makeSource();
  (void)temporary.write("p/a/below/5.jpg");
  files.withSubfolders = source / "a";
  cache().addFolder(source, makeNameList({"1.jpg"}), makeNameList({"a"}));
  cache().addFolder(source / "a", makeNameList({"3.jpg"}), nullptr);
  setSources({{.folder = source}});
  makeListeningList().loadSourcesFromPrefs(fakes.preferences, true, false);
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_EQ(records(), (Names{"p", "p/a", "p/a/below"}));
}

TEST_F(FolderWalkTest, findsNothingInAFolderThatCannotBeListed) {
  const FilePath source = makeSource();
  fakes.files.fail(Call::list, source / "a");
  load({{.folder = source}, {.folder = path("gone")}});
  EXPECT_EQ(records(), (Names{"p", "p/b"}));
  EXPECT_EQ(fakes.log.countContaining("gone"), 1U);  // that it was loaded
}

TEST_F(FolderWalkTest, resetsTheWeightsAtTheEndOfAnOperation) {
  makeList();
  list->addFolder(makeFolder("/x", 5), 0, true);
  ASSERT_TRUE(list->randomFolderForScreen(0));
  platform::OperationQueue queue({});
  IdleOperation cancelled;
  cancelled.cancel();
  list->enumFolder(makeSource(), 0, true, queue, cancelled);
  EXPECT_EQ(list->weightsSums(), (std::vector<std::uint64_t>{5, 0}));
  EXPECT_EQ(list->dirItems().size(), 1U);

  queue.setSuspended(true);
  list->enumFolder(makeSource(), 0, true, queue, IdleOperation());
  EXPECT_EQ(list->weightsSums(), (std::vector<std::uint64_t>{0, 0}));
}

TEST_F(FolderWalkTest, keepsTheNamesGatheredUntilItWasCancelled) {
  makeListeningList();
  IdleOperation operation;
  files.afterList = [&operation](const FilePath&) { operation.cancel(); };
  platform::OperationQueue queue({});
  queue.setSuspended(true);
  list->enumFolder(makeSource(), 0, true, queue, operation);
  EXPECT_EQ(
      cache().fileNamesOfFolder(path("p"))->size() + cache().folderNamesOfFolder(path("p"))->size(),
      1U);
  EXPECT_EQ(records(), Names{});
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST_F(FolderWalkTest, stopsAtTheSubfolderThatItWasCancelledAt) {
  makeListeningList();
  (void)makeSource();
  IdleOperation operation;
  files.afterList = [&](const FilePath& folder) {
    if (folder != path("p")) operation.cancel();
  };
  platform::OperationQueue queue({});
  queue.setSuspended(true);
  list->enumFolder(path("p"), 0, true, queue, operation);
  EXPECT_EQ(records(), Names{"p"});
  EXPECT_EQ(queue.operationCount(), 0U);
  EXPECT_EQ(files.count(Call::list), 2U);
}

}  // namespace pelmora::sources

#include "sources/PMSourceList.h"

#include "sources/tests/SourcesTest.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <set>
#include <thread>

namespace pelmora::sources {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PMSourceListTest : public SourcesTest {
 protected:
  PMSourceListTest() {
    (void)temporary.write("p/a.jpg");
    (void)temporary.write("q/b.jpg");
  }

  void observeFirstFolder() {
    fakes.notifications.addObserver("FirstFolderAdded", [this](const auto& notification) {
      ++firstFolders;
      firstFolderScreen = notification.object;
      postedOn = std::this_thread::get_id();
    });
  }

  /// From the start of the test's clock, which is 13:00 in the time zone of the tests.
  static constexpr double kUntilMidnight = 11 * 3600;

  const FilePath p = temporary.path() / "p";
  const FilePath q = temporary.path() / "q";
  const std::string failedLock =
      "Pelmora: Trying to get a rdlock failed: " + std::to_string(EDEADLK);
  int firstFolders = 0;
  plist::Value firstFolderScreen;
  std::thread::id postedOn;
};

}  // namespace

TEST_F(PMSourceListTest, isMadeOnceEvenUnderConcurrentFirstCalls) {
  PMSourceList::endSharedSourceList();
  std::vector<std::shared_ptr<PMSourceList>> lists(4);
  std::vector<std::thread> threads;
  threads.reserve(lists.size());
  for (auto& made : lists) {
    threads.emplace_back([this, &made] { made = PMSourceList::sharedSourceList(services); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::set(lists.begin(), lists.end()).size(), 1U);
  EXPECT_EQ(fakes.log.count("Pelmora: NSScreen.screens.count = 1"), 1U);

  const std::weak_ptr<PMSourceList> shared = lists.front();
  lists.clear();
  PMSourceList::endSharedSourceList();
  EXPECT_TRUE(shared.expired());
}

TEST_F(PMSourceListTest, startsWithTheDayAndAWeightForEachDisplay) {
  fakes.displays.displays.push_back(platform::FakeDisplays::display(2, {{0, 0}, {100, 100}}));
  list = std::make_unique<PMSourceList>(services);
  EXPECT_EQ(fakes.log.lines(), Names{"Pelmora: NSScreen.screens.count = 2"});
  EXPECT_EQ(list->weightsSums(), (std::vector<std::uint64_t>{0, 0, 0}));
  EXPECT_EQ(list->currentDay(), 6);  // the test's clock starts on a Saturday
  EXPECT_EQ(list->startDate(), fakes.clock.now());
  EXPECT_EQ(list->numLoaders(), 0);
  EXPECT_EQ(&list->fileMan(), &fakes.files);
  EXPECT_EQ(list->enumQueue().config().qualityOfService, platform::QualityOfService::background);
  EXPECT_EQ(list->enumQueue().config().maxConcurrentOperations, services.enumerationConcurrency);
}

TEST_F(PMSourceListTest, changesTheDayTenSecondsAfterMidnight) {
  fakes.clock.setNow({fakes.clock.now().seconds + kUntilMidnight - 10});  // 23:59:50
  makeList();
  fakes.scheduler.advanceBy(19.9);
  EXPECT_EQ(list->currentDay(), 6);
  EXPECT_THAT(fakes.log.lines(), IsEmpty());
  fakes.scheduler.advanceBy(0.1);
  EXPECT_EQ(list->currentDay(), 0);
  EXPECT_EQ(fakes.log.lines(),
            (Names{"A new day has dawned. Old day: 6", "A new day has dawned. New day: 0"}));
}

TEST_F(PMSourceListTest, changesTheDayEveryDay) {
  makeList();
  for (const int day : {0, 1, 2, 3, 4, 5, 6, 0}) {
    fakes.scheduler.advanceBy(24 * 3600);
    EXPECT_EQ(list->currentDay(), day);
  }
}

TEST_F(PMSourceListTest, showsTheFoldersOfTheNewDayWithoutLoadingThem) {
  load({{.folder = p, .days = 64}, {.folder = q, .days = 1}});
  EXPECT_EQ(list->randomFolderForScreen(1)->url, p);
  const auto records = list->dirItems();
  fakes.scheduler.advanceBy(kUntilMidnight + 10);
  EXPECT_EQ(list->weightsSums(), (std::vector<std::uint64_t>{0, 0}));
  EXPECT_EQ(list->randomFolderForScreen(1)->url, q);
  EXPECT_EQ(list->dirItems(), records);
}

TEST_F(PMSourceListTest, readsTheDayAnewWhenTheClockWasSetMeanwhile) {
  makeList();
  fakes.clock.setNow({fakes.clock.now().seconds + 2 * 24 * 3600});
  fakes.scheduler.advanceBy(kUntilMidnight + 9);
  EXPECT_EQ(list->currentDay(), 6);  // the timer stays where it was
  fakes.scheduler.advanceBy(1);
  EXPECT_EQ(list->currentDay(), 2);
  // From now on it follows the clock as it is.
  fakes.scheduler.advanceBy(24 * 3600);
  EXPECT_EQ(list->currentDay(), 3);
}

TEST_F(PMSourceListTest, isNotCalledForANewDayAfterItsEnd) {
  makeList();
  list.reset();
  fakes.scheduler.advanceBy(24 * 3600);
  EXPECT_THAT(fakes.log.lines(), IsEmpty());
}

TEST_F(PMSourceListTest, loadsTheSourcesInTheirOrder) {
  setSources({{.folder = q, .chance = 25, .days = 3, .screens = "2"}, {.folder = p}});
  makeList().loadSourcesFromPrefs(fakes.preferences, false, true);
  EXPECT_EQ(fakes.log.lines(), (Names{"Pelmora: Number of sources: 2",
                                      "Pelmora: loaded folder " + q.bytes() + " days 3",
                                      "Pelmora: loaded folder " + p.bytes() + " days 127"}));
  const auto& entries = list->sources()->entries();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].url, q);
  EXPECT_EQ(entries[1].url, p);
  EXPECT_TRUE(list->usesSecurityScoped());
  EXPECT_EQ(list->enumQueue().operationCount(), 0U);
}

TEST_F(PMSourceListTest, skipsASourceWhoseBookmarkDoesNotResolve) {
  fakes.bookmarks.failToResolve(q);
  load({{.folder = q}, {.folder = p}});
  EXPECT_EQ(fakes.log.count("Pelmora: Error resolving bookmark: " + q.bytes() + " is gone"), 1U);
  EXPECT_EQ(list->sources()->entries().size(), 1U);
  EXPECT_TRUE(recordOf(p));
  EXPECT_FALSE(recordOf(q));
}

TEST_F(PMSourceListTest, loadsNothingWithoutSources) {
  makeList().loadSourcesFromPrefs(fakes.preferences, true, false);
  fakes.preferences.setObject("Sources", "text");
  list->unloadSources();
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  EXPECT_EQ(fakes.log.count("Pelmora: Number of sources: 0"), 2U);
  EXPECT_TRUE(list->sources()->entries().empty());
}

TEST_F(PMSourceListTest, skipsSourcesThatAreNoDictionaries) {
  fakes.preferences.setObject("Sources", plist::Array{"text", plist::Dictionary{}});
  makeList().loadSourcesFromPrefs(fakes.preferences, true, false);
  EXPECT_EQ(fakes.log.countContaining("Pelmora: Error resolving bookmark: "), 2U);
}

TEST_F(PMSourceListTest, startsTheWalkWhenAllSourcesAreLoaded) {
  // The outer source's walk meets the inner one, which must then be known to be off.
  (void)temporary.write("p/inner/c.jpg");
  load({{.folder = p}, {.folder = p / "inner", .enabled = false}});
  EXPECT_EQ(list->dirItems().size(), 1U);
  EXPECT_FALSE(list->enumQueue().isSuspended());
}

TEST_F(PMSourceListTest, countsItsLoaders) {
  load({{.folder = p}});
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  EXPECT_EQ(list->numLoaders(), 2);
  EXPECT_EQ(list->enumQueue().operationCount(), 0U);
  EXPECT_EQ(fakes.log.countContaining("Pelmora: loaded folder"), 1U);
  EXPECT_EQ(fakes.log.count("Pelmora: Number of sources: 1"), 2U);

  list->unloadSources();
  EXPECT_EQ(list->sources()->entries().size(), 1U);
  EXPECT_EQ(list->dirItems().size(), 1U);
  ASSERT_TRUE(list->randomFolderForScreen(0));
  list->unloadSources();
  EXPECT_TRUE(list->sources()->entries().empty());
  EXPECT_TRUE(list->dirItems().empty());
  EXPECT_EQ(list->weightsSums(), (std::vector<std::uint64_t>{0, 0}));
}

TEST_F(PMSourceListTest, doesNothingWhenUnloadedWithoutALoader) {
  makeList().addFolder(makeFolder("/x", 1), 0, true);
  list->unloadSources();
  EXPECT_EQ(list->numLoaders(), 0);
  EXPECT_EQ(list->dirItems().size(), 1U);
}

TEST_F(PMSourceListTest, keepsASourceThatIsOffForLookupsAlone) {
  load({{.folder = p, .days = 5, .enabled = false}});
  EXPECT_TRUE(list->dirItems().empty());
  EXPECT_EQ(fakes.files.count(platform::CountingFiles::Call::list), 0U);
  EXPECT_EQ(list->daysForFolder((p / "sub").bytes()), 5U);
  EXPECT_FALSE(list->isSourceEnabled(p));
  EXPECT_TRUE(list->isSourceEnabled(q));
  EXPECT_TRUE(list->isSourceEnabled(temporary.path() / "gone"));
}

TEST_F(PMSourceListTest, looksValuesUpByTheLongestSourcePath) {
  const FilePath inner = temporary.mkdir("p/inner");
  load({{.folder = p, .chance = 10, .days = 1, .screens = "1"},
        {.folder = inner, .chance = 50, .days = 2, .screens = "2"}});
  EXPECT_EQ(list->daysForFolder((inner / "x").bytes()), 2U);
  EXPECT_EQ(list->priorityForFolder((inner / "x").bytes()), 0.5);
  EXPECT_EQ(list->screensForFolder((inner / "x").bytes()), "2");
  EXPECT_EQ(list->daysForFolder(p.bytes()), 1U);
  EXPECT_EQ(list->daysForFolder("/elsewhere"), 0U);
  EXPECT_EQ(list->priorityForFolder("/elsewhere"), 1.0);
  EXPECT_EQ(list->screensForFolder("/elsewhere"), "");
}

TEST_F(PMSourceListTest, givesNoFolderBeyondTheLast) {
  const auto record = makeFolder("/x", 1);
  makeList().addFolder(record, 0, true);
  EXPECT_EQ(list->getFolderAtIndex(0), record);
  EXPECT_EQ(list->getFolderAtIndex(1), nullptr);
  EXPECT_EQ(list->getFolderAtIndex(kNotFound), nullptr);
}

TEST_F(PMSourceListTest, findsARecordByFileIdentity) {
  load({{.folder = p}});
  const FilePath link = temporary.link("link", p);
  EXPECT_EQ(list->indexOfEnumeratedFolderWithURL(link), 0U);
  EXPECT_EQ(list->indexOfEnumeratedFolderWithURL(q), kNotFound);
  EXPECT_EQ(list->indexOfEnumeratedFolderWithURL(temporary.path() / "gone"), kNotFound);
}

TEST_F(PMSourceListTest, addsOnlyRecordsWithFilesForTheScreen) {
  makeList();
  list->addFolder(makeFolder("/empty", 0), 0, true);
  list->addFolder(makeFolder("/other", 1, 1, "2"), 1, true);
  EXPECT_TRUE(list->dirItems().empty());
  list->addFolder(makeFolder("/x", 1, 1, "2"), 2, true);
  list->addFolder(makeFolder("/y", 1, 1, "2"), 0, false);
  EXPECT_EQ(list->dirItems().size(), 2U);
}

TEST_F(PMSourceListTest, postsFirstFolderAddedUntilTheListIsEmptyAgain) {
  observeFirstFolder();
  makeList();
  list->addFolder(makeFolder("/empty", 0), 2, true);
  EXPECT_EQ(firstFolders, 0);
  list->addFolder(makeFolder("/x", 1), 2, true);
  EXPECT_EQ(firstFolders, 1);
  EXPECT_EQ(firstFolderScreen, plist::Value(2));
  EXPECT_EQ(postedOn, std::this_thread::get_id());
  list->addFolder(makeFolder("/y", 1), 2, true);
  EXPECT_EQ(firstFolders, 1);
  list->clearAll();
  list->addFolder(makeFolder("/z", 1), 0, true);
  EXPECT_EQ(firstFolders, 2);
}

TEST_F(PMSourceListTest, postsFirstFolderAddedOnTheThreadOfTheWalk) {
  observeFirstFolder();
  load({{.folder = p}, {.folder = q}});
  EXPECT_EQ(firstFolders, 1);
  EXPECT_EQ(firstFolderScreen, plist::Value(0));
  EXPECT_NE(postedOn, std::this_thread::get_id());
}

TEST_F(PMSourceListTest, cancelsTheWalk) {
  makeList().cancelOperations();
  list->enumQueue().setSuspended(true);
  const auto operation = std::make_shared<IdleOperation>();
  list->enumQueue().addOperation(operation);
  list->addEnumOpToQueue(list->enumQueue(), p, 0, true);
  list->cancelOperations();
  EXPECT_TRUE(operation->isCancelled());
  list->enumQueue().setSuspended(false);
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(list->dirItems().empty());
}

TEST_F(PMSourceListTest, addsNothingForAWalkThatWasCancelled) {
  makeList();
  IdleOperation operation;
  const auto record = makeFolder("/x", 1);
  record->identity = platform::FileIdentity{1, 1};
  EXPECT_TRUE(list->addWalkedFolder(record, 0, operation));
  EXPECT_FALSE(list->addWalkedFolder(record, 0, operation));  // another operation was quicker
  list->clearAll();
  operation.cancel();
  EXPECT_FALSE(list->addWalkedFolder(record, 0, operation));
  EXPECT_TRUE(list->dirItems().empty());
}

TEST_F(PMSourceListTest, cancelsWhatACancelledWalkQueues) {
  makeList();
  platform::OperationQueue queue({});
  queue.setSuspended(true);
  IdleOperation operation;
  operation.cancel();
  list->addEnumOpToQueue(queue, p, 0, true, &operation);
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(list->dirItems().empty());
}

TEST_F(PMSourceListTest, logsAFailedReadLockAndGoesOn) {
  load({{.folder = p}});
  fakes.log.clear();
  {
    const HeldLock held(list->dirItemsLock);
    EXPECT_TRUE(list->getFolderAtIndex(0));
    EXPECT_EQ(fakes.log.lines(), Names{failedLock});
    EXPECT_EQ(list->indexOfEnumeratedFolderWithURL(p), 0U);
    EXPECT_EQ(fakes.log.count(failedLock), 2U);
    list->setPriorityAndScreens(0, {0.25, "1", 0});
    EXPECT_EQ(fakes.log.count(failedLock), 3U);
  }
  EXPECT_EQ(recordOf(p)->priority, 0.25);
}

TEST_F(PMSourceListTest, saysNothingOfAFailedWriteLock) {
  makeList();
  {
    const HeldLock items(list->dirItemsLock);
    const HeldLock weights(list->weightsSumLock);
    list->addFolder(makeFolder("/x", 1), 0, true);
    list->clearAll();
  }
  EXPECT_THAT(fakes.log.lines(), IsEmpty());
  EXPECT_TRUE(list->dirItems().empty());
}

TEST_F(PMSourceListTest, describesItsRecords) {
  makeList();
  EXPECT_EQ(list->description(), "PMSourceList: (\n)");
  list->addFolder(makeFolder("/x", 1), 0, true);
  list->addFolder(makeFolder("/y", 2, 0.5, "1", 3), 0, true);
  EXPECT_EQ(list->description(),
            "PMSourceList: (\n"
            "    PMFolder: base=0, /x, priority 1.000000, screens all, days 127, 1 files,\n"
            "    PMFolder: base=0, /y, priority 0.500000, screens 1, days 3, 2 files\n)");
}

TEST_F(PMSourceListTest, unloadsWhileAWalkIsUnderWay) {
  for (int i = 0; i < 8; ++i) (void)temporary.write("p/" + std::to_string(i) + "/x.jpg");
  setSources({{.folder = p}});
  platform::Services several = services;
  several.enumerationConcurrency = 2;
  list = std::make_unique<PMSourceList>(several);
  for (int run = 0; run < 5; ++run) {
    list->loadSourcesFromPrefs(fakes.preferences, true, false);
    (void)list->randomFolderForScreen(0);
    list->cancelOperations();
    list->unloadSources();
    EXPECT_TRUE(list->dirItems().empty());
  }
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(list->dirItems().empty());
  list.reset();
}

}  // namespace pelmora::sources

#include "sources/LockGuards.h"
#include "sources/PMSourceList.h"
#include "sources/tests/HeldLock.h"
#include "sources/tests/SourcesTest.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <set>

namespace pelmora::sources {

namespace {

constexpr std::uint64_t kSaturday = 64;  // the day of the test's clock

class PMSourceListRandomTest : public SourcesTest {
 protected:
  PMSourceListRandomTest() {
    fakes.displays.displays = {platform::FakeDisplays::display(1, {{0, 0}, {1920, 1080}}),
                               platform::FakeDisplays::display(2, {{0, 0}, {1280, 1024}})};
    makeList();
    srandom(42);
  }

  std::shared_ptr<PMFolder> add(const char* path, std::size_t files, double priority = 1.0,
                                const char* screens = "", std::uint64_t days = 127) {
    auto record = makeFolder(path, files, priority, screens, days);
    list->addFolder(record, 0, true);
    return record;
  }

  /// How often each record is drawn in so many draws.
  std::map<std::shared_ptr<PMFolder>, int> draws(int count, std::uint64_t screen = 0) {
    std::map<std::shared_ptr<PMFolder>, int> drawn;
    for (int i = 0; i < count; ++i) ++drawn[list->randomFolderForScreen(screen)];
    return drawn;
  }

  using Weights = std::vector<std::uint64_t>;
};

/// What `random()` makes of a range of so many numbers.
std::uint64_t nextDraw(std::uint64_t count) {
  return static_cast<std::uint64_t>(static_cast<float>(count) *
                                    (static_cast<float>(random()) / 2147483648.0F));
}

}  // namespace

TEST_F(PMSourceListRandomTest, drawsTheOnlyRecordAlways) {
  const auto record = add("/a", 5);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(list->randomFolderForScreen(0), record);
  EXPECT_EQ(list->weightsSums(), (Weights{5, 0, 0}));
}

TEST_F(PMSourceListRandomTest, servesADisplayThatCameLater) {
  const auto record = add("/a", 5, 1.0, "3");
  EXPECT_EQ(list->randomFolderForScreen(3), nullptr);
  fakes.displays.displays.push_back(platform::FakeDisplays::display(3, {{0, 0}, {800, 600}}));
  EXPECT_EQ(list->randomFolderForScreen(3), record);
  EXPECT_EQ(list->randomFolderForScreen(4), nullptr);
}

TEST_F(PMSourceListRandomTest, drawsByFilesAndChance) {
  const auto a = add("/a", 10, 1.0);
  const auto b = add("/b", 10, 0.5);
  std::vector<std::uint64_t> numbers(100);
  std::generate(numbers.begin(), numbers.end(), [] { return nextDraw(15); });
  srandom(42);
  for (const std::uint64_t number : numbers) {
    EXPECT_EQ(list->randomFolderForScreen(0), number < 10 ? a : b) << number;
  }
  EXPECT_EQ(list->weightsSums()[0], 15U);
}

TEST_F(PMSourceListRandomTest, neverDrawsAChanceOfNothing) {
  add("/a", 10, 0);
  const auto b = add("/b", 1);
  EXPECT_EQ(draws(50)[b], 50);
}

TEST_F(PMSourceListRandomTest, neverDrawsOnADayThatTheMaskLacks) {
  add("/a", 10, 1, "", 127 - kSaturday);
  const auto b = add("/b", 1, 1, "", kSaturday);
  add("/c", 10, 1, "", 0);
  EXPECT_EQ(draws(50)[b], 50);
  EXPECT_EQ(list->weightsSums()[0], 1U);
}

TEST_F(PMSourceListRandomTest, drawsForTheScreen) {
  const auto a = add("/a", 10, 1, "1");
  const auto b = add("/b", 10, 1, "2");
  EXPECT_EQ(draws(20, 1)[a], 20);
  EXPECT_EQ(draws(20, 2)[b], 20);
  EXPECT_EQ(list->weightsSums(), (Weights{0, 10, 10}));
}

TEST_F(PMSourceListRandomTest, logsThatNothingIsThereToDraw) {
  EXPECT_EQ(list->randomFolderForScreen(1), nullptr);
  EXPECT_EQ(fakes.log.lines(),
            Names{"Pelmora: With random number 0, item 0 doesn't correspond to a folder"});
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(1));
  EXPECT_FALSE(list->randomURLForScreenIndex(1));
}

TEST_F(PMSourceListRandomTest, drawsNothingForAScreenThatHasNoWeight) {
  add("/a", 10);
  for (const std::uint64_t screen : {std::uint64_t{3}, kNotFound, ~std::uint64_t{0}}) {
    EXPECT_EQ(list->randomFolderForScreen(screen), nullptr);
    EXPECT_FALSE(list->randomImageAndURLForScreenIndex(screen));
  }
}

TEST_F(PMSourceListRandomTest, missesWhenTheSumIsOlderThanTheRecords) {
  add("/a", 100);
  (void)list->randomFolderForScreen(0);
  add("/b", 1);
  list->setPriorityAndScreens(0, {0, "", 127});
  ASSERT_EQ(list->weightsSums()[0], 100U);
  srandom(42);
  const std::uint64_t number = nextDraw(100);
  ASSERT_GT(number, 0U);
  srandom(42);
  EXPECT_EQ(list->randomFolderForScreen(0), nullptr);
  EXPECT_EQ(fakes.log.lines(), Names{"Pelmora: With random number " + std::to_string(number) +
                                     ", item 1 doesn't correspond to a folder"});
}

TEST_F(PMSourceListRandomTest, weighsTheFiltersNamesWhereThereIsAFilter) {
  add("/a", 10);
  const auto b = add("/b", 10);
  useFilter();
  list->addSpotlightFilename(1, "only.jpg");
  EXPECT_EQ(draws(20)[b], 20);
  const auto pick = list->randomImageAndURLForScreenIndex(0);
  ASSERT_TRUE(pick);
  EXPECT_EQ(pick->url, FilePath("/b/only.jpg"));
}

TEST_F(PMSourceListRandomTest, drawsFromAllNamesAgainWithoutTheFilter) {
  add("/a", 10);
  useFilter();
  EXPECT_EQ(list->randomFolderForScreen(0), nullptr);
  list->setSpotlightQuery(std::nullopt);
  EXPECT_TRUE(list->randomFolderForScreen(0));
}

TEST_F(PMSourceListRandomTest, picksAFileByTheNextDraw) {
  add("/a", 30);
  const std::uint64_t folder = nextDraw(30);
  const std::uint64_t file = nextDraw(30);
  ASSERT_NE(folder, file);
  srandom(42);
  const auto pick = list->randomImageAndURLForScreenIndex(0);
  ASSERT_TRUE(pick);
  EXPECT_EQ(pick->url, FilePath("/a/" + std::to_string(file) + ".jpg"));
  EXPECT_TRUE(pick->image.isValid());
  EXPECT_EQ(list->randomURLForScreenIndex(0)->parent(), FilePath("/a"));
}

TEST_F(PMSourceListRandomTest, loadsPicturesForTheDisplayWithTheMostPixels) {
  add("/a", 1);
  (void)list->randomURLForScreenIndex(0);
  fakes.displays.displays[1].scale = 1.25;
  (void)list->randomURLForScreenIndex(0);
  fakes.displays.displays[1].frame.size.height = 1001;
  (void)list->randomURLForScreenIndex(0);
  fakes.displays.displays.clear();
  (void)list->randomURLForScreenIndex(0);
  std::vector<int> sides;
  for (const auto& load : fakes.images.loads()) sides.push_back(load.longestSide);
  EXPECT_EQ(sides, (std::vector<int>{810, 960, 939, 810}));
}

TEST_F(PMSourceListRandomTest, triesAgainUntilAFileLoads) {
  add("/a", 10);
  std::set<FilePath> good;
  for (int i = 0; i < 10; ++i) {
    const FilePath file("/a/" + std::to_string(i) + ".jpg");
    if (i < 5) {
      fakes.images.fail(file);
    } else {
      good.insert(file);
    }
  }
  for (int i = 0; i < 20; ++i) EXPECT_TRUE(good.contains(*list->randomURLForScreenIndex(0)));
  EXPECT_GT(fakes.images.loads().size(), 20U);
}

TEST_F(PMSourceListRandomTest, saysWhyAFileCannotBeShown) {
  add("/a", 1);
  fakes.images.fail(FilePath("/a/0.jpg"), "it is damaged");
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
  EXPECT_EQ(fakes.log.lines(),
            (Names{"Pelmora: Cannot show '/a/0.jpg': it is damaged",
                   "Pelmora: Giving up on folder '/a' because too many files are failing.",
                   "Pelmora: With random number 0, item 0 doesn't correspond to a folder"}));
}

TEST_F(PMSourceListRandomTest, givesAFolderUpAfterAsManyTriesAsItHasFiles) {
  add("/a", 3);
  fakes.images.failAll();
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
  EXPECT_EQ(fakes.images.loads().size(), 3U);
  EXPECT_TRUE(list->dirItems().empty());
  EXPECT_EQ(
      fakes.log.count("Pelmora: Giving up on folder '/a' because too many files are failing."), 1U);
}

TEST_F(PMSourceListRandomTest, keepsItsFoldersWhileNothingCanBeLoaded) {
  const auto record = add("/a", 3);
  for (int outage = 0; outage < 2; ++outage) {
    fakes.images.setAtWork(false);
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
    EXPECT_EQ(list->dirItems(), std::vector{record});
    fakes.images.setAtWork(true);
    EXPECT_TRUE(list->randomImageAndURLForScreenIndex(0));
  }
  EXPECT_EQ(fakes.images.loads().size(), 10U);
  EXPECT_EQ(fakes.log.count("Pelmora: No picture can be loaded for now: nothing can be loaded"),
            2U);
  EXPECT_EQ(fakes.log.lines().size(), 2U);
}

TEST_F(PMSourceListRandomTest, givesAFolderUpAfterTenTriesAtMost) {
  add("/a", 50);
  fakes.images.failAll();
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
  EXPECT_EQ(fakes.images.loads().size(), 10U);
}

TEST_F(PMSourceListRandomTest, drawsFromTheFoldersThatAreLeft) {
  add("/bad", 5);
  const auto good = add("/good", 5);
  for (int i = 0; i < 5; ++i) fakes.images.fail(FilePath("/bad/" + std::to_string(i) + ".jpg"));
  while (list->dirItems().size() > 1) ASSERT_TRUE(list->randomURLForScreenIndex(0));
  EXPECT_EQ(list->dirItems(), std::vector{good});
  EXPECT_EQ(list->randomURLForScreenIndex(0)->parent(), FilePath("/good"));
}

TEST_F(PMSourceListRandomTest, subtractsAGivenUpFoldersFilesOncePerRecordAndScreen) {
  add("/a", 4, 1, "1");
  add("/b", 100, 1, "2");
  add("/c", 100, 1, "1,2", 127);
  add("/d", 100, 1, "2", 0);
  (void)list->randomFolderForScreen(0);
  (void)list->randomFolderForScreen(1);
  (void)list->randomFolderForScreen(2);
  ASSERT_EQ(list->weightsSums(), (Weights{204, 104, 200}));
  for (int i = 0; i < 4; ++i) fakes.images.fail(FilePath("/a/" + std::to_string(i) + ".jpg"));
  // Screen 1 has the records a and c, screen 2 b, c and d, and index 0 them all: four files each.
  while (list->dirItems().size() == 4) (void)list->randomURLForScreenIndex(1);
  EXPECT_EQ(list->weightsSums(), (Weights{204 - 4 * 4, 104 - 2 * 4, 200 - 3 * 4}));
}

TEST_F(PMSourceListRandomTest, letsWeightsWrapBelowZero) {
  add("/a", 4, 0.25);
  add("/b", 1, 1, "", 0);
  add("/c", 1, 1, "2");
  fakes.images.failAll();
  (void)list->randomFolderForScreen(1);
  ASSERT_EQ(list->weightsSums()[1], 1U);
  EXPECT_FALSE(list->randomURLForScreenIndex(1));
  // Twice four from one; a number drawn from what is left leads nowhere.
  EXPECT_EQ(list->weightsSums()[1], std::uint64_t{0} - 7);
  EXPECT_FALSE(list->randomURLForScreenIndex(1));
}

TEST_F(PMSourceListRandomTest, leavesWeightsThatWereNotComputedAlone) {
  add("/a", 4);
  fakes.images.failAll();
  EXPECT_FALSE(list->randomURLForScreenIndex(1));
  EXPECT_EQ(list->weightsSums(), (Weights{0, 0, 0}));
}

TEST_F(PMSourceListRandomTest, returnsAnImageThatStayedInvalid) {
  add("/a", 2);
  fakes.images.makeInvalid(FilePath("/a/0.jpg"));
  fakes.images.makeInvalid(FilePath("/a/1.jpg"));
  const auto pick = list->randomImageAndURLForScreenIndex(0);
  ASSERT_TRUE(pick);
  EXPECT_FALSE(pick->image.isValid());
  EXPECT_EQ(fakes.images.loads().size(), 2U);
  EXPECT_EQ(pick->url, fakes.images.loads().back().file);
}

TEST_F(PMSourceListRandomTest, givesUpAFolderWhoseLastTryFailed) {
  // The first try left an invalid image, the second none: the last one counts.
  add("/a", 2);
  fakes.images.makeInvalid(FilePath("/a/0.jpg"));
  fakes.images.fail(FilePath("/a/1.jpg"));
  for (int i = 0; i < 100 && !list->dirItems().empty(); ++i) {
    (void)list->randomImageAndURLForScreenIndex(0);
  }
  EXPECT_EQ(fakes.images.loads().back().file, FilePath("/a/1.jpg"));
}

TEST_F(PMSourceListRandomTest, logsAFolderWithoutNamesAndGivesItUp) {
  const auto record = add("/a", 5);
  useFilter();
  list->addSpotlightFilename(0, "x");
  record->spotlightFilenames.clear();  // behind the list's back, which still weighs it
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
  EXPECT_EQ(fakes.log.lines(),
            (Names{"Pelmora: Random index 0 is out of range for max 0.",
                   "Pelmora: Giving up on folder '/a' because too many files are failing.",
                   "Pelmora: With random number 0, item 0 doesn't correspond to a folder"}));
  EXPECT_TRUE(list->dirItems().empty());
}

TEST_F(PMSourceListRandomTest, drawsNothingFromARecordWithoutAPath) {
  add("", 5);
  EXPECT_FALSE(list->randomImageAndURLForScreenIndex(0));
  EXPECT_TRUE(fakes.images.loads().empty());
}

TEST_F(PMSourceListRandomTest, logsFailedLocksWithTheirOwnWordsAndGoesOn) {
  add("/a", 5);
  const std::string error = std::to_string(EDEADLK);
  {
    const HeldLock items(list->dirItemsLock);
    const HeldLock sums(list->weightsSumLock);
    EXPECT_TRUE(list->randomFolderForScreen(0));
  }
  const std::string failed = "Pelmora: Trying to get a rdlock failed: " + error;
  EXPECT_EQ(fakes.log.lines(),
            (Names{failed, "Pelmora: Trying to get a rdlock on dirItemsLock failed: " + error,
                   "Pelmora: Trying to get a rdlock on weightsSumLock failed: " + error, failed,
                   failed}));
}

TEST_F(PMSourceListRandomTest, drawsFromManyRecordsAsFromFew) {
  constexpr int kRecords = 2000;
  for (int i = 0; i < kRecords; ++i) add("/a", 1, 1, i % 2 == 0 ? "1" : "2");
  EXPECT_TRUE(list->randomFolderForScreen(1));
  EXPECT_EQ(list->weightsSums()[1], kRecords / 2);
}

}  // namespace pelmora::sources

#include "platform/linux/index/IndexWork.h"

#include "platform/linux/index/SqliteDatabase.h"
#include "platform/linux/index/tests/IndexFixture.h"
#include "platform/linux/index/tests/LostEvents.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace pelmora::platform {

namespace {

constexpr double kDay = 86'400;  // seconds

class IndexWorkTest : public IndexFixture {
 protected:
  void search(const char* text, IndexWork::QueryId id = 1) { search(text, {folder}, id); }
  void search(const char* text, const std::vector<FilePath>& folders, IndexWork::QueryId id = 1) {
    work.addQuery(id, id == 1 ? state : std::make_shared<QueryState>());
    work.setPredicate(id, parse(text));
    work.setScopes(id, folders);
    work.start(id, 1);
    run();
  }
  IndexWork::Tools tools() {
    return {.files = fakes.files,
            .log = fakes.log,
            .clock = fakes.clock,
            .notifications = fakes.notifications,
            .inspect = inspect(),
            .isOver = [] { return false; },
            .progress = [this](const IndexProgress& told) { progress = told; },
            .file = file,
            .mostWatches = 100,
            .patience = std::chrono::milliseconds(10)};
  }
  void run() {
    while (work.doNext()) {
    }
  }
  /// Lets what is due next become so, and does it.
  void runWhenDue() {
    fakes.clock.advanceTo(work.nextDue().value());
    run();
  }
  /// Lets the changes that happened become due, and takes them.
  void runLater() {
    run();
    fakes.clock.advanceTo(fakes.clock.mediaTime() + 1);
    run();
  }

  const FilePath folder = temporary.mkdir("pictures");
  const FilePath file = temporary.mkdir("cache") / "index";
  std::shared_ptr<QueryState> state = std::make_shared<QueryState>();
  IndexProgress progress;
  IndexWork work{tools()};
};

}  // namespace

TEST_F(IndexWorkTest, findsTheFilesOfAFolderAndSaysHowFarItIs) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "two");
  search("kMDItemTitle == 'one'");
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
  EXPECT_EQ(progress.foldersDone, 1U);
  EXPECT_EQ(progress.foldersToDo, 0U);
  EXPECT_EQ(progress.filesDone, 2U);
}

TEST_F(IndexWorkTest, findsAFileThatComesAndOneThatComesToMatch) {
  temporary.write("pictures/b.jpg", "two");
  search("kMDItemTitle == 'one'");
  EXPECT_THAT(reported, testing::IsEmpty());
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "one");
  runLater();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}, {(folder / "b.jpg").bytes(), 1}}));
}

TEST_F(IndexWorkTest, readsNothingTwiceForASecondQueryOrAnotherRun) {
  temporary.write("pictures/a.jpg", "one");
  search("kMDItemTitle == 'one'");
  work.addQuery(2, std::make_shared<QueryState>());
  work.setPredicate(2, parse("kMDItemFSName BEGINSWITH 'a'"));
  work.setScopes(2, {folder});
  work.start(2, 1);
  run();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 2}}));
  EXPECT_EQ(filesRead, 1);
}

TEST_F(IndexWorkTest, goesOnWhenTheIndexIsDeletedUnderIt) {
  temporary.write("pictures/a.jpg", "one");
  search("kMDItemTitle == 'one'");
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::filesystem::remove(file.bytes() + suffix);
  }
  temporary.write("pictures/b.jpg", "one");
  runLater();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}, {(folder / "b.jpg").bytes(), 1}}));
}

TEST_F(IndexWorkTest, findsFilesByTheirNamesWithoutAnInspectorAndByTheRestOnceThereIsOne) {
  temporary.write("pictures/a.jpg", "one");
  work.addQuery(2, std::make_shared<QueryState>());
  work.setPredicate(2, parse("kMDItemFSName BEGINSWITH 'a'"));
  work.setScopes(2, {folder});
  work.start(2, 1);
  filesUntilItIsGone = 0;
  search("kMDItemTitle == 'one'");
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
  EXPECT_THAT(posts, testing::Contains(NSMetadataQueryDidFinishGatheringNotification).Times(2));
  runWhenDue();
  EXPECT_EQ(inspectorsAskedFor, 2);
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
  filesUntilItIsGone = -1;
  runWhenDue();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 2}}));
  EXPECT_EQ(inspectorsAskedFor, 3);
  EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + kDay);
  EXPECT_THAT(fakes.log.lines(), testing::SizeIs(1));
}

TEST_F(IndexWorkTest, asksForAnInspectorOnceForManyFoldersAndLessAndLessOften) {
  std::vector<FilePath> folders;
  for (const char* name : {"pictures", "more", "others"}) {
    temporary.write(std::string(name) + "/a.jpg", "one");
    folders.push_back(temporary.path() / name);
  }
  filesUntilItIsGone = 0;
  work.addQuery(1, state);
  work.setPredicate(1, parse("kMDItemTitle == 'one'"));
  work.setScopes(1, folders);
  work.start(1, 1);
  run();
  EXPECT_EQ(inspectorsAskedFor, 1);
  for (const double seconds : {60, 120, 240, 480, 960, 1920, 3600, 3600}) {
    EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + seconds);
    runWhenDue();
  }
  EXPECT_EQ(inspectorsAskedFor, 9);
  filesUntilItIsGone = -1;
  runWhenDue();
  EXPECT_EQ(reported.size(), 3U);
}

TEST_F(IndexWorkTest, readsInTheNextRunWhatHadNoInspectorInThisOne) {
  temporary.write("pictures/a.jpg", "one");
  filesUntilItIsGone = 0;
  search("kMDItemTitle == 'one'");
  EXPECT_EQ(filesRead, 0);
  filesUntilItIsGone = -1;
  IndexWork next(tools());
  next.addQuery(1, std::make_shared<QueryState>());
  next.setPredicate(1, parse("kMDItemTitle == 'one'"));
  next.setScopes(1, {folder});
  next.start(1, 1);
  while (next.doNext()) {
  }
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
}

TEST_F(IndexWorkTest, losesNothingWhileAnotherProcessIsWriting) {
  const FilePath more = temporary.mkdir("more");
  temporary.write("pictures/a.jpg", "one");
  temporary.write("more/b.jpg", "one");
  SqliteDatabase other(file.bytes());
  {
    SqliteTransaction writing(other);
    search("kMDItemTitle == 'one'", {folder, more});
    EXPECT_THAT(posts, testing::IsEmpty());
    EXPECT_EQ(progress.foldersDone, 0U);
    EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + 1);
  }
  runWhenDue();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}, {(more / "b.jpg").bytes(), 1}}));
  EXPECT_EQ(progress.foldersDone, 2U);
}

TEST_F(IndexWorkTest, entersLaterWhatCouldNotBeEnteredAtOnce) {
  search("kMDItemTitle == 'one'");
  temporary.write("pictures/a.jpg", "one");
  SqliteDatabase other(file.bytes());
  {
    SqliteTransaction writing(other);
    runLater();
    EXPECT_EQ(filesRead, 1);
    EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + 1);
  }
  runWhenDue();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
}

TEST_F(IndexWorkTest, triesWhatADiskDoesNotGiveLessAndLessOftenWhateverElseHappens) {
  temporary.write("pictures/a.jpg", "one");
  isDiskSlow = true;
  search("kMDItemTitle == 'one'");
  for (const double seconds : {60, 120, 240}) {
    EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + seconds);
    runWhenDue();
  }
  EXPECT_EQ(filesRead, 4);
  temporary.write("pictures/b.jpg", "one");
  runLater();
  EXPECT_EQ(filesRead, 5) << "the new one";
  isDiskSlow = false;
  runWhenDue();
  EXPECT_EQ(reported.size(), 2U);
  EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + kDay);
}

TEST_F(IndexWorkTest, keepsWhatItKnowsOfADiskThatIsAwayAndTellsNobodyOfIt) {
  temporary.write("pictures/a.jpg", "one");
  search("kMDItemTitle == 'one'");
  const FilePath away = temporary.path() / "away";
  std::filesystem::rename(folder.bytes(), away.bytes());
  runLater();
  EXPECT_EQ(progress.filesDone, 0U);
  posts.clear();
  search("kMDItemTitle == 'one'", 2);
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
  EXPECT_THAT(posts, testing::ElementsAre(NSMetadataQueryDidFinishGatheringNotification));
  std::filesystem::rename(away.bytes(), folder.bytes());
  runWhenDue();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 2}}));
  EXPECT_EQ(filesRead, 1);
}

TEST_F(IndexWorkTest, looksAtEachFolderOnceADaySoThatItCountsAsUsed) {
  search("kMDItemTitle == 'one'");
  SqliteDatabase other(file.bytes());
  other.run("UPDATE folders SET used = used - 61");
  EXPECT_EQ(work.nextDue(), fakes.clock.mediaTime() + kDay);
  runWhenDue();
  MetadataStore(file, {}).forgetUnused(60);
  SqliteStatement statement = other.prepare("SELECT 1 FROM folders");
  EXPECT_TRUE(statement.execute().step());
}

TEST_F(IndexWorkTest, findsForAStoppedQueryWhatChangesWhileAnotherRuns) {
  search("kMDItemTitle == 'one'");
  search("kMDItemTitle == 'two'", 2);
  work.stop(1);
  temporary.write("pictures/a.jpg", "one");
  runLater();
  EXPECT_THAT(reported, testing::IsEmpty());
  work.start(1, 2);
  run();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
}

TEST_F(IndexWorkTest, hasEverythingToDoAgainWhenTheIndexIsDeleted) {
  temporary.write("pictures/a.jpg", "one");
  search("kMDItemTitle == 'one'");
  EXPECT_EQ(progress.foldersDone, 1U);
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::filesystem::remove(file.bytes() + suffix);
  }
  work.addQuery(2, std::make_shared<QueryState>());
  work.setPredicate(2, parse("kMDItemTitle == 'one'"));
  work.setScopes(2, {folder});
  EXPECT_EQ(progress.foldersDone, 0U);
  EXPECT_EQ(progress.foldersToDo, 1U);
  work.start(2, 1);
  run();
  EXPECT_EQ(progress.foldersDone, 1U);
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 2}}));
}

TEST_F(IndexWorkTest, saysNowAndThenThatChangesWereLost) {
  search("TRUEPREDICATE");
  const auto loseEvents = [this] {
    causeMoreEventsThanAreKept(folder);
    runLater();
  };
  loseEvents();
  loseEvents();
  EXPECT_THAT(fakes.log.lines(), testing::SizeIs(1));
  fakes.clock.advanceTo(fakes.clock.mediaTime() + 600);
  loseEvents();
  EXPECT_THAT(fakes.log.lines(), testing::SizeIs(2));
}

TEST_F(IndexWorkTest, leavesFoldersAloneThatNoStartedQuerySearches) {
  temporary.write("pictures/a.jpg", "one");
  search("kMDItemTitle == 'one'");
  work.stop(1);
  temporary.write("pictures/b.jpg", "one");
  runLater();
  EXPECT_EQ(filesRead, 1);
  work.start(1, 2);
  run();
  EXPECT_EQ(reported.size(), 2U);
  work.removeQuery(1);
  EXPECT_EQ(progress.foldersDone, 0U);
  EXPECT_EQ(progress.filesDone, 0U);
}

}  // namespace pelmora::platform

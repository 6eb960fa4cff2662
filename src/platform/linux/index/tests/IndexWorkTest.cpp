#include "platform/linux/index/IndexWork.h"

#include "platform/linux/index/tests/IndexFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace pelmora::platform {

namespace {

class IndexWorkTest : public IndexFixture {
 protected:
  void search(const char* text) {
    work.addQuery(1, state);
    work.setPredicate(1, parse(text));
    work.setScopes(1, {folder});
    work.start(1, 1);
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
            .mostWatches = 100};
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
  EXPECT_EQ(work.nextDue(), std::nullopt);
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

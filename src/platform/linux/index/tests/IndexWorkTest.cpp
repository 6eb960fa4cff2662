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
  void run() {
    while (work.doNext()) {
    }
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
  IndexWork work{{.files = fakes.files,
                  .log = fakes.log,
                  .clock = fakes.clock,
                  .notifications = fakes.notifications,
                  .inspect = inspect(),
                  .isOver = [] { return false; },
                  .progress = [this](const IndexProgress& told) { progress = told; },
                  .file = file,
                  .mostWatches = 100}};
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

#include "platform/linux/index/FolderIndexer.h"

#include "platform/linux/index/tests/IndexFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace pelmora::platform {

namespace {

class FolderIndexerTest : public IndexFixture {
 protected:
  FolderIndexer::Outcome update() {
    return indexer.update(folder, store.folderId(folder), [this] { ++batches; });
  }
  [[nodiscard]] std::vector<std::string> filesWith(const char* attribute, const char* value) {
    const auto query = store.prepare(predicate::Comparison{
        predicate::KeyPath{attribute}, predicate::Operator::equal, predicate::Constant(value)});
    return store.matches(*query, store.folderId(folder));
  }
  [[nodiscard]] std::vector<std::string> filesWithTitle(const char* title) {
    return filesWith("kMDItemTitle", title);
  }

  const FilePath folder = temporary.mkdir("pictures");
  MetadataStore store{FilePath(), [](const std::string&) {}};
  IndexTurn turn{FilePath(), [] { return false; }};
  bool isOver = false;
  int batches = 0;
  PatientInspector inspector{inspect(), fakes.clock, fakes.log};
  FolderIndexer indexer{{.files = fakes.files,
                         .log = fakes.log,
                         .store = store,
                         .turn = turn,
                         .inspector = inspector,
                         .isOver = [this] { return isOver; }}};
};

}  // namespace

TEST_F(FolderIndexerTest, readsEachFileOfAFolderOnce) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "two");
  temporary.write("pictures/.hidden.jpg", "one");
  temporary.write("pictures/sub/c.jpg", "one");
  EXPECT_EQ(update().fileCount, 2U);
  EXPECT_EQ(filesRead, 2);
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("a.jpg"));
  EXPECT_EQ(update().fileCount, 2U);
  EXPECT_EQ(filesRead, 2);
}

TEST_F(FolderIndexerTest, readsWhatWasChangedAndForgetsWhatIsGone) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "one");
  (void)update();
  temporary.write("pictures/a.jpg", "another");
  std::filesystem::remove((folder / "b.jpg").bytes());
  EXPECT_EQ(update().fileCount, 1U);
  EXPECT_EQ(filesRead, 3);
  EXPECT_THAT(filesWithTitle("another"), testing::ElementsAre("a.jpg"));
  EXPECT_THAT(filesWithTitle("one"), testing::IsEmpty());
}

TEST_F(FolderIndexerTest, keepsAFileThatCannotBeReadUnderItsNameWithOneLine) {
  temporary.write("pictures/a.jpg", "broken");
  EXPECT_EQ(update().fileCount, 1U);
  EXPECT_EQ(update().fileCount, 1U);
  EXPECT_EQ(filesRead, 1);
  EXPECT_THAT(fakes.log.lines(),
              testing::ElementsAre("Pelmora: Cannot read the metadata of '" +
                                   (folder / "a.jpg").bytes() + "': it is broken"));
}

TEST_F(FolderIndexerTest, worksInBatchesAndEndsBetweenThemWhenItIsTold) {
  for (std::size_t i = 0; i < FolderIndexer::kBatch + 1; ++i) {
    temporary.write("pictures/" + std::to_string(i) + ".jpg", "one");
  }
  (void)update();
  EXPECT_EQ(batches, 2);
  temporary.write("pictures/more.jpg", "one");
  isOver = true;
  (void)update();
  EXPECT_EQ(batches, 2);
}

TEST_F(FolderIndexerTest, knowsFilesByTheirNamesUntilThereIsAnInspector) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "one");
  filesUntilItIsGone = 1;
  EXPECT_TRUE(update().hasUnread);
  EXPECT_EQ(filesRead, 1);
  EXPECT_THAT(filesWith("kMDItemFSName", "a.jpg"), testing::ElementsAre("a.jpg"));
  EXPECT_THAT(filesWith("kMDItemFSName", "b.jpg"), testing::ElementsAre("b.jpg"));
  EXPECT_THAT(filesWithTitle("one"), testing::SizeIs(1));
  filesUntilItIsGone = -1;
  fakes.clock.advanceTo(inspector.waitsUntil());
  EXPECT_FALSE(update().hasUnread);
  EXPECT_EQ(filesRead, 2);
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("a.jpg", "b.jpg"));
}

TEST_F(FolderIndexerTest, entersNothingTwiceWhileTheInspectorWaits) {
  temporary.write("pictures/a.jpg", "one");
  filesUntilItIsGone = 0;
  EXPECT_TRUE(update().hasUnread);
  const MetadataStore::Revision entered = store.newestRevision();
  EXPECT_TRUE(update().hasUnread);
  EXPECT_EQ(store.newestRevision(), entered);
  EXPECT_EQ(inspectorsAskedFor, 1);
  temporary.write("pictures/a.jpg", "another");
  EXPECT_TRUE(update().hasUnread);
  EXPECT_GT(store.newestRevision(), entered);
  EXPECT_EQ(inspectorsAskedFor, 1);
}

TEST_F(FolderIndexerTest, hasNoFilesForAFolderThatIsGone) {
  temporary.write("pictures/a.jpg", "one");
  (void)update();
  std::filesystem::remove_all(folder.bytes());
  EXPECT_EQ(update().fileCount, 0U);
  EXPECT_THAT(filesWithTitle("one"), testing::IsEmpty());
}

}  // namespace pelmora::platform

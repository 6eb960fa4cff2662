#include "platform/linux/index/FolderIndexer.h"

#include "platform/linux/index/tests/IndexFixture.h"
#include "platform/linux/PosixFiles.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace pelmora::platform {

namespace {

/// As long as it lives, so many descriptors can be had.
class FewDescriptors {
 public:
  explicit FewDescriptors(rlim_t count) {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &_before), 0);
    const FileDescriptor next(::open("/", O_PATH | O_CLOEXEC));
    const rlimit few{static_cast<rlim_t>(next.get()) + count, _before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  }
  ~FewDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &_before), 0); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit _before{};
};

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class FolderIndexerTest : public IndexFixture {
 protected:
  using Unread = FolderIndexer::Unread;
  FolderIndexer::Outcome update(Unread unread = Unread::tried) {
    return indexer.update(folder, store.folderId(folder), unread, [this] { ++batches; });
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
  IndexTurn turn{FilePath(), fakes.clock, {}};
  bool isOver = false;
  int filesUntilItIsOver = -1;                  // negative: it goes on
  std::function<void()> beforeReading = [] {};  // once the folder is listed
  int batches = 0;
  PatientInspector inspector{inspect(), fakes.clock, fakes.log,
                             [this] { return isOver || filesRead == filesUntilItIsOver; }};
  FolderIndexer indexer{{.files = fakes.files,
                         .log = fakes.log,
                         .store = store,
                         .turn = turn,
                         .inspector = inspector,
                         .isOver = [this] {
                           beforeReading();
                           return isOver || filesRead == filesUntilItIsOver;
                         }}};
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

TEST_F(FolderIndexerTest, readsWhatALinkLeadsTo) {
  temporary.write("elsewhere.jpg", "one");
  std::filesystem::create_symlink("../elsewhere.jpg", (folder / "link.jpg").bytes());
  std::filesystem::create_symlink("nowhere.jpg", (folder / "broken.jpg").bytes());
  EXPECT_EQ(update().fileCount, 1U);
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("link.jpg"));
}

TEST_F(FolderIndexerTest, passesOverALinkToWhatDoesNotAnswer) {
  class OneLinkIsStalled : public PosixFiles {
   public:
    [[nodiscard]] std::optional<FileFacts> facts(const FilePath& path,
                                                 FinalLink link) const override {
      return isStalled(path) ? std::nullopt : PosixFiles::facts(path, link);
    }
    [[nodiscard]] bool isStalled(const FilePath& path) const override {
      return path.lastComponent() == "stalled.jpg";
    }
  };
  const OneLinkIsStalled files;
  FolderIndexer patient({.files = files,
                         .log = fakes.log,
                         .store = store,
                         .turn = turn,
                         .inspector = inspector,
                         .isOver = [] { return false; }});
  temporary.write("elsewhere.jpg", "one");
  std::filesystem::create_symlink("../elsewhere.jpg", (folder / "link.jpg").bytes());
  std::filesystem::create_symlink("../elsewhere.jpg", (folder / "stalled.jpg").bytes());
  const auto look = [&] {
    return patient.update(folder, store.folderId(folder), Unread::tried, [] {});
  };
  EXPECT_TRUE(look().hasUnread);
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("link.jpg"));
  EXPECT_FALSE(update().hasUnread);  // it answers
  EXPECT_THAT(filesWithTitle("one"), testing::UnorderedElementsAre("link.jpg", "stalled.jpg"));
  EXPECT_TRUE(look().hasUnread);  // and does not any more
  EXPECT_THAT(filesWithTitle("one"), testing::UnorderedElementsAre("link.jpg", "stalled.jpg"));
}

TEST_F(FolderIndexerTest, forgetsNoLinkWhenItIsToldToEnd) {
  temporary.write("elsewhere.jpg", "one");
  std::filesystem::create_symlink("../elsewhere.jpg", (folder / "link.jpg").bytes());
  (void)update();
  fakes.files.fail(CountingFiles::Call::facts, folder / "link.jpg");
  isOver = true;
  (void)update();
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("link.jpg"));
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

TEST_F(FolderIndexerTest, readsMoreFilesThanATurnHas) {
  for (std::size_t i = 0; i < FolderIndexer::kTurn + 1; ++i) {
    temporary.write("pictures/" + std::to_string(i) + ".jpg", "one");
  }
  EXPECT_EQ(update().fileCount, FolderIndexer::kTurn + 1);
  EXPECT_THAT(filesWithTitle("one"), testing::SizeIs(FolderIndexer::kTurn + 1));
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

TEST_F(FolderIndexerTest, keepsWhatItHasReadWhenItIsToldToEndBetweenFiles) {
  for (const char* name : {"a", "b", "c"}) temporary.write("pictures/" + std::string(name), "one");
  filesUntilItIsOver = 2;
  EXPECT_FALSE(update().hasUnread);
  EXPECT_EQ(filesRead, 2);
  EXPECT_EQ(store.filesIn(store.folderId(folder)).size(), 2U);
  filesUntilItIsOver = -1;
  (void)update();
  EXPECT_EQ(filesRead, 3);
}

TEST_F(FolderIndexerTest, readsLaterWhatADiskDidNotGive) {
  temporary.write("pictures/a.jpg", "one");
  isDiskSlow = true;
  EXPECT_TRUE(update().hasUnread);
  EXPECT_THAT(filesWith("kMDItemFSName", "a.jpg"), testing::ElementsAre("a.jpg"));
  EXPECT_TRUE(update(Unread::left).hasUnread);
  EXPECT_EQ(filesRead, 1);
  EXPECT_TRUE(update(Unread::tried).hasUnread);
  EXPECT_EQ(filesRead, 2);
  isDiskSlow = false;
  EXPECT_FALSE(update(Unread::tried).hasUnread);
  EXPECT_THAT(filesWithTitle("one"), testing::ElementsAre("a.jpg"));
}

TEST_F(FolderIndexerTest, leavesMostDescriptorsToThoseWhoShowPictures) {
  for (int i = 0; i < 60; ++i) temporary.write("pictures/" + std::to_string(i), "one");
  const std::size_t before = openDescriptors();
  std::size_t most = 0;
  beforeReading = [&] { most = std::max(most, openDescriptors()); };
  const FewDescriptors few(64);
  EXPECT_FALSE(update().hasUnread);
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_GT(most, before);
  EXPECT_LE(most, before + limit.rlim_cur / 4 + 4);  // a few for the listing
  EXPECT_THAT(filesWithTitle("one"), testing::SizeIs(60));
}

// The address sanitizer's companions want descriptors of their own.
#ifndef __SANITIZE_ADDRESS__
TEST_F(FolderIndexerTest, readsFilesAFewAtATimeWhereDescriptorsAreFew) {
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    temporary.write("pictures/" + std::string(name), "one");
  }
  const FewDescriptors few(3);  // two at a time to list the folder, beside it
  EXPECT_FALSE(update().hasUnread);
  EXPECT_THAT(filesWithTitle("one"), testing::SizeIs(5));
}

TEST_F(FolderIndexerTest, readsLaterWhatCouldNotBeOpenedForWantOfDescriptors) {
  for (const char* name : {"a", "b"}) temporary.write("pictures/" + std::string(name), "one");
  std::optional<FewDescriptors> none;
  beforeReading = [&] {
    if (!none) none.emplace(0);
  };
  EXPECT_TRUE(update().hasUnread);
  EXPECT_THAT(filesWith("kMDItemFSName", "a"), testing::ElementsAre("a"));
  EXPECT_THAT(filesWithTitle("one"), testing::IsEmpty());
  beforeReading = [] {};
  none.reset();
  EXPECT_FALSE(update().hasUnread);
  EXPECT_THAT(filesWithTitle("one"), testing::SizeIs(2));
}
#endif

TEST_F(FolderIndexerTest, doesNotTryAgainWhatMayNotBeOpened) {
  temporary.link("pictures/a.jpg", temporary.path() / "pictures/a.jpg");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(update().hasUnread);
}

TEST_F(FolderIndexerTest, keepsWhatIsKnownOfAFolderThatCannotBeListed) {
  temporary.write("pictures/a.jpg", "one");
  EXPECT_TRUE(update().isListed);
  const FilePath away = temporary.path() / "away";
  std::filesystem::rename(folder.bytes(), away.bytes());
  const auto outcome = update();
  EXPECT_FALSE(outcome.isListed);
  EXPECT_EQ(outcome.fileCount, 0U);
  std::filesystem::rename(away.bytes(), folder.bytes());
  EXPECT_FALSE(update().hasChanged);
  EXPECT_EQ(filesRead, 1);
}

}  // namespace pelmora::platform

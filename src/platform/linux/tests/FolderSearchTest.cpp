#include "platform/linux/FolderSearch.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/FolderIdentity.h"

#include <gmock/gmock.h>

#include <string>

namespace pelmora::platform {

namespace {

/// A clock that moves on by a second with every look.
class HurryingClock : public Clock {
 public:
  [[nodiscard]] ReferenceTime now() const override { return {}; }
  [[nodiscard]] double mediaTime() const override { return ++_seconds; }

 private:
  mutable double _seconds = 0;
};

class StandingClock : public Clock {
 public:
  [[nodiscard]] ReferenceTime now() const override { return {}; }
  [[nodiscard]] double mediaTime() const override { return 0; }
};

class FolderSearchTest : public testing::Test {
 protected:
  std::optional<FilePath> search(const FilePath& wanted, SearchLimits limits = {}) {
    return search(wanted, limits, StandingClock());
  }

  std::optional<FilePath> search(const FilePath& wanted, SearchLimits limits, const Clock& clock) {
    FolderSearch search(folderIdentity(wanted)->inode, clock, limits);
    return search.find(temporary.path(), known, [this](const FilePath& candidate) {
      offered.push_back(candidate);
      return accepts;
    });
  }

  TemporaryFolder temporary;
  FilePath known;
  std::vector<FilePath> offered;
  bool accepts = true;
};

}  // namespace

TEST_F(FolderSearchTest, findsAFolderAtAnyDepth) {
  (void)temporary.mkdir("other/branch");
  (void)temporary.write("a/file");
  const FilePath wanted = temporary.mkdir("a/b/c\n\xE9/wanted");
  EXPECT_EQ(search(wanted), wanted);
  EXPECT_THAT(offered, testing::ElementsAre(wanted));
}

TEST_F(FolderSearchTest, goesOnWhenACandidateIsRejected) {
  accepts = false;
  const FilePath wanted = temporary.mkdir("a/wanted");
  EXPECT_EQ(search(wanted), std::nullopt);
  EXPECT_THAT(offered, testing::ElementsAre(wanted));
}

TEST_F(FolderSearchTest, passesHiddenFoldersBy) {
  EXPECT_EQ(search(temporary.mkdir(".Trash/wanted")), std::nullopt);
}

TEST_F(FolderSearchTest, passesBelowWhatIsKnownBy) {
  const FilePath wanted = temporary.mkdir("a/wanted");
  known = temporary.path() / "a";
  EXPECT_EQ(search(wanted), std::nullopt);
}

TEST_F(FolderSearchTest, followsNoLinks) {
  const TemporaryFolder elsewhere;
  (void)temporary.link("link", elsewhere.path());
  (void)temporary.link("loop", ".");
  EXPECT_EQ(search(elsewhere.mkdir("wanted")), std::nullopt);
}

TEST_F(FolderSearchTest, looksIntoNoOtherFilesystem) {
  const FilePath wanted("/proc/sys");
  const StandingClock clock;
  FolderSearch search(folderIdentity(wanted)->inode, clock, {200, 1});
  const auto accept = [&](const FilePath& candidate) { return candidate == wanted; };
  EXPECT_EQ(search.find(FilePath("/"), FilePath(), accept), std::nullopt);
  EXPECT_EQ(FolderSearch(folderIdentity(wanted)->inode, clock, {200, 1})
                .find(FilePath("/proc"), FilePath(), accept),
            wanted);
}

TEST_F(FolderSearchTest, endsWithItsBudgetOfReads) {
  const FilePath wanted = temporary.mkdir("1/2/3/4/5/wanted");
  EXPECT_EQ(search(wanted, {12, 1}), wanted);
  EXPECT_EQ(search(wanted, {5, 1}), std::nullopt);
  EXPECT_EQ(search(wanted, {0, 1}), std::nullopt);
}

TEST_F(FolderSearchTest, endsWithItsTime) {
  const FilePath wanted = temporary.mkdir("1/2/3/4/5/wanted");
  EXPECT_EQ(search(wanted, {1000, 1000}, HurryingClock()), wanted);
  EXPECT_EQ(search(wanted, {1000, 5}, HurryingClock()), std::nullopt);
}

TEST_F(FolderSearchTest, findsNothingBelowWhatIsNoFolder) {
  const StandingClock clock;
  FolderSearch search(1, clock, {});
  const auto accept = [](const FilePath&) { return true; };
  EXPECT_EQ(search.find(temporary.write("file"), FilePath(), accept), std::nullopt);
  EXPECT_EQ(search.find(temporary.path() / "nothing", FilePath(), accept), std::nullopt);
}

}  // namespace pelmora::platform

#include "host/MatchRun.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pelmora::host {

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

class MatchRunTest : public testing::Test {
 protected:
  MatchRunTest() { fs::current_path(home.path().bytes()); }
  ~MatchRunTest() override { fs::current_path(before); }
  MatchRunTest(const MatchRunTest&) = delete;
  MatchRunTest& operator=(const MatchRunTest&) = delete;

  /// What is told; complaints have "! " before them.
  Lines match(const char* predicate, Lines folders) {
    Lines lines;
    const MatchRequest request{*platform::predicate::parsePredicate(predicate), std::move(folders)};
    const MatchTools tools{
        .files = files,
        .metadata = index,
        .notifications = notifications,
        .tell = [&](const std::string& path) { lines.push_back(path); },
        .complain = [&](const std::string& problem) { lines.push_back("! " + problem); },
        .progress = [](const platform::IndexProgress&) {}};
    isAllWell = MatchRun(request, tools).run();
    return lines;
  }

  const fs::path before = fs::current_path();
  platform::TemporaryFolder home;
  platform::PosixFiles files;
  platform::SystemClock clock;
  platform::RecordingLog log;
  platform::NotificationCenter notifications;
  platform::MetadataIndex index{{.files = files,
                                 .log = log,
                                 .clock = clock,
                                 .notifications = notifications,
                                 .inspect =
                                     [](auto open, const auto& take) {
                                       for (std::size_t i = 0; i < open.size(); ++i) {
                                         take(i, platform::metadata::FileMetadata());
                                       }
                                       return Status(Done{});
                                     },
                                 .file = [] { return FilePath(); }}};
  bool isAllWell = false;
};

}  // namespace

TEST_F(MatchRunTest, tellsWhatMatchesSortedByTheBytesOfThePaths) {
  for (const char* name : {"a/b.jpg", "a/Z.jpg", "a-b/c.jpg", "a/d/e.jpg", "a/f.png"}) {
    home.write(name);
  }
  EXPECT_EQ(match("kMDItemFSName ENDSWITH '.jpg'", {"a", "a-b"}),
            (Lines{"a-b/c.jpg", "a/Z.jpg", "a/b.jpg", "a/d/e.jpg"}));
  EXPECT_TRUE(isAllWell);
}

TEST_F(MatchRunTest, takesThePredicateAtItsWord) {
  for (const char* name : {"a/b.jpg", "a/c.png"}) home.write(name);
  EXPECT_EQ(match("NOT kMDItemFSName ENDSWITH '.jpg'", {"a"}), (Lines{"a/c.png"}));
  EXPECT_EQ(match("TRUEPREDICATE", {"a"}), (Lines{"a/b.jpg", "a/c.png"}));
  EXPECT_EQ(match("kMDItemFSSize > 5", {"a"}), Lines());
}

TEST_F(MatchRunTest, tellsAFileOnceByTheFirstFolderThatItIsReachedThrough) {
  for (const char* name : {"a/b/c.jpg", "a/d.jpg"}) home.write(name);
  EXPECT_EQ(match("TRUEPREDICATE", {"a/b", ".", "a"}), (Lines{"./a/d.jpg", "a/b/c.jpg"}));
}

TEST_F(MatchRunTest, searchesFoldersAsTheSaverDoes) {
  for (const char* name : {"a/.hidden.jpg", "a/.hidden/b.jpg", "a/x.photoslibrary/c.jpg",
                           "a/e/f.jpg", "other/g.jpg", "other/below/h.jpg"}) {
    home.write(name);
  }
  fs::create_directory_symlink("../../other", (home.path() / "a/e/link").bytes());
  EXPECT_EQ(match("TRUEPREDICATE", {"a"}),
            (Lines{(home.path() / "other/g.jpg").bytes(), "a/e/f.jpg"}));
}

TEST_F(MatchRunTest, complainsOfWhatIsNoFolderAndSearchesTheOthers) {
  home.write("a/b.jpg");
  const Lines lines = match("TRUEPREDICATE", {"none", "a/b.jpg", "a"});
  EXPECT_EQ(lines,
            (Lines{"! none: there is no such folder", "! a/b.jpg: it is not a folder", "a/b.jpg"}));
  EXPECT_FALSE(isAllWell);
}

TEST_F(MatchRunTest, tellsNothingOfEmptyFolders) {
  home.mkdir("a/b");
  EXPECT_EQ(match("TRUEPREDICATE", {"a"}), Lines());
  EXPECT_TRUE(isAllWell);
}

}  // namespace pelmora::host

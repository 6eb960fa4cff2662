#include "platform/linux/index/FolderWatcher.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/tests/LostEvents.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <string>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Watching = FolderWatcher::Watching;
using Paths = std::vector<FilePath>;

constexpr auto kQuiet = FolderWatcher::kQuiet;
constexpr auto kShortestPause = FolderWatcher::kShortestPause;

/// What is told a moment after `now`, when that is collected which happened until `now`.
Paths toldAfter(FolderWatcher& watcher, double now) {
  EXPECT_THAT(watcher.changes(now).folders, IsEmpty());
  return watcher.changes(now + kQuiet).folders;
}

bool isReadable(int descriptor) {
  pollfd poll{descriptor, POLLIN, 0};
  return ::poll(&poll, 1, 0) == 1 && poll.revents == POLLIN;
}

void rename(const FilePath& from, const FilePath& to) {
  ASSERT_EQ(std::rename(from.c_str(), to.c_str()), 0);
}

/// As long as it lives, no descriptor can be had.
class WithoutDescriptors {
 public:
  WithoutDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &_before), 0);
    const rlimit none{0, _before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  ~WithoutDescriptors() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &_before), 0); }
  WithoutDescriptors(const WithoutDescriptors&) = delete;
  WithoutDescriptors& operator=(const WithoutDescriptors&) = delete;

 private:
  rlimit _before{};
};

}  // namespace

TEST(FolderWatcher, tellsAFolderOnceForManyChanges) {
  const TemporaryFolder temporary;
  const FilePath quiet = temporary.mkdir("quiet");
  const FilePath busy = temporary.mkdir("busy");
  FolderWatcher watcher;
  EXPECT_EQ(watcher.watch(quiet, 1), Watching::byEvents);
  EXPECT_EQ(watcher.watch(busy, 1), Watching::byEvents);
  for (int i = 0; i < 10; ++i) (void)temporary.write("busy/" + std::to_string(i), "x");
  EXPECT_THAT(toldAfter(watcher, 2), ElementsAre(busy));
  EXPECT_THAT(watcher.changes(100).folders, IsEmpty());
}

TEST(FolderWatcher, tellsOfEverythingThatHappensToFiles) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const FilePath file = folder / "file";
  const FilePath outside = temporary.path() / "outside";
  FolderWatcher watcher;
  (void)watcher.watch(folder, 0);
  double now = 0;
  const auto expectTold = [&](const char* what, const std::function<void()>& change) {
    change();
    EXPECT_THAT(toldAfter(watcher, ++now), ElementsAre(folder)) << what;
  };
  expectTold("comes", [&] { (void)temporary.write("folder/file"); });
  expectTold("is written", [&] { (void)temporary.write("folder/file", "more"); });
  expectTold("changes its attributes", [&] { (void)::chmod(file.c_str(), 0600); });
  expectTold("changes its dates", [&] { (void)::utimensat(AT_FDCWD, file.c_str(), nullptr, 0); });
  expectTold("is moved away", [&] { rename(file, outside); });
  expectTold("is moved here", [&] { rename(outside, file); });
  expectTold("is renamed", [&] { rename(file, folder / "other"); });
  expectTold("goes", [&] { (void)::unlink((folder / "other").c_str()); });
  expectTold("is a link", [&] { (void)temporary.link("folder/link", "nowhere"); });
}

TEST(FolderWatcher, tellsOfTheFoldersOwnAttributesButNotOfSubfolders) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  (void)temporary.mkdir("subfolder");
  (void)temporary.write("subfolder/file");
  EXPECT_THAT(toldAfter(watcher, 1), IsEmpty());
  ASSERT_EQ(::chmod(temporary.path().c_str(), 0700), 0);
  EXPECT_THAT(toldAfter(watcher, 2), ElementsAre(temporary.path()));
}

TEST(FolderWatcher, collectsForAMomentFromTheFirstChange) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  EXPECT_FALSE(watcher.nextDue());
  (void)temporary.write("a");
  EXPECT_THAT(watcher.changes(1).folders, IsEmpty());
  EXPECT_EQ(watcher.nextDue(), 1 + kQuiet);
  (void)temporary.write("b");
  EXPECT_THAT(watcher.changes(1.2).folders, IsEmpty());
  EXPECT_EQ(watcher.nextDue(), 1 + kQuiet);
  EXPECT_THAT(watcher.changes(1 + kQuiet).folders, ElementsAre(temporary.path()));
  EXPECT_FALSE(watcher.nextDue());
}

TEST(FolderWatcher, tellsWhatNeverCeasesToChangeAgainAndAgain) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  const FilePath file = temporary.write("a");
  (void)watcher.watch(temporary.path(), 0);
  int told = 0;
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    told += static_cast<int>(watcher.changes(i * kQuiet / 10).folders.size());
  }
  EXPECT_EQ(told, 9);
}

TEST(FolderWatcher, tellsEveryPathThatLeadsToAFolder) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const FilePath link = temporary.link("link", folder);
  FolderWatcher watcher;
  EXPECT_EQ(watcher.watch(link, 0), Watching::byEvents);
  EXPECT_EQ(watcher.watch(folder, 0), Watching::byEvents);
  (void)temporary.write("folder/a");
  EXPECT_THAT(toldAfter(watcher, 1), UnorderedElementsAre(folder, link));
  watcher.unwatch(folder);
  (void)temporary.write("folder/b");
  EXPECT_THAT(toldAfter(watcher, 2), ElementsAre(link));
}

TEST(FolderWatcher, tellsNoMoreOfWhatIsUnwatched) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  (void)watcher.watch(temporary.path(), 0);
  EXPECT_EQ(watcher.watchedFolders(), 1U);
  (void)temporary.write("a");
  (void)watcher.changes(1);
  watcher.unwatch(temporary.path());
  watcher.unwatch(temporary.path());
  (void)temporary.write("b");
  EXPECT_EQ(watcher.watchedFolders(), 0U);
  EXPECT_FALSE(watcher.nextDue());
  EXPECT_THAT(toldAfter(watcher, 2), IsEmpty());

  (void)watcher.watch(temporary.path(), 3);
  (void)temporary.write("c");
  EXPECT_THAT(toldAfter(watcher, 3), ElementsAre(temporary.path()));
}

TEST(FolderWatcher, canBeWaitedFor) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  ASSERT_GE(watcher.descriptor(), 0);
  EXPECT_FALSE(isReadable(watcher.descriptor()));
  (void)temporary.write("a");
  EXPECT_TRUE(isReadable(watcher.descriptor()));
  (void)watcher.changes(1);
  EXPECT_FALSE(isReadable(watcher.descriptor()));
}

TEST(FolderWatcher, pollsAFolderThatIsNotThereUntilItIs) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.path() / "folder";
  FolderWatcher watcher;
  EXPECT_EQ(watcher.watch(folder, 10), Watching::byPolling);
  EXPECT_EQ(watcher.nextDue(), 10 + kShortestPause);
  EXPECT_THAT(watcher.changes(14).folders, IsEmpty());
  EXPECT_THAT(watcher.changes(15).folders, ElementsAre(folder));
  EXPECT_FALSE(watcher.nextDue());
  watcher.hasPolled(folder, 16, 0);
  (void)temporary.mkdir("folder");
  EXPECT_EQ(watcher.polledFolders(), 1U);
  EXPECT_THAT(watcher.changes(21).folders, ElementsAre(folder));
  EXPECT_EQ(watcher.polledFolders(), 0U);
  watcher.hasPolled(folder, 21, 0);
  EXPECT_FALSE(watcher.nextDue());
  (void)temporary.write("folder/a");
  EXPECT_THAT(toldAfter(watcher, 22), ElementsAre(folder));
}

TEST(FolderWatcher, pollsTheLessOftenTheLongerItTakes) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.path() / "missing";
  FolderWatcher watcher;
  (void)watcher.watch(folder, 0);
  struct Case {
    double took;
    double pause;
  };
  double now = 5;
  for (const Case& next : {Case{0, 5}, Case{0.1, 5}, Case{0.5, 25}, Case{6, 300}, Case{1e9, 300},
                           Case{-1, 5}, Case{std::nan(""), 5}}) {
    ASSERT_THAT(watcher.changes(now).folders, ElementsAre(folder));
    watcher.hasPolled(folder, now, next.took);
    EXPECT_EQ(watcher.nextDue(), now + next.pause) << next.took;
    now += next.pause;
  }
}

TEST(FolderWatcher, countsThePauseFromTheLastLookUnlessSomethingChanged) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path() / "missing", 0);
  watcher.hasPolled(temporary.path() / "missing", 4, 4);
  EXPECT_EQ(watcher.nextDue(), 4 + 200);

  (void)watcher.watch(folder, 10);
  ASSERT_EQ(::rmdir(folder.c_str()), 0);
  EXPECT_THAT(watcher.changes(10).folders, IsEmpty());
  watcher.hasPolled(folder, 10, 1);
  EXPECT_EQ(watcher.nextDue(), 10 + kQuiet);
}

TEST(FolderWatcher, pollsManyFoldersNoMoreOfTheTimeThanOne) {
  FolderWatcher watcher;
  constexpr int kFolders = 2000;
  const auto folder = [](int i) { return FilePath("/missing/" + std::to_string(i)); };
  for (int i = 0; i < kFolders; ++i) (void)watcher.watch(folder(i), 0);
  EXPECT_EQ(watcher.polledFolders(), 2000U);
  (void)watcher.changes(5);
  constexpr double kTook = 1.0 / 512;
  for (int i = 0; i < kFolders; ++i) watcher.hasPolled(folder(i), 10, kTook);
  EXPECT_EQ(watcher.changes(10 + 50 * kTook * 1000).folders.size(), 1000U);
  EXPECT_EQ(watcher.changes(10 + 50 * kTook * 2000).folders.size(), 1000U);
  watcher.hasPolled(folder(1), 1000, 1e9);
  EXPECT_EQ(watcher.nextDue(), 1000 + FolderWatcher::kPausePerFolder * kFolders);
  for (int i = 1; i < kFolders; ++i) watcher.unwatch(folder(i));
  watcher.hasPolled(folder(0), 2000, 0.25);
  EXPECT_EQ(watcher.nextDue(), 2000 + 12.5);
}

TEST(FolderWatcher, tellsAFolderAtAMomentThatItWasAskedFor) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  watcher.tellAt(FilePath("/unknown"), 1);
  watcher.tellAt(temporary.path(), 20);
  watcher.tellAt(temporary.path(), 10);
  watcher.tellAt(temporary.path(), 30);
  EXPECT_EQ(watcher.nextDue(), 10);
  EXPECT_THAT(watcher.changes(10).folders, ElementsAre(temporary.path()));
  EXPECT_FALSE(watcher.nextDue());
}

TEST(FolderWatcher, hasNothingToPollOfOthers) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  watcher.hasPolled(temporary.path(), 1, 0);
  watcher.hasPolled(FilePath("/unknown"), 1, 0);
  EXPECT_FALSE(watcher.nextDue());
}

TEST(FolderWatcher, tellsThatAFolderWentAndPollsIt) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const FilePath link = temporary.link("link", folder);
  FolderWatcher watcher;
  (void)watcher.watch(folder, 0);
  (void)watcher.watch(link, 0);
  ASSERT_EQ(::rmdir(folder.c_str()), 0);
  EXPECT_THAT(toldAfter(watcher, 1), UnorderedElementsAre(folder, link));
  EXPECT_EQ(watcher.polledFolders(), 2U);
  watcher.hasPolled(folder, 2, 0);
  watcher.hasPolled(link, 2, 0);
  EXPECT_THAT(watcher.changes(7).folders, UnorderedElementsAre(folder, link));
}

TEST(FolderWatcher, tellsThatAFolderWasRenamedAndPollsIt) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  FolderWatcher watcher;
  (void)watcher.watch(folder, 0);
  rename(folder, temporary.path() / "other");
  EXPECT_THAT(toldAfter(watcher, 1), ElementsAre(folder));
  EXPECT_EQ(watcher.polledFolders(), 1U);
  (void)temporary.write("other/file");
  EXPECT_THAT(toldAfter(watcher, 2), IsEmpty());
}

TEST(FolderWatcher, watchesWhatTookTheFoldersPlace) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  FolderWatcher watcher;
  (void)watcher.watch(folder, 0);
  rename(folder, temporary.path() / "old");
  (void)temporary.mkdir("folder");
  EXPECT_THAT(toldAfter(watcher, 1), ElementsAre(folder));
  EXPECT_EQ(watcher.polledFolders(), 0U);
  (void)temporary.write("folder/file");
  EXPECT_THAT(toldAfter(watcher, 2), ElementsAre(folder));
}

TEST(FolderWatcher, pollsWhatIsOneTooManyUntilOneIsFree) {
  const TemporaryFolder temporary;
  const FilePath a = temporary.mkdir("a");
  const FilePath b = temporary.mkdir("b");
  FolderWatcher watcher(1);
  EXPECT_EQ(watcher.watch(a, 0), Watching::byEvents);
  EXPECT_EQ(watcher.watch(b, 0), Watching::byPolling);
  EXPECT_EQ(watcher.watchedFolders(), 2U);
  EXPECT_EQ(watcher.polledFolders(), 1U);
  EXPECT_THAT(watcher.changes(5).folders, ElementsAre(b));
  watcher.hasPolled(b, 5, 0);
  watcher.unwatch(a);
  EXPECT_THAT(watcher.changes(10).folders, ElementsAre(b));
  EXPECT_EQ(watcher.polledFolders(), 0U);
}

TEST(FolderWatcher, pollsWhatOthersChangeToo) {
  FolderWatcher watcher;
  const FilePath folder("/proc");
  EXPECT_EQ(watcher.watch(folder, 0), Watching::byPolling);
  EXPECT_THAT(watcher.changes(5).folders, ElementsAre(folder));
  EXPECT_EQ(watcher.polledFolders(), 1U);
}

TEST(FolderWatcher, pollsEverythingWithoutInotify) {
  const TemporaryFolder temporary;
  const auto watcher = [] {
    const WithoutDescriptors withoutDescriptors;
    return std::make_unique<FolderWatcher>();
  }();
  EXPECT_LT(watcher->descriptor(), 0);
  EXPECT_EQ(watcher->watch(temporary.path(), 0), Watching::byPolling);
  EXPECT_THAT(watcher->changes(5).folders, ElementsAre(temporary.path()));
  watcher->unwatch(temporary.path());
}

TEST(FolderWatcher, tellsThatEverythingMayHaveChangedWhenEventsWereLost) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  (void)watcher.watch(folder, 0);
  causeMoreEventsThanAreKept(temporary.path());
  rename(folder, temporary.path() / "old");
  (void)temporary.mkdir("folder");
  EXPECT_FALSE(watcher.changes(1).everythingMayHaveChanged);
  EXPECT_EQ(watcher.nextDue(), 1 + kQuiet);
  EXPECT_TRUE(watcher.changes(1 + kQuiet).everythingMayHaveChanged);
  EXPECT_FALSE(watcher.nextDue());
  EXPECT_EQ(watcher.polledFolders(), 0U);

  (void)temporary.write("folder/file");
  EXPECT_THAT(toldAfter(watcher, 2), ElementsAre(folder));
}

TEST(FolderWatcher, looksAtEverythingMoreAndMoreSeldomWhileEventsAreLost) {
  const TemporaryFolder temporary;
  FolderWatcher watcher;
  (void)watcher.watch(temporary.path(), 0);
  double now = 1;
  for (const double quiet : {kQuiet, 2 * kQuiet, 4 * kQuiet}) {
    causeMoreEventsThanAreKept(temporary.path());
    EXPECT_FALSE(watcher.changes(now).everythingMayHaveChanged);
    EXPECT_FALSE(watcher.changes(now + 0.99 * quiet).everythingMayHaveChanged);
    EXPECT_TRUE(watcher.changes(now + quiet).everythingMayHaveChanged);
    now += quiet;
  }
  now += 1000;
  causeMoreEventsThanAreKept(temporary.path());
  (void)watcher.changes(now);
  EXPECT_TRUE(watcher.changes(now + kQuiet).everythingMayHaveChanged);
}

TEST(FolderWatcher, pollsWhatDoesNotAnswerAndWatchesItAsSoonAsItDoes) {
  const TemporaryFolder temporary;
  const FilePath share = temporary.mkdir("share");
  bool answers = false;
  FolderWatcher watcher(10, [&answers](const FilePath&) { return answers; });
  EXPECT_EQ(watcher.watch(share, 1), Watching::byPolling);
  (void)temporary.write("share/a", "x");
  EXPECT_FALSE(isReadable(watcher.descriptor()));
  answers = true;
  EXPECT_THAT(watcher.changes(1 + kShortestPause).folders, ElementsAre(share));
  (void)temporary.write("share/b", "x");
  EXPECT_TRUE(isReadable(watcher.descriptor()));
}

}  // namespace pelmora::platform

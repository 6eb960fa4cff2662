#include "config/SourceCounter.h"

#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <thread>

namespace pelmora::config {

namespace {

class SourceCounterTest : public testing::Test {
 protected:
  SourceCounterTest() {
    for (const char* name : {"a/1.jpg", "a/2.jpg", "a/in/3.jpg", "a/in/deeper/4.jpg", "b/5.jpg"}) {
      temporary.mkdir(FilePath(name).parent().bytes());
      temporary.write(name, "picture");
    }
    temporary.mkdir("empty");
  }
  ~SourceCounterTest() override {
    counter.reset();
    cache::FolderCache::endSharedCache();
  }
  /// Steps the clock, a report at a time, until that is told.
  template <typename Condition>
  void runUntil(Condition isMet) {
    while (!isMet()) {
      fakes.scheduler.advanceBy(SourceCounter::kInterval);
      std::this_thread::yield();
    }
  }
  [[nodiscard]] FilePath folder(const char* name) const { return temporary.path() / name; }

  platform::TemporaryFolder temporary;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  std::map<FilePath, SourceCounter::Count> told;
  std::optional<SourceCounter> counter{
      std::in_place, services,
      [this](const FilePath& each, const SourceCounter::Count& count) { told[each] = count; }};
};

}  // namespace

TEST_F(SourceCounterTest, countsThePicturesOfAFolderAndOfThoseInIt) {
  counter->add({folder("a"), folder("b"), folder("empty")});
  runUntil([this] { return told[folder("empty")].isDone; });
  EXPECT_EQ(told[folder("a")].pictures, 4U);
  EXPECT_EQ(told[folder("b")].pictures, 1U);
  EXPECT_EQ(told[folder("empty")].pictures, 0U);
}

TEST_F(SourceCounterTest, countsAFolderInAFolderForBoth) {
  counter->add({folder("a"), folder("a/in")});
  runUntil([this] { return told[folder("a/in")].isDone; });
  EXPECT_EQ(told[folder("a")].pictures, 4U);
  EXPECT_EQ(told[folder("a/in")].pictures, 2U);
}

TEST_F(SourceCounterTest, countsWhatIsAddedLater) {
  counter->add({folder("b")});
  runUntil([this] { return told[folder("b")].isDone; });
  counter->add({folder("b"), folder("a")});
  runUntil([this] { return told[folder("a")].isDone && told[folder("b")].isDone; });
  EXPECT_EQ(told[folder("a")].pictures, 4U);
  EXPECT_EQ(told[folder("b")].pictures, 1U);
}

TEST_F(SourceCounterTest, tellsOfAFolderThatGoesAndComesBack) {
  counter->add({folder("b")});
  runUntil([this] { return told[folder("b")].isDone; });
  EXPECT_FALSE(told[folder("b")].isGone);
  std::filesystem::rename(folder("b").bytes(), folder("away").bytes());
  runUntil([this] { return told[folder("b")].isGone; });
  std::filesystem::rename(folder("away").bytes(), folder("b").bytes());
  runUntil([this] { return !told[folder("b")].isGone; });
  EXPECT_EQ(told[folder("b")].pictures, 1U);
}

TEST_F(SourceCounterTest, letsNobodyElseHearOfWhatItFinds) {
  int heard = 0;
  const auto token =
      fakes.notifications.addObserver("FirstFolderAdded", [&heard](const auto&) { ++heard; });
  counter->add({folder("a")});
  runUntil([this] { return told[folder("a")].isDone; });
  counter.reset();
  fakes.notifications.removeObserver(token);
  EXPECT_EQ(heard, 0);
}

}  // namespace pelmora::config

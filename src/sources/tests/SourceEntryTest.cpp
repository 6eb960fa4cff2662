#include "sources/SourceEntry.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::sources {

namespace {

class SourceEntryTest : public testing::Test {
 protected:
  plist::Dictionary complete() const {
    return {{"bookmark", platform::FakeBookmarks::bookmarkOf(folder)},
            {"enabled", false},
            {"chance", 12.5},
            {"days", 65},
            {"screens", "1,3"}};
  }

  SourceEntry resolve(const plist::Dictionary& stored) {
    const auto entry = resolveStoredEntry(stored, fakes.services());
    EXPECT_TRUE(entry.ok());
    return entry.ok() ? *entry : SourceEntry();
  }

  /// The one line that a value, which replaces the complete entry's, leads to.
  void expectDefaultFor(const std::string& key, plist::Value value) {
    fakes.log.clear();
    plist::Dictionary stored = complete();
    stored.insert_or_assign(key, std::move(value));
    (void)resolve(stored);
    const std::string line =
        "Pelmora: source " + folder.bytes() + " has no usable \"" + key + "\", the default is used";
    EXPECT_EQ(fakes.log.lines(), std::vector<std::string>{line});
  }

  platform::TemporaryFolder temporary;
  FilePath folder = temporary.mkdir("Pictures");
  platform::FakeServices fakes;
};

}  // namespace

TEST_F(SourceEntryTest, takesEveryValueOfAStoredEntry) {
  const SourceEntry entry = resolve(complete());
  EXPECT_FALSE(entry.enabled);
  EXPECT_EQ(entry.url, folder);
  EXPECT_EQ(entry.chance, 12.5);
  EXPECT_EQ(entry.priority(), 0.125);
  EXPECT_EQ(entry.days, 65U);
  EXPECT_EQ(entry.screens, "1,3");
  EXPECT_EQ(entry.identity, fakes.files.facts(folder, platform::FinalLink::follow)->identity);
  EXPECT_TRUE(fakes.log.lines().empty());
}

TEST_F(SourceEntryTest, isForEveryScreenAndDayWhenNothingIsSaid) {
  plist::Dictionary stored = complete();
  stored.erase("days");
  stored.erase("screens");
  const SourceEntry entry = resolve(stored);
  EXPECT_EQ(entry.days, 127U);
  EXPECT_EQ(entry.screens, "");
  EXPECT_TRUE(fakes.log.lines().empty());
}

TEST_F(SourceEntryTest, takesNumbersOfAnyKind) {
  plist::Dictionary stored = complete();
  stored.insert_or_assign("enabled", 1);
  stored.insert_or_assign("chance", 100);
  stored.insert_or_assign("days", 3.0);
  const SourceEntry entry = resolve(stored);
  EXPECT_TRUE(entry.enabled);
  EXPECT_EQ(entry.chance, 100.0);
  EXPECT_EQ(entry.days, 3U);
  stored.insert_or_assign("chance", 0);
  EXPECT_EQ(resolve(stored).chance, 0.0);
  EXPECT_TRUE(fakes.log.lines().empty());
}

TEST_F(SourceEntryTest, isOnWithFullChanceWhenThatIsMissing) {
  plist::Dictionary stored = complete();
  stored.erase("enabled");
  stored.erase("chance");
  const SourceEntry entry = resolve(stored);
  EXPECT_TRUE(entry.enabled);
  EXPECT_EQ(entry.chance, 100.0);
  EXPECT_EQ(fakes.log.lines().size(), 2U);
}

TEST_F(SourceEntryTest, logsEachValueThatIsOfNoUse) {
  expectDefaultFor("enabled", "yes");
  expectDefaultFor("chance", "100");
  expectDefaultFor("chance", -1.0);
  expectDefaultFor("chance", std::numeric_limits<double>::quiet_NaN());
  expectDefaultFor("chance", std::numeric_limits<double>::infinity());
  expectDefaultFor("days", plist::Array{});
  expectDefaultFor("screens", 3);
}

TEST_F(SourceEntryTest, saysWhyAnEntryCannotBeResolved) {
  const auto services = fakes.services();
  EXPECT_EQ(resolveStoredEntry("text", services).error().message, "the source is no dictionary");
  plist::Dictionary stored = complete();
  stored.insert_or_assign("bookmark", "text");
  EXPECT_EQ(resolveStoredEntry(stored, services).error().message, "the source has no bookmark");
  stored.erase("bookmark");
  EXPECT_EQ(resolveStoredEntry(stored, services).error().message, "the source has no bookmark");
  fakes.bookmarks.failToResolve(folder);
  EXPECT_EQ(resolveStoredEntry(complete(), services).error().message, folder.bytes() + " is gone");
}

TEST_F(SourceEntryTest, hasNoIdentityWhileTheFolderIsAway) {
  plist::Dictionary stored = complete();
  stored.insert_or_assign("bookmark", platform::FakeBookmarks::bookmarkOf(folder / "away"));
  EXPECT_FALSE(resolve(stored).identity);
}

TEST_F(SourceEntryTest, comesBackFromItsStoredForm) {
  const SourceEntry entry = resolve(complete());
  const plist::Dictionary stored = storedForm(entry, fakes.bookmarks);
  EXPECT_EQ(plist::Value(stored), plist::Value(complete()));
  fakes.bookmarks.failToMake(folder);
  EXPECT_FALSE(storedForm(entry, fakes.bookmarks).contains("bookmark"));
  EXPECT_EQ(plist::Value(storedForm(entry, platform::FakeBookmarks::bookmarkOf(folder))),
            plist::Value(complete()));
}

TEST_F(SourceEntryTest, storesAChanceAsTheKindOfNumberThatItCameAs) {
  for (const plist::Value& chance :
       {plist::Value(100), plist::Value(0), plist::Value(100.0), plist::Value(55.5)}) {
    plist::Dictionary stored = complete();
    stored.insert_or_assign("chance", chance);
    EXPECT_EQ(storedForm(resolve(stored), fakes.bookmarks).at("chance"), chance);
  }
  EXPECT_EQ(storedForm(SourceEntry(), fakes.bookmarks).at("chance"), plist::Value(100));
}

TEST_F(SourceEntryTest, storesAChanceThatIsNoIntegerAsARealNumber) {
  for (const double chance : {12.5, 1e300}) {
    SourceEntry entry;
    entry.chance = chance;
    EXPECT_EQ(storedForm(entry, fakes.bookmarks).at("chance"), plist::Value(chance));
  }
}

TEST_F(SourceEntryTest, isThePicturesFolderByDefault) {
  fakes.userFolders.picturesFolders = {folder, temporary.mkdir("Other")};
  const plist::Dictionary expected{{"enabled", true},
                                   {"days", 127},
                                   {"bookmark", platform::FakeBookmarks::bookmarkOf(folder)},
                                   {"chance", 100},
                                   {"screens", ""}};
  EXPECT_EQ(plist::Value(makeDefaultSources(fakes.userFolders, fakes.bookmarks)),
            plist::Value(plist::Array{expected}));
}

TEST_F(SourceEntryTest, isTheApplicationsFolderByDefaultWithoutAPicturesFolder) {
  const plist::Array sources = makeDefaultSources(fakes.userFolders, fakes.bookmarks);
  ASSERT_EQ(sources.size(), 1U);
  const auto* stored = sources.front().get<plist::Dictionary>();
  ASSERT_TRUE(stored);
  EXPECT_EQ(stored->at("bookmark"),
            plist::Value(platform::FakeBookmarks::bookmarkOf(FilePath("/Applications"))));
}

}  // namespace pelmora::sources

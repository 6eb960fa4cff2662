#include "sources/SourceEntries.h"

#include <gtest/gtest.h>

namespace pelmora::sources {

namespace {

SourceEntry entry(const char* path, double chance, const char* screens, std::uint64_t days) {
  return {.enabled = true,
          .url = FilePath(path),
          .chance = chance,
          .screens = screens,
          .days = days,
          .identity = std::nullopt};
}

SourceEntry entry(std::uint64_t inode, bool enabled) {
  return {.enabled = enabled,
          .url = FilePath(),
          .screens = "",
          .identity = platform::FileIdentity{1, inode}};
}

}  // namespace

TEST(SourceEntries, letTheLongestPathDecide) {
  const SourceEntries entries({entry("/p", 10, "1", 1), entry("/p/q", 50, "2", 2)});
  EXPECT_EQ(entries.valuesForFolder("/p").days, 1U);
  EXPECT_EQ(entries.valuesForFolder("/p/x").days, 1U);
  const FolderValues nested = entries.valuesForFolder("/p/q/r");
  EXPECT_EQ(nested.days, 2U);
  EXPECT_EQ(nested.priority, 0.5);
  EXPECT_EQ(nested.screens, "2");
}

TEST(SourceEntries, letTheFirstOfEquallyLongPathsDecide) {
  const SourceEntries entries({entry("/p", 10, "1", 1), entry("/p", 20, "2", 2)});
  EXPECT_EQ(entries.valuesForFolder("/p/x").days, 1U);
}

TEST(SourceEntries, compareLettersNotFolders) {
  const SourceEntries entries({entry("/a/Pic", 10, "", 3)});
  EXPECT_EQ(entries.valuesForFolder("/a/Pictures").days, 3U);
  EXPECT_EQ(entries.valuesForFolder("/a/Pi").days, 0U);
}

TEST(SourceEntries, giveFoldersOutsideNoDay) {
  const FolderValues values = SourceEntries().valuesForFolder("/elsewhere");
  EXPECT_EQ(values.days, 0U);
  EXPECT_EQ(values.priority, 1.0);
  EXPECT_EQ(values.screens, "");
}

TEST(SourceEntries, askTheFirstEntryThatIsTheFolder) {
  const SourceEntries entries({entry(5, false), entry(5, true), entry(6, true)});
  EXPECT_FALSE(entries.isEnabled({1, 5}));
  EXPECT_TRUE(entries.isEnabled({1, 6}));
  EXPECT_TRUE(entries.isEnabled({1, 7}));
  EXPECT_TRUE(entries.isEnabled({2, 5}));
}

TEST(SourceEntries, countAnEntryWithoutIdentityAsNoFolder) {
  SourceEntry away = entry("/away", 100, "", 127);
  away.enabled = false;
  EXPECT_TRUE(SourceEntries({away}).isEnabled({0, 0}));
}

}  // namespace pelmora::sources

#include "platform/fake/FakeBookmarks.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeBookmarks, resolvesWhatItMade) {
  const FakeBookmarks bookmarks;
  const FilePath folder("/not there/\xE9");
  EXPECT_EQ(bookmarks.resolve(bookmarks.make(folder).value()).value(), folder);
  EXPECT_EQ(bookmarks.make(folder).value(), FakeBookmarks::bookmarkOf(folder));
  EXPECT_FALSE(bookmarks.resolve({}).ok());
}

TEST(FakeBookmarks, failsForTheFoldersItIsToldTo) {
  FakeBookmarks bookmarks;
  bookmarks.failToMake(FilePath("/a"));
  bookmarks.failToResolve(FilePath("/b"));
  EXPECT_FALSE(bookmarks.make(FilePath("/a")).ok());
  EXPECT_TRUE(bookmarks.resolve(FakeBookmarks::bookmarkOf(FilePath("/a"))).ok());
  EXPECT_TRUE(bookmarks.make(FilePath("/b")).ok());
  EXPECT_FALSE(bookmarks.resolve(FakeBookmarks::bookmarkOf(FilePath("/b"))).ok());
}

}  // namespace pelmora::platform

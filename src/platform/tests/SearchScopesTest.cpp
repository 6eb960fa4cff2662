#include "platform/SearchScopes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SearchScopes, areEmptyAtFirst) {
  EXPECT_TRUE(SearchScopes().empty());
  EXPECT_THAT(SearchScopes().all(), IsEmpty());
}

TEST(SearchScopes, leaveACopyAsItIsWhenMoreIsAppended) {
  SearchScopes scopes({"/a"});
  const SearchScopes before = scopes;
  scopes.append("/b");
  EXPECT_THAT(scopes.all(), ElementsAre("/a", "/b"));
  EXPECT_THAT(before.all(), ElementsAre("/a"));
}

TEST(SearchScopes, partWhereTwoCopiesGoDifferentWays) {
  const SearchScopes common({"/a"});
  SearchScopes one = common;
  SearchScopes other = common;
  one.append("/one");
  other.append("/other");
  EXPECT_THAT(one.all(), ElementsAre("/a", "/one"));
  EXPECT_THAT(other.all(), ElementsAre("/a", "/other"));
  EXPECT_FALSE(other.continues(one));
  EXPECT_FALSE(one.continues(other));
}

TEST(SearchScopes, continueWhatTheyWereCopiedFrom) {
  const SearchScopes before({"/a"});
  SearchScopes after = before;
  EXPECT_TRUE(after.continues(before));
  after.append("/b");
  EXPECT_TRUE(after.continues(before));
  EXPECT_FALSE(before.continues(after));
  EXPECT_FALSE(SearchScopes({"/a"}).continues(before));
}

TEST(SearchScopes, areEqualByTheirFolders) {
  SearchScopes built;
  built.append("/a");
  EXPECT_EQ(built, SearchScopes({"/a"}));
  EXPECT_EQ(built[0], "/a");
  EXPECT_EQ(built.size(), 1U);
}

}  // namespace pelmora::platform

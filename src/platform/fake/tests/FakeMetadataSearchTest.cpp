#include "platform/fake/FakeMetadataSearch.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeMetadataSearch, remembersTheQueriesThatItMade) {
  FakeMetadataSearch search;
  EXPECT_EQ(search.lastQuery(), nullptr);
  const auto query = search.makeQuery();
  EXPECT_EQ(search.lastQuery(), query.get());
  EXPECT_EQ(search.queryCount(), 1);
  EXPECT_EQ(search.progress().foldersToDo, 0U);
}

}  // namespace pelmora::platform

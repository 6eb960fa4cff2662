#include "platform/fake/FakeMetadataQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeMetadataQuery, writesDownWhatItIsToldInOrder) {
  FakeMetadataQuery query;
  query.setPredicate(predicate::Fixed{false});
  query.setSearchScopes(SearchScopes({"/a", "/b"}));
  query.start();
  EXPECT_TRUE(query.isStarted());
  EXPECT_EQ(query.predicate(), predicate::Predicate(predicate::Fixed{false}));
  EXPECT_EQ(query.searchScopes(), SearchScopes({"/a", "/b"}));
  query.waitUntilGathered();
  query.disableUpdates();
  query.enableUpdates();
  query.stop();
  EXPECT_FALSE(query.isStarted());
  query.setSearchScopes({});
  EXPECT_THAT(query.calls(), testing::ElementsAre("setPredicate", "setSearchScopes /a /b", "start",
                                                  "waitUntilGathered", "disableUpdates",
                                                  "enableUpdates", "stop", "setSearchScopes"));
}

}  // namespace pelmora::platform

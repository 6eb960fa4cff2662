#include "platform/fake/FakeMetadataQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeMetadataQuery, writesDownWhatItIsToldInOrder) {
  FakeMetadataQuery query;
  query.setSearchScopes({"/a", "/b"});
  query.start();
  EXPECT_TRUE(query.isStarted());
  EXPECT_THAT(query.searchScopes(), testing::ElementsAre("/a", "/b"));
  query.stop();
  EXPECT_FALSE(query.isStarted());
  query.setSearchScopes({});
  EXPECT_THAT(query.calls(),
              testing::ElementsAre("setSearchScopes /a /b", "start", "stop", "setSearchScopes"));
}

}  // namespace pelmora::platform

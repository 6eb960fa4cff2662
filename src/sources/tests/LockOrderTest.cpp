#include "sources/LockOrder.h"

#include <gtest/gtest.h>

#include <thread>

namespace pelmora::sources {

TEST(LockOrder, takesTheRecordsBeforeTheWeights) {
  LockOrder order;
  EXPECT_EQ(order.objectionTo(LockPlace::items), nullptr);
  order.took(LockPlace::items);
  EXPECT_EQ(order.objectionTo(LockPlace::weights), nullptr);
  order.took(LockPlace::weights);
  EXPECT_EQ(order.heldCount(), 2U);
}

TEST(LockOrder, objectsToTheOtherOrder) {
  LockOrder order;
  order.took(LockPlace::weights);
  EXPECT_STREQ(order.objectionTo(LockPlace::items), "the records are locked after the weights");
  order.gaveBack(LockPlace::weights);
  EXPECT_EQ(order.objectionTo(LockPlace::items), nullptr);
}

TEST(LockOrder, objectsToALockThatTheThreadHolds) {
  for (const LockPlace place : {LockPlace::items, LockPlace::weights, LockPlace::scopes}) {
    LockOrder order;
    order.took(place);
    EXPECT_STREQ(order.objectionTo(place), "a lock is taken twice by one thread");
  }
}

TEST(LockOrder, holdsTheLockOfTheScopesAlone) {
  LockOrder order;
  order.took(LockPlace::scopes);
  EXPECT_STREQ(order.objectionTo(LockPlace::items), "a lock is taken while the scopes are locked");
  EXPECT_STREQ(order.objectionTo(LockPlace::weights),
               "a lock is taken while the scopes are locked");
  order.gaveBack(LockPlace::scopes);
  order.took(LockPlace::items);
  EXPECT_STREQ(order.objectionTo(LockPlace::scopes),
               "the scopes are locked while another lock is held");
}

TEST(LockOrder, forgetsTheLastOfALockThatIsGivenBack) {
  LockOrder order;
  order.took(LockPlace::items);
  order.took(LockPlace::weights);
  order.gaveBack(LockPlace::items);
  EXPECT_EQ(order.heldCount(), 1U);
  EXPECT_NE(order.objectionTo(LockPlace::items), nullptr);
  order.gaveBack(LockPlace::weights);
  order.gaveBack(LockPlace::weights);
  EXPECT_EQ(order.heldCount(), 0U);
}

TEST(LockOrder, hasNoPlaceForOtherLocks) {
  LockOrder order;
  order.took(LockPlace::scopes);
  EXPECT_EQ(order.objectionTo(LockPlace::none), nullptr);
  order.took(LockPlace::none);
  EXPECT_EQ(order.heldCount(), 1U);
}

TEST(LockOrder, isEachThreadsOwn) {
  LockOrder::ofThisThread().took(LockPlace::items);
  std::thread([] { EXPECT_EQ(LockOrder::ofThisThread().heldCount(), 0U); }).join();
  LockOrder::ofThisThread().gaveBack(LockPlace::items);
  EXPECT_EQ(LockOrder::ofThisThread().heldCount(), 0U);
}

}  // namespace pelmora::sources

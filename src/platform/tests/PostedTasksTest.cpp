#include "platform/PostedTasks.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace pelmora::platform {

TEST(PostedTasks, runsFirstInFirstOut) {
  PostedTasks tasks;
  std::string ran;
  tasks.post([&] { ran += 'a'; });
  tasks.post([&] { ran += 'b'; });
  EXPECT_TRUE(tasks.runBatch());
  EXPECT_EQ(ran, "ab");
  EXPECT_FALSE(tasks.runBatch());
}

TEST(PostedTasks, leavesWhatATaskPostsToTheNextBatch) {
  PostedTasks tasks;
  std::string ran;
  tasks.post([&] {
    ran += 'a';
    tasks.post([&] { ran += 'c'; });
  });
  tasks.post([&] { ran += 'b'; });
  EXPECT_TRUE(tasks.runBatch());
  EXPECT_EQ(ran, "ab");
  EXPECT_TRUE(tasks.runBatch());
  EXPECT_EQ(ran, "abc");
}

TEST(PostedTasks, letsATaskRunThoseAfterIt) {
  PostedTasks tasks;
  std::string ran;
  tasks.post([&] {
    ran += '(';
    EXPECT_TRUE(tasks.runBatch());
    ran += ')';
  });
  tasks.post([&] { ran += 'a'; });
  EXPECT_TRUE(tasks.runBatch());
  EXPECT_EQ(ran, "(a)");
}

TEST(PostedTasks, endsAWaitByATaskOrAWakeUp) {
  PostedTasks tasks;
  tasks.wake();
  tasks.wait();  // woken before: returns at once, and forgets it
  std::thread poster([&tasks] { tasks.post([] {}); });
  tasks.wait();
  EXPECT_TRUE(tasks.runBatch());
  poster.join();
  std::thread waker([&tasks] { tasks.wake(); });
  tasks.wait();
  waker.join();
  EXPECT_FALSE(tasks.runBatch());
}

TEST(PostedTasks, endsALimitedWaitAtItsLimit) {
  PostedTasks tasks;
  tasks.waitFor(-1);
  tasks.waitFor(0.001);
  EXPECT_FALSE(tasks.runBatch());
}

TEST(PostedTasks, dropsWhatIsThereAndWhatFollowsWhenItIsClosed) {
  PostedTasks tasks;
  bool ran = false;
  tasks.post([&ran] { ran = true; });
  tasks.close();
  tasks.post([&ran] { ran = true; });
  EXPECT_FALSE(tasks.runBatch());
  EXPECT_FALSE(ran);
}

TEST(PostedTasks, destroysATaskOnceItHasRun) {
  PostedTasks tasks;
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = held;
  tasks.post([held = std::move(held)] {});
  tasks.post([&watched] { EXPECT_TRUE(watched.expired()); });
  tasks.runBatch();
}

}  // namespace pelmora::platform

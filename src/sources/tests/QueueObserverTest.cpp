#include "sources/QueueObserver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace pelmora::sources {

using platform::Notification;
using platform::NotificationCenter;

TEST(QueueObserver, handlesOnAQueueOfItsOwnOneAfterAnother) {
  NotificationCenter center;
  std::vector<std::int64_t> handled;
  std::thread::id thread;
  const QueueObserver observer(center, "news", "queue for news", [&](const Notification& news) {
    handled.push_back(news.object.integerValue());
    thread = std::this_thread::get_id();
  });
  for (std::int64_t i = 0; i < 3; ++i) center.post({"news", i, {}});
  center.post({"other news", 7, {}});
  observer.queue().waitUntilAllOperationsAreFinished();
  EXPECT_EQ(handled, (std::vector<std::int64_t>{0, 1, 2}));
  EXPECT_NE(thread, std::this_thread::get_id());
  EXPECT_EQ(observer.queue().config().name, "queue for news");
  EXPECT_EQ(observer.queue().config().maxConcurrentOperations, 1U);
}

TEST(QueueObserver, dropsWhatWaitsAndWaitsForWhatRunsWhenItEnds) {
  NotificationCenter center;
  platform::OperationQueue* queue = nullptr;
  std::promise<void> bothArePosted;
  std::promise<void> isRunning;
  std::atomic<int> handled = 0;
  auto observer = std::make_unique<QueueObserver>(center, "news", "queue", [&](const auto&) {
    bothArePosted.get_future().wait();
    isRunning.set_value();
    while (queue->operationCount() > 1) std::this_thread::yield();  // until the other is dropped
    ++handled;
  });
  queue = &observer->queue();
  center.post({"news", 1, {}});
  center.post({"news", 2, {}});
  bothArePosted.set_value();
  isRunning.get_future().wait();
  observer.reset();
  EXPECT_EQ(handled, 1);
  center.post({"news", 3, {}});
  EXPECT_EQ(handled, 1);
}

TEST(QueueObserver, endsWhileAnotherThreadPosts) {
  NotificationCenter center;
  std::atomic<bool> isOver = false;
  std::thread poster([&] {
    while (!isOver) center.post({"news", 1, {}});
  });
  for (int i = 0; i < 100; ++i) {
    auto alive = std::make_unique<int>(1);
    const QueueObserver observer(center, "news", "queue", [&alive](const auto&) { ++*alive; });
  }
  isOver = true;
  poster.join();
}

}  // namespace pelmora::sources

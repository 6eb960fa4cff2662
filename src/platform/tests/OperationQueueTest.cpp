#include "platform/OperationQueue.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>
#include <future>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace pelmora::platform {

namespace {

class FunctionOperation : public Operation {
 public:
  explicit FunctionOperation(std::function<void(const Operation&)> work) : _work(std::move(work)) {}
  void main() override { _work(*this); }

 private:
  std::function<void(const Operation&)> _work;
};

std::shared_ptr<Operation> operation(std::function<void()> work) {
  return std::make_shared<FunctionOperation>(
      [work = std::move(work)](const Operation&) { work(); });
}

/// Holds operations up until it is opened.
class Gate {
 public:
  void pass() { _opened.wait(); }
  void open() { _open.set_value(); }

 private:
  std::promise<void> _open;
  std::shared_future<void> _opened{_open.get_future()};
};

}  // namespace

TEST(OperationQueue, runsFirstInFirstOut) {
  OperationQueue queue({});
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) queue.addOperation(operation([&order, i] { order.push_back(i); }));
  queue.waitUntilAllOperationsAreFinished();
  ASSERT_EQ(order.size(), 100U);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, runsAsManyAtOnceAsItMayAndNoMore) {
  OperationQueue queue({.maxConcurrentOperations = 3});
  Gate gate;
  std::atomic<int> running{0};
  std::atomic<int> most{0};
  std::promise<void> threeRun;
  for (int i = 0; i < 12; ++i) {
    queue.addOperation(operation([&] {
      const int now = ++running;
      int seen = most;
      while (now > seen && !most.compare_exchange_weak(seen, now)) {
      }
      if (now == 3 && seen < 3) threeRun.set_value();
      gate.pass();
      --running;
    }));
  }
  threeRun.get_future().wait();
  EXPECT_EQ(queue.operationCount(), 12U);
  gate.open();
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(most, 3);
}

TEST(OperationQueue, takesAWidthOfNoneForOne) {
  OperationQueue queue({.maxConcurrentOperations = 0});
  bool ran = false;
  queue.addOperation(operation([&ran] { ran = true; }));
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(ran);
}

TEST(OperationQueue, letsAnOperationAddToItsOwnQueue) {
  OperationQueue queue({.maxConcurrentOperations = 2});
  std::atomic<int> ran{0};
  std::function<void(int)> addTree = [&](int depth) {
    queue.addOperation(operation([&, depth] {
      ++ran;
      if (depth == 0) return;
      addTree(depth - 1);
      addTree(depth - 1);
    }));
  };
  addTree(6);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(ran, 127);
}

TEST(OperationQueue, startsNothingWhileSuspended) {
  OperationQueue queue({.maxConcurrentOperations = 2});
  std::atomic<int> ran{0};
  queue.setSuspended(true);
  EXPECT_TRUE(queue.isSuspended());
  for (int i = 0; i < 10; ++i) queue.addOperation(operation([&ran] { ++ran; }));
  EXPECT_EQ(queue.operationCount(), 10U);
  EXPECT_EQ(ran, 0);
  queue.setSuspended(false);
  EXPECT_FALSE(queue.isSuspended());
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(ran, 10);
}

TEST(OperationQueue, finishesWhatRunsWhenItIsSuspended) {
  OperationQueue queue({});
  Gate gate;
  std::promise<void> started;
  std::promise<void> finished;
  queue.addOperation(operation([&] {
    started.set_value();
    gate.pass();
    finished.set_value();
  }));
  std::atomic<bool> secondRan{false};
  queue.addOperation(operation([&] { secondRan = true; }));
  started.get_future().wait();
  queue.setSuspended(true);
  gate.open();
  finished.get_future().wait();
  EXPECT_FALSE(secondRan);
  EXPECT_GE(queue.operationCount(), 1U);
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(secondRan);
}

TEST(OperationQueue, dropsQueuedOperationsAndFlagsRunningOnesWhenCancelled) {
  OperationQueue queue({});
  Gate gate;
  std::promise<void> started;
  std::atomic<bool> sawTheFlag{false};
  queue.addOperation(std::make_shared<FunctionOperation>([&](const Operation& self) {
    EXPECT_FALSE(self.isCancelled());
    started.set_value();
    gate.pass();
    sawTheFlag = self.isCancelled();
  }));
  std::atomic<bool> secondRan{false};
  const auto second = operation([&] { secondRan = true; });
  queue.addOperation(second);
  started.get_future().wait();
  queue.cancelAllOperations();
  EXPECT_EQ(queue.operationCount(), 1U);
  EXPECT_TRUE(second->isCancelled());
  gate.open();
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(sawTheFlag);
  EXPECT_FALSE(secondRan);
}

TEST(OperationQueue, runsWhatIsAddedAfterACancel) {
  OperationQueue queue({});
  queue.cancelAllOperations();
  bool ran = false;
  queue.addOperation(operation([&ran] { ran = true; }));
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(ran);
}

TEST(OperationQueue, neverRunsAnOperationCancelledInTheQueue) {
  OperationQueue queue({});
  queue.setSuspended(true);
  bool ran = false;
  const auto cancelled = operation([&ran] { ran = true; });
  queue.addOperation(cancelled);
  cancelled->cancel();
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_FALSE(ran);
}

TEST(OperationQueue, endsAWaitForASuspendedQueueByCancelling) {
  OperationQueue queue({});
  queue.setSuspended(true);
  queue.addOperation(operation([] {}));
  std::thread canceller([&queue] { queue.cancelAllOperations(); });
  queue.waitUntilAllOperationsAreFinished();
  canceller.join();
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, cancelsAndWaitsForTheRunningOnesAtItsEnd) {
  std::promise<void> started;
  std::atomic<bool> ended{false};
  std::atomic<bool> laterRan{false};
  {
    OperationQueue queue({});
    queue.addOperation(std::make_shared<FunctionOperation>([&](const Operation& self) {
      started.set_value();
      while (!self.isCancelled()) std::this_thread::yield();
      queue.addOperation(operation([&] { laterRan = true; }));
      ended = true;
    }));
    queue.addOperation(operation([&] { laterRan = true; }));
    started.get_future().wait();
  }
  EXPECT_TRUE(ended);
  EXPECT_FALSE(laterRan);
}

TEST(OperationQueue, letsGoOfAnOperationBeforeItCountsAsFinished) {
  OperationQueue queue({.maxConcurrentOperations = 2});
  for (int i = 0; i < 50; ++i) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    queue.addOperation(operation([held = std::move(held)] {}));
    queue.waitUntilAllOperationsAreFinished();
    ASSERT_TRUE(watched.expired());
  }
}

TEST(OperationQueue, destroysOperationsWithoutItsLock) {
  OperationQueue queue({});
  const auto asksTheQueue = [&queue] {
    return std::shared_ptr<void>(nullptr, [&queue](void*) { (void)queue.operationCount(); });
  };
  queue.addOperation(operation([held = asksTheQueue()] {}));
  queue.waitUntilAllOperationsAreFinished();
  queue.setSuspended(true);
  queue.addOperation(operation([held = asksTheQueue()] {}));
  queue.cancelAllOperations();
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, worksInTheBackgroundAtTheLowestPriority) {
  OperationQueue queue({.qualityOfService = QualityOfService::background});
  int policy = -1;
  int niceness = 0;
  long inputOutputPriority = 0;
  queue.addOperation(operation([&] {
    policy = sched_getscheduler(0);
    niceness = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    inputOutputPriority = syscall(SYS_ioprio_get, 1, 0);
  }));
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(policy, SCHED_BATCH);
  EXPECT_EQ(niceness, 19);
  EXPECT_EQ(inputOutputPriority >> 13, 3);
}

TEST(OperationQueue, leavesThePriorityOfOtherThreadsAlone) {
  const int nicenessBefore = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
  OperationQueue background({.qualityOfService = QualityOfService::background});
  background.addOperation(operation([] {}));
  background.waitUntilAllOperationsAreFinished();
  OperationQueue standard({});
  int niceness = -1;
  standard.addOperation(operation(
      [&niceness] { niceness = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())); }));
  standard.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(niceness, nicenessBefore);
  EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), nicenessBefore);
}

TEST(OperationQueue, runsOperationsWhereTheyAreAddedWhenNoThreadCanBeHad) {
  const std::thread::id here = std::this_thread::get_id();
  const auto startsNone = [](const std::function<void()>&) -> std::thread {
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  };
  OperationQueue queue({.maxConcurrentOperations = 2, .startThread = startsNone});
  std::vector<int> order;
  queue.addOperation(operation([&] {
    EXPECT_EQ(std::this_thread::get_id(), here);
    // Not within another: a tree of folders would be as deep on the stack.
    queue.addOperation(operation([&order] { order.push_back(2); }));
    order.push_back(1);
  }));
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  queue.setSuspended(true);
  queue.addOperation(operation([&order] { order.push_back(3); }));
  EXPECT_EQ(order.size(), 2U);
  queue.setSuspended(false);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_EQ(queue.operationCount(), 0U);
}

TEST(OperationQueue, leavesTheRestToAThreadAsSoonAsOneCanBeHad) {
  int refusals = 2;
  const auto startsLater = [&refusals](std::function<void()> work) {
    if (refusals-- > 0) {
      throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }
    return std::thread(std::move(work));
  };
  OperationQueue queue({.startThread = startsLater});
  std::vector<std::thread::id> ran;
  const auto notes = [&ran] {
    return operation([&ran] { ran.push_back(std::this_thread::get_id()); });
  };
  queue.setSuspended(true);
  for (int i = 0; i < 3; ++i) queue.addOperation(notes());
  queue.setSuspended(false);
  queue.waitUntilAllOperationsAreFinished();
  ASSERT_EQ(ran.size(), 3U);
  EXPECT_EQ(ran.front(), std::this_thread::get_id());
  EXPECT_NE(ran.back(), std::this_thread::get_id());
}

}  // namespace pelmora::platform

#include "platform/NotificationCenter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace pelmora::platform {

TEST(NotificationCenter, callsTheObserversOfANameInOrderBeforeItReturns) {
  NotificationCenter center;
  std::string calls;
  center.addObserver("a", [&](const Notification&) { calls += '1'; });
  center.addObserver("b", [&](const Notification&) { calls += 'b'; });
  center.addObserver("a", [&](const Notification&) { calls += '2'; });
  center.post({"a", {}, {}});
  EXPECT_EQ(calls, "12");
  center.post({"c", {}, {}});
  EXPECT_EQ(calls, "12");
}

TEST(NotificationCenter, handsOnObjectAndUserInfoOnThePostingThread) {
  NotificationCenter center;
  std::thread::id calledOn;
  plist::Value object;
  std::size_t entries = 0;
  center.addObserver("a", [&](const Notification& notification) {
    calledOn = std::this_thread::get_id();
    object = notification.object;
    entries = notification.userInfo.size();
  });
  std::thread::id postedOn;
  std::thread([&] {
    postedOn = std::this_thread::get_id();
    center.post({"a", 3, {{"key", "value"}}});
  }).join();
  EXPECT_EQ(calledOn, postedOn);
  EXPECT_EQ(object, plist::Value(3));
  EXPECT_EQ(entries, 1U);
}

TEST(NotificationCenter, forgetsARemovedObserver) {
  NotificationCenter center;
  int calls = 0;
  const auto token = center.addObserver("a", [&](const Notification&) { ++calls; });
  center.removeObserver(token);
  center.removeObserver(token);
  center.post({"a", {}, {}});
  EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, letsAnObserverRemoveItselfAndThoseAfterIt) {
  NotificationCenter center;
  std::string calls;
  NotificationCenter::Token first{};
  NotificationCenter::Token second{};
  first = center.addObserver("a", [&](const Notification&) {
    calls += '1';
    center.removeObserver(second);
    center.removeObserver(first);
  });
  second = center.addObserver("a", [&](const Notification&) { calls += '2'; });
  center.addObserver("a", [&](const Notification&) { calls += '3'; });
  center.post({"a", {}, {}});
  center.post({"a", {}, {}});
  EXPECT_EQ(calls, "133");
}

TEST(NotificationCenter, callsAnObserverAddedDuringAPostFromTheNextOn) {
  NotificationCenter center;
  std::string calls;
  const auto adder = center.addObserver("a", [&](const Notification&) {
    calls += '1';
    center.addObserver("a", [&](const Notification&) { calls += '2'; });
  });
  center.post({"a", {}, {}});
  EXPECT_EQ(calls, "1");
  center.removeObserver(adder);
  center.post({"a", {}, {}});
  EXPECT_EQ(calls, "12");
}

TEST(NotificationCenter, letsAnObserverPost) {
  NotificationCenter center;
  std::string calls;
  center.addObserver("outer", [&](const Notification&) {
    calls += '(';
    center.post({"inner", {}, {}});
    calls += ')';
  });
  center.addObserver("inner", [&](const Notification&) { calls += 'i'; });
  center.post({"outer", {}, {}});
  EXPECT_EQ(calls, "(i)");
}

TEST(NotificationCenter, servesSeveralThreadsAtOnce) {
  NotificationCenter center;
  std::atomic<int> calls{0};
  center.addObserver("a", [&](const Notification&) { ++calls; });
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&center] {
      for (int turn = 0; turn < 50; ++turn) {
        const auto token = center.addObserver("b", [](const Notification&) {});
        center.post({"a", {}, {}});
        center.removeObserver(token);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(calls, 200);
}

}  // namespace pelmora::platform

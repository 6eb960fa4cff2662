#include "platform/linux/StallGuard.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace pelmora::platform {

namespace {

constexpr std::chrono::milliseconds kLong{20'000};
constexpr std::chrono::milliseconds kShort{1};

/// A disk that answers when it is told to.
class Disk {
 public:
  [[nodiscard]] std::function<int()> work() const {
    return [answer = _answer] { return answer.get(); };
  }
  void answer(int value) { _promise.set_value(value); }

 private:
  std::promise<int> _promise;
  std::shared_future<int> _answer = _promise.get_future().share();
};

}  // namespace

TEST(StallGuard, givesWhatEndsInTime) {
  StallGuard guard(kLong);
  EXPECT_EQ(guard.wait("disk", [] { return 7; }), 7);
  EXPECT_EQ(guard.wait("disk", [] { return std::string("text"); }), "text");
  EXPECT_FALSE(guard.isStalled("disk"));
}

TEST(StallGuard, worksOnAnotherThread) {
  StallGuard guard(kLong);
  EXPECT_NE(guard.wait("disk", [] { return std::this_thread::get_id(); }),
            std::this_thread::get_id());
}

TEST(StallGuard, waitsOnceForWhatHangs) {
  StallGuard guard(kShort);
  Disk disk;
  EXPECT_EQ(guard.wait("disk", disk.work()), std::nullopt);
  EXPECT_TRUE(guard.isStalled("disk"));
  bool isBegun = false;
  EXPECT_EQ(guard.wait("disk", [&isBegun] { return isBegun = true; }), std::nullopt);
  EXPECT_FALSE(isBegun);
  disk.answer(1);
}

TEST(StallGuard, keepsNothingElseFromBeingDone) {
  StallGuard guard(kShort);
  Disk disk;
  EXPECT_EQ(guard.wait("disk", disk.work()), std::nullopt);
  // On a thread that may be slow to start.
  while (guard.wait("other", [] { return 1; }) != 1) {
    while (guard.isStalled("other")) std::this_thread::yield();
  }
  disk.answer(1);
}

TEST(StallGuard, goesOnWithWhatAnswersAgain) {
  StallGuard guard(kShort);
  Disk disk;
  EXPECT_EQ(guard.wait("disk", disk.work()), std::nullopt);
  disk.answer(1);
  while (guard.isStalled("disk")) std::this_thread::yield();
  while (guard.wait("disk", [] { return 2; }) != 2) {
    while (guard.isStalled("disk")) std::this_thread::yield();
  }
}

TEST(StallGuard, canBeGivenUp) {
  StallGuard guard(kLong);
  Disk disk;
  std::thread waiting([&] { EXPECT_EQ(guard.wait("disk", disk.work()), std::nullopt); });
  guard.giveUp();
  waiting.join();
  EXPECT_EQ(guard.wait("other", [] { return 1; }), std::nullopt);
  disk.answer(1);
}

TEST(StallGuard, leavesWhatHangsToItself) {
  Disk disk;
  {
    StallGuard guard(kShort);
    EXPECT_EQ(guard.wait("disk", disk.work()), std::nullopt);
  }
  disk.answer(1);
}

}  // namespace pelmora::platform

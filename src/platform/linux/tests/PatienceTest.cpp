#include "platform/linux/Patience.h"

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

TEST(Patience, givesWhatEndsInTime) {
  Patience patience(kLong);
  EXPECT_EQ(patience.wait("disk", [] { return 7; }), 7);
  EXPECT_EQ(patience.wait("disk", [] { return std::string("text"); }), "text");
  EXPECT_FALSE(patience.isStalled("disk"));
}

TEST(Patience, worksOnAnotherThread) {
  Patience patience(kLong);
  EXPECT_NE(patience.wait("disk", [] { return std::this_thread::get_id(); }),
            std::this_thread::get_id());
}

TEST(Patience, waitsOnceForWhatHangs) {
  Patience patience(kShort);
  Disk disk;
  EXPECT_EQ(patience.wait("disk", disk.work()), std::nullopt);
  EXPECT_TRUE(patience.isStalled("disk"));
  bool isBegun = false;
  EXPECT_EQ(patience.wait("disk", [&isBegun] { return isBegun = true; }), std::nullopt);
  EXPECT_FALSE(isBegun);
  disk.answer(1);
}

TEST(Patience, keepsNothingElseFromBeingDone) {
  Patience patience(kShort);
  Disk disk;
  EXPECT_EQ(patience.wait("disk", disk.work()), std::nullopt);
  // On a thread that may be slow to start.
  while (patience.wait("other", [] { return 1; }) != 1) {
    while (patience.isStalled("other")) std::this_thread::yield();
  }
  disk.answer(1);
}

TEST(Patience, goesOnWithWhatAnswersAgain) {
  Patience patience(kShort);
  Disk disk;
  EXPECT_EQ(patience.wait("disk", disk.work()), std::nullopt);
  disk.answer(1);
  while (patience.isStalled("disk")) std::this_thread::yield();
  while (patience.wait("disk", [] { return 2; }) != 2) {
    while (patience.isStalled("disk")) std::this_thread::yield();
  }
}

TEST(Patience, canBeGivenUp) {
  Patience patience(kLong);
  Disk disk;
  std::thread waiting([&] { EXPECT_EQ(patience.wait("disk", disk.work()), std::nullopt); });
  patience.giveUp();
  waiting.join();
  EXPECT_EQ(patience.wait("other", [] { return 1; }), std::nullopt);
  disk.answer(1);
}

TEST(Patience, leavesWhatHangsToItself) {
  Disk disk;
  {
    Patience patience(kShort);
    EXPECT_EQ(patience.wait("disk", disk.work()), std::nullopt);
  }
  disk.answer(1);
}

}  // namespace pelmora::platform

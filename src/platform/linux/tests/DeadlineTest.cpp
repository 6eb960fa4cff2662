#include "platform/linux/Deadline.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include <array>
#include <csignal>
#include <thread>

namespace pelmora::platform {

namespace {

using std::chrono::milliseconds;

class DeadlineTest : public testing::Test {
 protected:
  DeadlineTest() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    reading = FileDescriptor(ends[0]);
    writing = FileDescriptor(ends[1]);
  }

  FileDescriptor reading;
  FileDescriptor writing;
};

}  // namespace

TEST_F(DeadlineTest, endsTheWaitForWhatDoesNotCome) {
  const Deadline deadline(milliseconds(20));
  EXPECT_FALSE(deadline.isOver());
  EXPECT_FALSE(deadline.waitFor(reading.get()));
  EXPECT_TRUE(deadline.isOver());
  EXPECT_FALSE(deadline.waitFor(reading.get()));
}

TEST_F(DeadlineTest, isNotWaitedForWhenSomethingIsThere) {
  const Deadline deadline(milliseconds(600'000));
  ASSERT_EQ(write(writing.get(), "x", 1), 1);
  EXPECT_TRUE(deadline.waitFor(reading.get()));
  EXPECT_FALSE(deadline.isOver());
}

TEST_F(DeadlineTest, isNotWaitedForWhenTheOtherEndIsClosed) {
  const Deadline deadline(milliseconds(600'000));
  writing = {};
  EXPECT_TRUE(deadline.waitFor(reading.get()));
}

TEST_F(DeadlineTest, canBeMadeNow) {
  const Deadline deadline(milliseconds(600'000));
  std::thread other([&deadline] { deadline.endNow(); });
  EXPECT_FALSE(deadline.waitFor(reading.get()));
  EXPECT_TRUE(deadline.isOver());
  other.join();
}

TEST_F(DeadlineTest, isNotPutOffBySignals) {
  struct sigaction before {};
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, &before);
  // A signal every 3 ms: a wait that began anew with each would last for ever.
  const itimerval often{{0, 3000}, {0, 3000}};
  setitimer(ITIMER_REAL, &often, nullptr);
  EXPECT_FALSE(Deadline(milliseconds(30)).waitFor(reading.get()));
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  sigaction(SIGALRM, &before, nullptr);
}

}  // namespace pelmora::platform

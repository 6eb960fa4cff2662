#include "host/EndingSignals.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace pelmora::host {

TEST(EndingSignals, callsOnTheThreadOfItsEventLoop) {
  int count = 1;
  char name[] = "test";
  char* words[] = {name, nullptr};
  QCoreApplication application(count, words);
  prepareSignals();
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    int ended = 0;
    const EndingSignals signalsThatEnd([&ended] {
      ++ended;
      QCoreApplication::quit();
    });
    // To this thread: a signal to the process may go to one that a library started before the
    // block.
    raise(number);
    QCoreApplication::exec();
    EXPECT_EQ(ended, 1);
  }
}

TEST(EndingSignals, leaveAWriteToWhatHasGoneToFail) {
  std::signal(SIGPIPE, SIG_DFL);
  prepareSignals();
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  close(ends[0]);
  EXPECT_EQ(write(ends[1], "x", 1), -1);
  EXPECT_EQ(errno, EPIPE);
  close(ends[1]);
}

TEST(EndingSignals, areNoneOfTheBusinessOfProgramsThatAreStarted) {
  prepareSignals();
  const auto isBlocked = [] {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, SIGTERM) != 0;
  };
  EXPECT_TRUE(isBlocked());
  {
    const UnblockedSignals forAProgram;
    EXPECT_FALSE(isBlocked());
  }
  EXPECT_TRUE(isBlocked());
}

}  // namespace pelmora::host

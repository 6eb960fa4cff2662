#include "host/EndingSignals.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>

namespace pelmora::host {

TEST(EndingSignals, callsOnTheThreadOfItsEventLoop) {
  int count = 1;
  char name[] = "test";
  char* words[] = {name, nullptr};
  QCoreApplication application(count, words);
  blockEndingSignals();
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

}  // namespace pelmora::host

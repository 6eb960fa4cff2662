#include "host/ConnectionLoss.h"

#include <gtest/gtest.h>
#include <QtGlobal>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace pelmora::host {

namespace {

/// As in a process whose compositor dies.
void lose(const char* warning) {
  const ConnectionLoss loss([] { std::fputs("all is stopped\n", stderr); });
  qWarning("a warning");
  qWarning("%s", warning);
  std::fputs("and now Qt would exit\n", stderr);
}

}  // namespace

TEST(ConnectionLoss, isKnownByWhatQtWarnsOf) {
  EXPECT_TRUE(
      tellsOfConnectionLoss("The Wayland connection broke. Did the Wayland compositor die?"));
  EXPECT_TRUE(tellsOfConnectionLoss("The Wayland connection experienced a fatal error: Protocol"));
  EXPECT_TRUE(tellsOfConnectionLoss("The X11 connection broke (error 1). Did the X11 server die?"));
  EXPECT_FALSE(tellsOfConnectionLoss("The Wayland connection is slow"));
  EXPECT_FALSE(tellsOfConnectionLoss("The connection broke"));
  EXPECT_FALSE(tellsOfConnectionLoss(""));
}

TEST(ConnectionLoss, leavesTimeForTheLastWork) {
  EXPECT_EXIT(lose("The Wayland connection broke. Did the Wayland compositor die?"),
              testing::ExitedWithCode(1), "a warning.*the display has gone.*all is stopped\n$");
}

TEST(ConnectionLoss, letsNoOtherThreadEndTheProcessMeanwhile) {
  const auto loseOnTwoThreads = [] {
    const ConnectionLoss loss([] {
      static std::atomic<bool> hasHeard = false;
      std::thread([] {
        hasHeard = true;
        qWarning("The Wayland connection broke.");
        std::_Exit(7);  // as Qt would
      }).detach();
      while (!hasHeard) std::this_thread::yield();
      for (int i = 0; i < 10'000; ++i) std::this_thread::yield();
    });
    qWarning("The Wayland connection broke.");
  };
  EXPECT_EXIT(loseOnTwoThreads(), testing::ExitedWithCode(1), "the display has gone");
}

TEST(ConnectionLoss, isNotTakenFromOtherWarnings) {
  testing::internal::CaptureStderr();
  lose("another");
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find("another"), std::string::npos);
  EXPECT_NE(said.find("Qt would exit"), std::string::npos);
  EXPECT_EQ(said.find("stopped"), std::string::npos);
}

}  // namespace pelmora::host

#include "idle/XScreenSaverMonitor.h"

#include "platform/fake/RecordingLog.h"
#include "platform/SteppedTime.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace pelmora::idle {

namespace {

/// An X server of one test's own, which DISPLAY names.
class TestServer {
 public:
  TestServer() {
    int told[2];
    if (pipe(told) != 0) throw std::runtime_error("no pipe");
    _process = fork();
    if (_process == 0) {
      dup2(told[1], STDOUT_FILENO);
      close(told[0]);
      execlp("Xvfb", "Xvfb", "-displayfd", "1", "-screen", "0", "64x64x24", "-noreset", "-nolisten",
             "tcp", nullptr);
      _exit(127);
    }
    close(told[1]);
    FILE* lines = fdopen(told[0], "r");
    int number = -1;
    if (std::fscanf(lines, "%d", &number) != 1) throw std::runtime_error("Xvfb did not start");
    std::fclose(lines);
    setenv("DISPLAY", (":" + std::to_string(number)).c_str(), 1);
  }
  ~TestServer() { kill(); }
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;

  void kill() {
    if (_process <= 0) return;
    ::kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
    _process = -1;
  }

 private:
  pid_t _process = -1;
};

/// Another program on that server.
class OtherProgram {
 public:
  ~OtherProgram() { xcb_disconnect(_connection); }

  [[nodiscard]] int timeout() const {
    auto* reply =
        xcb_get_screen_saver_reply(_connection, xcb_get_screen_saver(_connection), nullptr);
    const int seconds = reply ? reply->timeout : -1;
    std::free(reply);
    return seconds;
  }
  void setTimeout(std::int16_t seconds) const {
    xcb_set_screen_saver(_connection, seconds, 0, XCB_BLANKING_NOT_PREFERRED,
                         XCB_EXPOSURES_NOT_ALLOWED);
    static_cast<void>(timeout());  // so that it has happened
  }
  void force(std::uint8_t mode) const {
    xcb_force_screen_saver(_connection, mode);
    xcb_flush(_connection);
  }
  /// Draws the server's screen saver itself.
  void take() const {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data;
    xcb_screensaver_set_attributes(_connection, screen->root, 0, 0, 1, 1, 0,
                                   XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT,
                                   XCB_COPY_FROM_PARENT, 0, nullptr);
    static_cast<void>(timeout());
  }

 private:
  xcb_connection_t* _connection = xcb_connect(nullptr, nullptr);
};

class XScreenSaverMonitorTest : public testing::Test {
 protected:
  void start(int seconds) {
    monitor = std::move(*XScreenSaverMonitor::open());
    monitor->attach(
        {clock, scheduler, log, [this](const std::string& why) { lost.push_back(why); }});
    monitor->start(std::chrono::seconds(seconds), {[this] { ++idles; }, [this] { ++actives; }});
  }
  /// What another program is told comes with no event of ours, so this asks again and again.
  static void waitUntil(const std::function<bool()>& holds) {
    QTimer again;
    again.start(std::chrono::milliseconds(2));
    while (!holds()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }

  char word[2] = "t";
  char* words[2] = {word, nullptr};
  int count = 1;
  QCoreApplication application{count, words};
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  platform::RecordingLog log;
  TestServer server;
  std::vector<std::string> lost;
  int idles = 0;
  int actives = 0;
  std::unique_ptr<XScreenSaverMonitor> monitor;
};

}  // namespace

TEST_F(XScreenSaverMonitorTest, setsTheServerToTheDelayAndBackAtItsEnd) {
  const OtherProgram other;
  other.setTimeout(1234);
  start(77);
  waitUntil([&other] { return other.timeout() == 77; });
  monitor.reset();
  waitUntil([&other] { return other.timeout() == 1234; });
}

TEST_F(XScreenSaverMonitorTest, leavesTheServerAsSomeoneElseHasSetIt) {
  const OtherProgram other;
  start(77);
  waitUntil([&other] { return other.timeout() == 77; });
  other.setTimeout(0);
  monitor.reset();
  waitUntil([&other] { return other.timeout() == 0; });
}

TEST_F(XScreenSaverMonitorTest, tellsOfIdlenessAndOfActivityInTurns) {
  const OtherProgram other;
  start(77);
  for (int turn = 1; turn <= 2; ++turn) {
    other.force(XCB_SCREEN_SAVER_ACTIVE);
    waitUntil([&] { return idles == turn; });
    other.force(XCB_SCREEN_SAVER_RESET);
    waitUntil([&] { return actives == turn; });
  }
}

TEST_F(XScreenSaverMonitorTest, countsFromItsStartWhenTheServersScreenSaverWasOnBefore) {
  const OtherProgram other;
  other.force(XCB_SCREEN_SAVER_ACTIVE);
  static_cast<void>(other.timeout());
  start(1);
  waitUntil([this] { return idles == 1; });
  other.force(XCB_SCREEN_SAVER_RESET);
  waitUntil([this] { return actives == 1; });
}

TEST_F(XScreenSaverMonitorTest, tellsOfIdlenessWhenTheDelayIsOver) {
  start(1);
  waitUntil([this] { return idles == 1; });
  EXPECT_EQ(actives, 0);
}

TEST_F(XScreenSaverMonitorTest, waitsForTheRestOfTheDelayWhenAnotherTimeoutWasShorter) {
  const OtherProgram other;
  start(600);
  waitUntil([&other] { return other.timeout() == 600; });
  other.setTimeout(1);
  // The server goes on; what is left of the delay is waited for.
  waitUntil([this] { return monitor->isWaiting(); });
  EXPECT_EQ(idles, 0);
  scheduler.advanceBy(590);
  EXPECT_EQ(idles, 0);
  scheduler.advanceBy(10);
  EXPECT_EQ(idles, 1);
}

TEST_F(XScreenSaverMonitorTest, saysWhenAnotherProgramDrawsTheScreenSaverAndGoesOn) {
  const OtherProgram other;
  other.take();
  start(77);
  other.force(XCB_SCREEN_SAVER_ACTIVE);
  waitUntil([this] { return idles == 1; });
  EXPECT_EQ(log.countContaining("Another program draws"), 1U);
}

TEST_F(XScreenSaverMonitorTest, tellsOnceThatTheServerHasGone) {
  start(77);
  server.kill();
  waitUntil([this] { return !lost.empty(); });
  QCoreApplication::processEvents();
  EXPECT_EQ(lost, std::vector<std::string>{"The X server has gone"});
}

TEST_F(XScreenSaverMonitorTest, saysThatNoServerAnswers) {
  server.kill();
  const auto opened = XScreenSaverMonitor::open();
  ASSERT_FALSE(opened);
  EXPECT_EQ(opened.error().message, "the X server does not answer");
}

}  // namespace pelmora::idle

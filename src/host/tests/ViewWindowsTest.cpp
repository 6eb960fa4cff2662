#include "host/ViewWindows.h"

#include "host/QtDisplays.h"
#include "host/tests/CommandRun.h"
#include "platform/linux/SystemClock.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QWindow>

namespace pelmora::host {

namespace {

/// Counts the events of windows.
class CountingFilter : public QObject {
 public:
  bool eventFilter(QObject* /*watched*/, QEvent* /*event*/) override {
    ++events;
    return false;
  }
  int events = 0;
};

class ViewWindowsTest : public CommandFixture {
 protected:
  ViewWindowsTest() {
    home.mkdir("Pictures");
    home.write("Pictures/a.jpg", "no picture");
  }

  [[nodiscard]] ViewPlace place() const {
    return {.frame = {{0, 0}, {320, 200}},
            .display = displays.displayOf(QGuiApplication::primaryScreen())};
  }

  /// Handles events until there are so many windows.
  [[nodiscard]] bool waitForWindows(qsizetype wanted) {
    const QDeadlineTimer deadline(20000);
    while (QGuiApplication::topLevelWindows().size() != wanted && !deadline.hasExpired()) {
      QGuiApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    return QGuiApplication::topLevelWindows().size() == wanted;
  }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QGuiApplication application{count, words};
  platform::SystemClock clock;
  QtDisplays displays;
  CountingFilter input;
};

}  // namespace

TEST_F(ViewWindowsTest, comeAndGoWhileTheRunLasts) {
  ViewWindows windows(Renderer::software, clock, displays, {}, input);
  QWindow& first = windows.add(place());
  QWindow& second = windows.add(place());
  first.show();
  second.show();
  EXPECT_EQ(QGuiApplication::topLevelWindows().size(), 2);
  windows.remove(first);
  EXPECT_TRUE(second.isVisible());
  EXPECT_TRUE(waitForWindows(1));  // when its view has let go of it
  EXPECT_EQ(QGuiApplication::topLevelWindows()[0], &second);
  EXPECT_GT(input.events, 0);
  windows.hide();
  EXPECT_FALSE(second.isVisible());
}

TEST_F(ViewWindowsTest, goAfterTheRunHasEnded) {
  {
    ViewWindows windows(Renderer::software, clock, displays, {}, input);
    windows.remove(windows.add(place()));
    windows.add(place()).show();
    windows.end();
  }
  EXPECT_TRUE(QGuiApplication::topLevelWindows().isEmpty());
}

}  // namespace pelmora::host

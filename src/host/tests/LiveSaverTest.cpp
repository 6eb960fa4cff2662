#include "host/LiveSaver.h"

#include "host/EndingSignals.h"
#include "host/tests/CommandRun.h"

#include <QGuiApplication>
#include <QWindow>

#include <csignal>

namespace pelmora::host {

class LiveSaverTest : public CommandFixture {
 protected:
  LiveSaverTest() {
    home.mkdir("Pictures");
    home.write("Pictures/a.jpg", "no picture");
    prepareSignals();
  }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QGuiApplication application{count, words};
};

TEST_F(LiveSaverTest, coversEveryDisplayAndEndsAtASignal) {
  LiveSaver saver(Renderer::software, InputWatcher::Ends::any, false);
  saver.coverDisplays();
  const QWindowList windows = QGuiApplication::topLevelWindows();
  ASSERT_EQ(windows.size(), QGuiApplication::screens().size());
  EXPECT_EQ(windows[0]->windowState(), Qt::WindowFullScreen);
  EXPECT_EQ(windows[0]->cursor().shape(), Qt::BlankCursor);
  raise(SIGTERM);
  EXPECT_EQ(saver.exec(), 0);
}

TEST_F(LiveSaverTest, endsWhenItsWindowIsClosed) {
  LiveSaver saver(Renderer::software, InputWatcher::Ends::escape, false);
  saver.openWindow({320, 200}, true);
  const QWindowList windows = QGuiApplication::topLevelWindows();
  ASSERT_EQ(windows.size(), 1);
  EXPECT_EQ(windows[0]->size(), QSize(320, 200));
  QMetaObject::invokeMethod(
      windows[0], [window = windows[0]] { window->close(); }, Qt::QueuedConnection);
  EXPECT_EQ(saver.exec(), 0);
}

}  // namespace pelmora::host

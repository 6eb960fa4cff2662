#include "host/DisplayCover.h"

#include "host/tests/CommandRun.h"
#include "platform/linux/SystemClock.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace pelmora::host {

namespace {

class DisplayCoverTest : public CommandFixture {
 protected:
  DisplayCoverTest() {
    home.mkdir("Pictures");
    home.write("Pictures/a.jpg", "no picture");
  }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QGuiApplication application{count, words};
  platform::SystemClock clock;
  QtDisplays displays;
  QObject input;
  ViewWindows windows{Renderer::software, clock, displays, {}, input};
};

}  // namespace

TEST_F(DisplayCoverTest, putsAWindowOnEveryDisplayAndTakesItAway) {
  {
    const DisplayCover cover(windows, displays, DisplayCover::Layers::wherePossible);
    const QWindowList shown = QGuiApplication::topLevelWindows();
    ASSERT_EQ(shown.size(), QGuiApplication::screens().size());
    EXPECT_EQ(shown[0]->screen(), QGuiApplication::screens()[0]);
    EXPECT_TRUE(shown[0]->isVisible());
  }
  for (const QWindow* window : QGuiApplication::topLevelWindows()) {
    EXPECT_FALSE(window->isVisible());
  }
}

TEST_F(DisplayCoverTest, takesAWindowFromADisplayThatGoes) {
  const DisplayCover cover(windows, displays, DisplayCover::Layers::never);
  QScreen* screen = QGuiApplication::screens()[0];
  const QWindow* window = QGuiApplication::topLevelWindows()[0];
  // As when it is unplugged: the toolkit says so, and only then takes it off its list.
  Q_EMIT application.screenRemoved(screen);
  EXPECT_FALSE(window->isVisible());
  // It has stayed on the list, as if it were back.
  QGuiApplication::processEvents();
  bool isShown = false;
  for (const QWindow* other : QGuiApplication::topLevelWindows()) {
    isShown = isShown || other->isVisible();
  }
  EXPECT_TRUE(isShown);
}

}  // namespace pelmora::host

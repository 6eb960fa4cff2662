#include "host/InputWatcher.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

/// Events come from devices, and those are an application's.
class Application {
 private:
  char _name[5] = "test";
  char* _words[2] = {_name, nullptr};
  int _count = 1;
  QGuiApplication _application{_count, _words};
};

struct Watched {
  explicit Watched(InputWatcher::Ends ends)
      : watcher(
            ends, [this] { ++ended; }, std::chrono::milliseconds(0)) {}

  void press(int key) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    EXPECT_FALSE(watcher.eventFilter(nullptr, &event));
  }
  void click() {
    QMouseEvent event(QEvent::MouseButtonPress, {1, 1}, {1, 1}, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    EXPECT_FALSE(watcher.eventFilter(nullptr, &event));
  }
  /// The pointer, in the window's points; `andNow` happens at the same time.
  void move(double x, double y, QObject* window = nullptr, QEvent::Type andNow = QEvent::None) {
    QMouseEvent event(QEvent::MouseMove, {x, y}, {x, y}, Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    EXPECT_FALSE(watcher.eventFilter(window, &event));
    if (andNow != QEvent::None) happen(andNow);
    QGuiApplication::processEvents();
  }
  void enter(double x, double y) {
    QEnterEvent event({x, y}, {x, y}, {x, y});
    EXPECT_FALSE(watcher.eventFilter(nullptr, &event));
    QGuiApplication::processEvents();
  }
  void happen(QEvent::Type type) {
    QEvent event(type);
    EXPECT_FALSE(watcher.eventFilter(nullptr, &event));
  }

  Application application;
  QObject other;
  int ended = 0;
  InputWatcher watcher;
};

}  // namespace

TEST(InputWatcher, endsAtAnyKeyAndClick) {
  Watched saver(InputWatcher::Ends::any);
  saver.press(Qt::Key_A);
  EXPECT_EQ(saver.ended, 1);
  saver.press(Qt::Key_Escape);
  EXPECT_EQ(saver.ended, 2);
  saver.click();
  EXPECT_EQ(saver.ended, 3);
}

TEST(InputWatcher, ignoresAPointerThatOnlyTrembles) {
  Watched saver(InputWatcher::Ends::any);
  saver.move(500, 400);  // where the pointer happens to be when the window opens
  saver.move(503, 402);
  saver.move(497, 400);
  EXPECT_EQ(saver.ended, 0);
  saver.move(510, 400);
  EXPECT_EQ(saver.ended, 1);
}

TEST(InputWatcher, knowsWhereThePointerWasWhenTheWindowCame) {
  Watched saver(InputWatcher::Ends::any);
  saver.enter(500, 400);
  saver.enter(100, 100);  // the desktop has put it elsewhere
  saver.move(101, 100);
  EXPECT_EQ(saver.ended, 0);
  saver.move(700, 400);
  EXPECT_EQ(saver.ended, 1);
}

TEST(InputWatcher, seesThePointerAnewInAnotherWindow) {
  Watched saver(InputWatcher::Ends::any);
  saver.move(500, 400);
  saver.move(20, 30, &saver.other);  // the window that it was in has gone
  EXPECT_EQ(saver.ended, 0);
  saver.move(40, 30, &saver.other);
  EXPECT_EQ(saver.ended, 1);
}

TEST(InputWatcher, seesThePointerAnewWhenItsWindowMoved) {
  Watched saver(InputWatcher::Ends::any);
  for (const QEvent::Type change : {QEvent::Move, QEvent::Resize, QEvent::Hide}) {
    saver.move(500, 400);
    saver.move(300, 200, nullptr, change);  // the pointer is heard of first
    saver.move(20, 30);
    EXPECT_EQ(saver.ended, 0);
    saver.happen(change);
  }
}

TEST(InputWatcher, endsWhenTheDesktopClosesAWindow) {
  Watched saver(InputWatcher::Ends::any);
  saver.happen(QEvent::Close);
  EXPECT_EQ(saver.ended, 1);
}

TEST(InputWatcher, endsAWindowAtEscapeAlone) {
  Watched window(InputWatcher::Ends::escape);
  window.press(Qt::Key_A);
  window.click();
  window.move(0, 0);
  window.move(100, 100);
  EXPECT_EQ(window.ended, 0);
  window.press(Qt::Key_Escape);
  EXPECT_EQ(window.ended, 1);
}

TEST(InputWatcher, leavesInputToOthersWhereItIsTheirs) {
  Watched hosted(InputWatcher::Ends::none);
  hosted.press(Qt::Key_Escape);
  hosted.click();
  hosted.move(0, 0);
  hosted.move(100, 100);
  EXPECT_EQ(hosted.ended, 0);
}

}  // namespace pelmora::host

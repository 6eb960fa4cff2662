#include "host/CoverWindow.h"

#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace pelmora::host {

TEST(CoverWindow, coversTheDisplayWithoutAPointerWhereThereAreNoLayers) {
  char name[] = "test";
  char* words[] = {name, nullptr};
  int count = 1;
  const QGuiApplication application(count, words);
  QScreen& screen = *QGuiApplication::primaryScreen();
  QWindow window;
  {
    const CoverWindow cover(window, screen, nullptr, [] { ADD_FAILURE() << "nobody closed it"; });
    EXPECT_EQ(window.windowState(), Qt::WindowFullScreen);
    EXPECT_EQ(window.geometry(), screen.geometry());
    EXPECT_EQ(window.cursor().shape(), Qt::BlankCursor);
    EXPECT_FALSE(window.flags() & Qt::BypassWindowManagerHint);
  }
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(window.handle(), nullptr);
}

}  // namespace pelmora::host

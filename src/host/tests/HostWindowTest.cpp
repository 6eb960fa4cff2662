#include "host/HostWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(HostWindow, isCoveredToItsLastPixel) {
  EXPECT_EQ(coveringSize({10, 20, 1920, 1080}, 1), QSize(1920, 1080));
  EXPECT_EQ(coveringSize({0, 0, 1367, 768}, 2), QSize(684, 384));
  EXPECT_EQ(coveringSize({0, 0, 100, 100}, 1.5), QSize(67, 67));
}

TEST(HostWindow, isNeverCoveredByNothing) { EXPECT_EQ(coveringSize({0, 0, 0, 0}, 2), QSize(1, 1)); }

TEST(HostWindow, isSoughtAmongTheDisplaysInPixels) {
  int count = 1;
  char name[] = "test";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  const QScreen* screen = QGuiApplication::primaryScreen();
  ASSERT_NE(screen, nullptr);
  const PixelRect pixels = pixelsOf(*screen);
  EXPECT_EQ(pixels.x, screen->geometry().x());
  EXPECT_EQ(pixels.width, screen->geometry().width() * screen->devicePixelRatio());
}

}  // namespace pelmora::host

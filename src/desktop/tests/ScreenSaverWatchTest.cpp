#include "desktop/ScreenSaverWatch.h"

#include "desktop/tests/StopFixture.h"

namespace pelmora::desktop {

class ScreenSaverWatchTest : public StopFixture {
 protected:
  ScreenSaverWatchTest() { settle(); }

  const OnBus<ScreenSaverWatch> watch{bus, [this](const QDBusConnection& connection) {
                                        return std::make_unique<ScreenSaverWatch>(connection, inbox,
                                                                                  pace);
                                      }};
};

TEST_F(ScreenSaverWatchTest, tellsOfTheEndOfEveryDesktopsSaver) {
  int count = 0;
  for (const char* each : {"freedesktop", "gnome", "mate", "cinnamon", "xfce"}) {
    send(activeChanged(each, {false}));
    waitForTold(++count);
  }
  EXPECT_EQ(told, 5);
}

TEST_F(ScreenSaverWatchTest, tellsNothingOfABeginning) {
  send(activeChanged("gnome", {true}));
  settle();
  EXPECT_EQ(told, 0);
}

TEST_F(ScreenSaverWatchTest, ignoresWhatIsNoAnswer) {
  for (const QVariantList& odd :
       {QVariantList{}, QVariantList{0}, QVariantList{"false"}, QVariantList{false, false},
        QVariantList{QVariantList{false}}, QVariantList{QVariantMap{{"active", false}}}}) {
    send(activeChanged("gnome", odd));
  }
  settle();
  EXPECT_EQ(told, 0);
  send(activeChanged("gnome", {false}));
  waitForTold(1);
}

}  // namespace pelmora::desktop

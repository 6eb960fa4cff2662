#include "host/LinuxServices.h"

#include "desktop/tests/ScriptedPlayer.h"
#include "desktop/tests/TestBus.h"
#include "host/tests/CommandRun.h"
#include "platform/Clock.h"
#include "platform/fake/FakeDisplays.h"
#include "platform/FileContents.h"
#include "platform/NotificationCenter.h"
#include "platform/RunningApplications.h"
#include "platform/ScriptRunner.h"
#include "platform/SteppedTime.h"
#include "platform/UserFolders.h"

namespace pelmora::host {

class LinuxServicesTest : public CommandFixture {
 protected:
  platform::SteppedClock clock{{5}};
  platform::SteppedScheduler scheduler{clock};
  platform::FakeDisplays displays;
};

/// What the script for the system's player returns.
static platform::ScriptResult askForTheTrack(const platform::Services& services) {
  const auto script = platform::FileContents::read(
      services.resourceFolder / "GetCurrentTrackInfo-Music.txt", 65536);
  if (!script) return "no script";
  return services.scripts.execute({script->bytes().begin(), script->bytes().end()});
}

TEST_F(LinuxServicesTest, takeWhatTheCommandChoosesAndTheDesktopsOwnForTheRest) {
  home.mkdir("Pictures");
  const LinuxServices chosen({.clock = &clock,
                              .scheduler = &scheduler,
                              .displays = &displays,
                              .enumerationConcurrency = 3});
  EXPECT_EQ(&chosen.services().scheduler, &scheduler);
  EXPECT_EQ(chosen.services().clock.now(), ReferenceTime{5});
  EXPECT_EQ(chosen.services().enumerationConcurrency, 3U);
  EXPECT_EQ(chosen.services().userFolders.pictures(),
            (std::vector<FilePath>{home.path() / "Pictures"}));
  EXPECT_GE(chosen.services().systemVersion.major, 11);
}

TEST_F(LinuxServicesTest, showSamplesToWhoHasNeitherPicturesNorChosenFolders) {
  const ServiceChoices choices{
      .scheduler = &scheduler, .displays = &displays, .samplesWhenNoPictures = true};
  testing::internal::CaptureStderr();
  EXPECT_EQ(LinuxServices(choices).services().userFolders.pictures().size(), 1U);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  run({"sources", "add", home.mkdir("elsewhere").bytes()});
  EXPECT_TRUE(LinuxServices(choices).services().userFolders.pictures().empty());
}

TEST_F(LinuxServicesTest, seeTheMusicPlayersOfTheSessionWhereTheyMay) {
  desktop::TestBus bus;
  setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
  platform::RecordingLog log;
  desktop::ScriptedPlayer player(bus.address(), log);
  player.setProperties(desktop::playingTitle("song"));
  player.takeName("org.mpris.MediaPlayer2.vlc");

  const LinuxServices live({.scheduler = &scheduler, .displays = &displays, .sessionBus = true});
  const platform::Services& services = live.services();
  std::string told;
  services.distributedNotifications.addObserver(
      "com.apple.iTunes.playerInfo", [&told](const platform::Notification& note) {
        told = *note.userInfo.at("Name").get<std::string>();
      });
  scheduler.runPostedUntil([&told] { return !told.empty(); });
  EXPECT_EQ(told, "song");
  EXPECT_EQ(services.runningApplications.runningApplications().size(), 1U);
  EXPECT_EQ(askForTheTrack(services),
            platform::ScriptResult(platform::ScriptRecord{{"pnam", "song"}}));

  const LinuxServices blind({.scheduler = &scheduler, .displays = &displays});
  EXPECT_TRUE(blind.services().runningApplications.runningApplications().empty());
  EXPECT_EQ(askForTheTrack(blind.services()), platform::ScriptResult());
}

TEST_F(LinuxServicesTest, hearThatTheSessionsSaverEndsWhereTheyAreIts) {
  desktop::TestBus bus;
  for (const char* kind : {"SESSION", "SYSTEM"}) {
    setenv(("DBUS_" + std::string(kind) + "_BUS_ADDRESS").c_str(), bus.address().c_str(), 1);
  }
  platform::RecordingLog log;
  desktop::ScriptedPlayer desktop(bus.address(), log);
  const QDBusMessage ended =
      QDBusMessage::createSignal("/x", "org.gnome.ScreenSaver", "ActiveChanged") << false;

  int stopped = 0;
  const LinuxServices saver(
      {.scheduler = &scheduler, .displays = &displays, .sessionBus = true, .didStop = [&stopped] {
         ++stopped;
       }});
  const LinuxServices window({.scheduler = &scheduler, .displays = &displays, .sessionBus = true});
  int heardByViews = 0;
  int heardInWindow = 0;
  const char* name = "com.apple.screensaver.didstop";
  saver.services().distributedNotifications.addObserver(name, [&](const auto&) { ++heardByViews; });
  window.services().distributedNotifications.addObserver(name,
                                                         [&](const auto&) { ++heardInWindow; });
  while (heardByViews == 0) {
    desktop.send(ended);
    scheduler.runPosted();
  }
  EXPECT_EQ(stopped, heardByViews);
  EXPECT_EQ(heardInWindow, 0);
}

TEST_F(LinuxServicesTest, walkWithEveryProcessorUnlessTold) {
  const LinuxServices real({.scheduler = &scheduler, .displays = &displays});
  EXPECT_GE(real.services().enumerationConcurrency, 1U);
  EXPECT_GT(real.services().clock.now(), ReferenceTime{5});
}

}  // namespace pelmora::host

#include "host/LinuxServices.h"

#include "host/tests/CommandRun.h"
#include "platform/Clock.h"
#include "platform/fake/FakeDisplays.h"
#include "platform/SteppedTime.h"
#include "platform/UserFolders.h"

namespace pelmora::host {

class LinuxServicesTest : public CommandFixture {
 protected:
  platform::SteppedClock clock{{5}};
  platform::SteppedScheduler scheduler{clock};
  platform::FakeDisplays displays;
};

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

TEST_F(LinuxServicesTest, walkWithEveryProcessorUnlessTold) {
  const LinuxServices real({.scheduler = &scheduler, .displays = &displays});
  EXPECT_GE(real.services().enumerationConcurrency, 1U);
  EXPECT_GT(real.services().clock.now(), ReferenceTime{5});
}

}  // namespace pelmora::host

#include "platform/fake/FakeServices.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeServices, handsOutItsOwnParts) {
  FakeServices fakes;
  const Services services = fakes.services();
  services.log.write("line");
  EXPECT_EQ(fakes.log.count("line"), 1U);
  services.sound.beep();
  EXPECT_EQ(fakes.sound.beeps(), 1);
  services.preferences.setObject("key", 3);
  EXPECT_EQ(fakes.preferences.storedValues().size(), 1U);
  EXPECT_EQ(&services.notifications, &fakes.notifications);
  EXPECT_EQ(&services.distributedNotifications, &fakes.distributedNotifications);
  EXPECT_EQ(services.systemVersion.major, 11);
  fakes.runningApplications.applications = {{"com.apple.Music"}};
  EXPECT_EQ(services.runningApplications.runningApplications().size(), 1U);
  fakes.scripts.result = "result";
  EXPECT_EQ(services.scripts.execute("script"), ScriptResult("result"));
  EXPECT_EQ(fakes.scripts.executed, (std::vector<std::string>{"script"}));
  EXPECT_EQ(services.enumerationConcurrency, 1U);
}

TEST(FakeServices, runsTimersOnItsOwnClock) {
  FakeServices fakes;
  const Services services = fakes.services();
  const ReferenceTime start = services.clock.now();
  ReferenceTime ran;
  services.scheduler.after(2, [&] { ran = services.clock.now(); });
  fakes.scheduler.advanceBy(3);
  EXPECT_EQ(ran.seconds, start.seconds + 2);
}

TEST(FakeServices, seesRealFilesAndCountsTheLooks) {
  FakeServices fakes;
  const TemporaryFolder folder;
  folder.write("a.jpg");
  const auto listing = fakes.services().files.list(folder.path(), FinalLink::refuse);
  ASSERT_TRUE(listing.ok());
  EXPECT_EQ((*listing)->names->size(), 1U);
  EXPECT_EQ(fakes.files.count(CountingFiles::Call::list, folder.path()), 1U);
}

}  // namespace pelmora::platform

#include "desktop/NotificationInbox.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <thread>

namespace pelmora::desktop {

class NotificationInboxTest : public testing::Test {
 protected:
  static platform::Notification named(std::string name) {
    return {.name = std::move(name), .object = {}, .userInfo = {}};
  }

  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  std::string told;
  std::shared_ptr<NotificationInbox> inbox = std::make_shared<NotificationInbox>(
      scheduler, [this](const platform::Notification& each) { told += each.name; });
};

TEST_F(NotificationInboxTest, deliversOnMainInOrder) {
  std::thread([this] {
    inbox->put(named("a"));
    inbox->put(named("b"));
  }).join();
  EXPECT_EQ(told, "");
  scheduler.runPosted();
  EXPECT_EQ(told, "ab");
  inbox->put(named("c"));
  scheduler.runPosted();
  EXPECT_EQ(told, "abc");
}

TEST_F(NotificationInboxTest, dropsTheOldestOfTooMany) {
  for (int i = 0; i < 10'000; ++i) inbox->put(named(std::to_string(i) + " "));
  scheduler.runPosted();
  EXPECT_TRUE(told.starts_with("9744 "));
  EXPECT_TRUE(told.ends_with("9999 "));
}

TEST_F(NotificationInboxTest, deliversNothingOnceItIsClosed) {
  inbox->put(named("a"));
  inbox->close();
  scheduler.runPosted();
  inbox->put(named("b"));
  scheduler.runPosted();
  inbox->put(named("c"));
  inbox.reset();
  scheduler.runPosted();
  EXPECT_EQ(told, "");
}

}  // namespace pelmora::desktop

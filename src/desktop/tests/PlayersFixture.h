#pragma once

#include "desktop/NotificationInbox.h"
#include "desktop/SessionBus.h"
#include "desktop/tests/ScriptedPlayer.h"
#include "desktop/tests/TestBus.h"
#include "platform/linux/SystemClock.h"
#include "platform/players/PlayerList.h"
#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>

namespace pelmora::desktop {

constexpr const char* kVlc = "org.mpris.MediaPlayer2.vlc";
constexpr const char* kMpv = "org.mpris.MediaPlayer2.mpv";

/// A bus with players, and what is told of them. Waiting is for what happens: a test for which it
/// does not is ended by its time limit.
class PlayersFixture : public testing::Test {
 protected:
  /// The next notification.
  platform::Notification next() {
    scheduler.runPostedUntil([this] { return !told.empty(); });
    platform::Notification first = std::move(told.front());
    told.pop_front();
    return first;
  }
  /// What a key of the next notification says.
  plist::Value next(const char* key) {
    plist::Dictionary userInfo = next().userInfo;
    return userInfo[key];
  }
  /// Waits for the notification of a title, past others.
  void waitFor(const char* title) {
    while (next("Name") != plist::Value(title)) continue;
  }

  TestBus testBus;
  platform::RecordingLog log;
  platform::SystemClock clock;
  platform::SteppedClock stillClock;
  platform::SteppedScheduler scheduler{stillClock};
  std::deque<platform::Notification> told;  // on main
  std::shared_ptr<NotificationInbox> inbox = std::make_shared<NotificationInbox>(
      scheduler, [this](const platform::Notification& each) { told.push_back(each); });
  // Quicker than the real one, but for the patience: answers may take long on a busy machine.
  platform::players::PlayerPace pace{
      .interval = 0.005, .patience = 10, .retry = 0.02, .settle = 0.005};
  SessionBus bus{testBus.address(), log};
  ScriptedPlayer player{testBus.address(), log};
};

}  // namespace pelmora::desktop

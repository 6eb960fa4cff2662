#pragma once

#include "desktop/NotificationInbox.h"
#include "desktop/StopPace.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace pelmora::desktop {

/// What every view observes: the saver ends.
inline constexpr const char* kScreensaverDidStop = "com.apple.screensaver.didstop";

/// Puts "com.apple.screensaver.didstop" into the inbox: at once, and where it was put there only
/// just before, once more when the interval is over.
/// Thread: the one that made it, which has an event loop.
class StopTeller {
 public:
  StopTeller(std::shared_ptr<NotificationInbox> inbox, const StopPace& pace);

  void stopped();

 private:
  void tell();

  const std::shared_ptr<NotificationInbox> _inbox;
  QTimer _interval;
  bool _isDue = false;  // when the interval is over
};

}  // namespace pelmora::desktop

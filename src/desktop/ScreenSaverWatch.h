#pragma once

#include "desktop/BoundedSignal.h"
#include "desktop/StopPace.h"
#include "desktop/StopTeller.h"

#include <memory>
#include <vector>

namespace pelmora::desktop {

/// Tells that a desktop's screen saver or lock has ended: the signal "ActiveChanged" with false, of
/// any of the interfaces that desktops have for it. From any sender, as several desktops send it
/// from another connection than that with the name; a program of the session could as well end the
/// saver itself.
/// Thread: the session bus's. Errors: what is of another type is ignored.
class ScreenSaverWatch {
 public:
  ScreenSaverWatch(const QDBusConnection& connection, std::shared_ptr<NotificationInbox> inbox,
                   const StopPace& pace);

 private:
  void activeChanged(const QDBusMessage& message);

  StopTeller _teller;
  std::vector<std::unique_ptr<BoundedSignal>> _signals;
};

}  // namespace pelmora::desktop

#pragma once

#include "desktop/LoginWatch.h"
#include "desktop/ScreenSaverWatch.h"
#include "desktop/SessionBus.h"

#include <memory>
#include <string>

namespace pelmora::desktop {

/// What the desktop and the login manager say of the saver's end is put into an inbox, as
/// "com.apple.screensaver.didstop": it reaches the observers of this process alone, since every
/// saver of the session hears the desktop itself.
/// Thread: any but the buses'. Errors: without a bus nothing is heard over it.
class StopBridge {
 public:
  /// The buses outlive it. `sessionId` is the session's as its environment has it, or "".
  StopBridge(SessionBus& session, SessionBus& system, const std::string& sessionId,
             const std::shared_ptr<NotificationInbox>& inbox, const StopPace& pace = {});

 private:
  OnBus<ScreenSaverWatch> _screenSavers;
  OnBus<LoginWatch> _login;
};

}  // namespace pelmora::desktop

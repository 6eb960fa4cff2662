#include "desktop/StopBridge.h"

namespace pelmora::desktop {

StopBridge::StopBridge(SessionBus& session, SessionBus& system, const std::string& sessionId,
                       const std::shared_ptr<NotificationInbox>& inbox, const StopPace& pace)
    : _screenSavers(session,
                    [inbox, pace](const QDBusConnection& connection) {
                      return std::make_unique<ScreenSaverWatch>(connection, inbox, pace);
                    }),
      _login(system, [sessionId, inbox, pace](const QDBusConnection& connection) {
        return std::make_unique<LoginWatch>(connection, sessionId, inbox, pace);
      }) {}

}  // namespace pelmora::desktop

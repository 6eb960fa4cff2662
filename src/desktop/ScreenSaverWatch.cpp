#include "desktop/ScreenSaverWatch.h"

#include <utility>

namespace pelmora::desktop {

namespace {

/// KDE has the first.
constexpr const char* kInterfaces[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                       "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver",
                                       "org.xfce.ScreenSaver"};

}  // namespace

ScreenSaverWatch::ScreenSaverWatch(const QDBusConnection& connection,
                                   std::shared_ptr<NotificationInbox> inbox, const StopPace& pace)
    : _teller(std::move(inbox), pace) {
  for (const char* interface : kInterfaces) {
    _signals.push_back(std::make_unique<BoundedSignal>(
        connection,
        BoundedSignal::Name{
            .sender = {}, .path = {}, .interface = interface, .member = "ActiveChanged"},
        pace, [this](const QDBusMessage& message) { activeChanged(message); }));
  }
}

void ScreenSaverWatch::activeChanged(const QDBusMessage& message) {
  if (message.signature() != QLatin1String("b")) return;
  if (!message.arguments().constFirst().toBool()) _teller.stopped();
}

}  // namespace pelmora::desktop

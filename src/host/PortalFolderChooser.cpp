#include "host/PortalFolderChooser.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QWidget>

namespace pelmora::host {

namespace {

/// The name of a window for portals: X11 has numbers, which others may use.
QString portalName(const QWidget* window) {
  if (!window || QGuiApplication::platformName() != QLatin1String("xcb")) return {};
  return "x11:" + QString::number(window->window()->winId(), 16);
}

}  // namespace

PortalFolderChooser::PortalFolderChooser() : _portal(QDBusConnection::sessionBus()) {}

void PortalFolderChooser::chooseFolders(QWidget* parent,
                                        std::function<void(std::vector<FilePath>)> chosen) {
  const QString title = QCoreApplication::translate("Settings", "Choose Folders");
  _portal.chooseFolders(
      {portalName(parent), title},
      [this, parent = QPointer<QWidget>(parent), chosen = std::move(chosen)](const auto& folders) {
        if (folders) return chosen(*folders);
        // The window may have been closed while the portal was waited for.
        if (!parent || !parent->isVisible()) return chosen({});
        _dialog.chooseFolders(parent, chosen);
      });
}

}  // namespace pelmora::host

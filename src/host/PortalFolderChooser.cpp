#include "host/PortalFolderChooser.h"

#include <QCoreApplication>
#include <QEvent>
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
  if (parent) parent->window()->installEventFilter(this);
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

bool PortalFolderChooser::eventFilter(QObject* window, QEvent* event) {
  // A window that is only made small for a while keeps its question.
  if (event->type() == QEvent::Hide && !event->spontaneous()) _portal.cancel();
  return QObject::eventFilter(window, event);
}

}  // namespace pelmora::host

#include "host/PortalFolderChooser.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace pelmora::host {

namespace {

/// The name of a window for portals: X11 has numbers, which others may use.
QString portalName(const QWidget* window) {
  if (!window || QGuiApplication::platformName() != QLatin1String("xcb")) return {};
  return "x11:" + QString::number(window->window()->winId(), 16);
}

}  // namespace

PortalFolderChooser::PortalFolderChooser(const QDBusConnection& bus) : _portal(bus) {}

void PortalFolderChooser::chooseFolders(QWidget* parent,
                                        std::function<void(std::vector<FilePath>)> chosen) {
  if (_portal.isAsking()) return chosen({});
  watch(parent);
  const QString title = QCoreApplication::translate("Settings", "Choose Folders");
  if (!parent) {
    _portal.chooseFolders({QString(), title}, [chosen = std::move(chosen)](const auto& folders) {
      chosen(folders.value_or(std::vector<FilePath>()));
    });
    return;
  }
  _portal.chooseFolders({portalName(parent), title}, [this, parent = QPointer(parent),
                                                      chosen = std::move(chosen)](auto folders) {
    // Later, as one who is just being destroyed still counts as there.
    QTimer::singleShot(0, this, [=, this] {
      if (parent) answer(*parent, chosen, folders);
    });
  });
}

void PortalFolderChooser::answer(QWidget& parent, const Chosen& chosen,
                                 const std::optional<std::vector<FilePath>>& folders) {
  if (folders) return chosen(*folders);
  // The window may have been closed while the portal was waited for.
  if (!parent.isVisible()) return chosen({});
  _dialog.chooseFolders(&parent, chosen);
}

/// The question goes with the one that asks it, and with its window.
void PortalFolderChooser::watch(QWidget* parent) {
  disconnect(_parentGone);
  if (_window) _window->removeEventFilter(this);
  _window = parent ? parent->window() : nullptr;
  if (!parent) return;
  _window->installEventFilter(this);
  _parentGone = connect(parent, &QObject::destroyed, this, [this] { _portal.cancel(); });
}

bool PortalFolderChooser::eventFilter(QObject* window, QEvent* event) {
  // A window that is only made small for a while keeps its question.
  if (event->type() == QEvent::Hide && !event->spontaneous()) _portal.cancel();
  return QObject::eventFilter(window, event);
}

}  // namespace pelmora::host

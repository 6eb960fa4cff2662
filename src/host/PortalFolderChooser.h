#pragma once

#include "config/DialogFolderChooser.h"
#include "desktop/PortalFileChooser.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>
#include <vector>

namespace pelmora::host {

/// The folder chooser of the desktop's portal; where there is none, the toolkit's dialog. It goes
/// when the window is closed that it was asked for. While the portal asks, a second question is
/// answered with none at once. Thread: GUI.
class PortalFolderChooser : public QObject, public config::FolderChooser {
 public:
  explicit PortalFolderChooser(const QDBusConnection& bus = QDBusConnection::sessionBus());

  void chooseFolders(QWidget* parent, std::function<void(std::vector<FilePath>)> chosen) override;

 protected:
  bool eventFilter(QObject* window, QEvent* event) override;

 private:
  using Chosen = std::function<void(std::vector<FilePath>)>;

  void watch(QWidget* parent);
  void answer(QWidget& parent, const Chosen& chosen,
              const std::optional<std::vector<FilePath>>& folders);

  QPointer<QWidget> _window;  // that was last asked for
  QMetaObject::Connection _parentGone;
  desktop::PortalFileChooser _portal;
  config::DialogFolderChooser _dialog;
};

}  // namespace pelmora::host

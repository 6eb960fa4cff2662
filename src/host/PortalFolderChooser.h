#pragma once

#include "config/DialogFolderChooser.h"
#include "desktop/PortalFileChooser.h"

#include <QObject>

namespace pelmora::host {

/// The folder chooser of the desktop's portal; where there is none, the toolkit's dialog. It goes
/// when the window is closed that it was asked for. Thread: GUI.
class PortalFolderChooser : public QObject, public config::FolderChooser {
 public:
  PortalFolderChooser();

  void chooseFolders(QWidget* parent, std::function<void(std::vector<FilePath>)> chosen) override;

 protected:
  bool eventFilter(QObject* window, QEvent* event) override;

 private:
  desktop::PortalFileChooser _portal;
  config::DialogFolderChooser _dialog;
};

}  // namespace pelmora::host

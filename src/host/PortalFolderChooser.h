#pragma once

#include "config/DialogFolderChooser.h"
#include "desktop/PortalFileChooser.h"

namespace pelmora::host {

/// The folder chooser of the desktop's portal; where there is none, the toolkit's dialog.
/// Thread: GUI.
class PortalFolderChooser : public config::FolderChooser {
 public:
  PortalFolderChooser();

  void chooseFolders(QWidget* parent, std::function<void(std::vector<FilePath>)> chosen) override;

 private:
  desktop::PortalFileChooser _portal;
  config::DialogFolderChooser _dialog;
};

}  // namespace pelmora::host

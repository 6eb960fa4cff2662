#pragma once

#include "config/FolderChooser.h"

#include <QString>

namespace pelmora::config {

/// Asks by the toolkit's file dialog: that of the desktop where it has one, which may choose one
/// folder at a time only; else the toolkit's own, which chooses several. Begins in the user's
/// pictures, and goes on where the last folder was chosen. Thread: main. Outlives its questions.
class DialogFolderChooser : public FolderChooser {
 public:
  DialogFolderChooser();

  void chooseFolders(QWidget* parent, std::function<void(std::vector<FilePath>)> chosen) override;

 private:
  QString _startFolder;
};

}  // namespace pelmora::config

#include "config/DialogFolderChooser.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace pelmora::config {

namespace {

/// The toolkit's own dialog has lists; that of a desktop has nothing that could be told.
void allowSeveral(const QFileDialog& dialog) {
  for (const char* name : {"listView", "treeView"}) {
    if (auto* view = dialog.findChild<QAbstractItemView*>(QString::fromLatin1(name))) {
      view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
  }
}

std::vector<FilePath> chosenFolders(const QFileDialog& dialog) {
  std::vector<FilePath> folders;
  for (const QString& file : dialog.selectedFiles()) {
    folders.emplace_back(QFile::encodeName(file).toStdString());
  }
  return folders;
}

}  // namespace

DialogFolderChooser::DialogFolderChooser()
    : _startFolder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)) {}

void DialogFolderChooser::chooseFolders(QWidget* parent,
                                        std::function<void(std::vector<FilePath>)> chosen) {
  auto* dialog =
      new QFileDialog(parent, QCoreApplication::translate("Settings", "Add Folders"), _startFolder);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOption(QFileDialog::ShowDirsOnly);
  dialog->setLabelText(QFileDialog::Accept, QCoreApplication::translate("Settings", "Add"));
  allowSeveral(*dialog);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog, &QFileDialog::finished, parent,
                   [this, dialog, answer = std::move(chosen)](int result) {
                     if (result != QFileDialog::Accepted) return answer({});
                     const std::vector<FilePath> folders = chosenFolders(*dialog);
                     if (!folders.empty()) {
                       _startFolder = QFileInfo(dialog->selectedFiles().front()).path();
                     }
                     answer(folders);
                   });
  dialog->open();
}

}  // namespace pelmora::config

#include "host/PortalFolderChooser.h"

#include "desktop/tests/TestBus.h"

#include <QApplication>
#include <QFileDialog>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace pelmora::host {

TEST(PortalFolderChooser, usesTheToolkitsDialogWhereThereIsNoPortal) {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  char name[] = "test";
  char* words[] = {name, nullptr};
  int count = 1;
  const QApplication application(count, words);
  QWidget parent;
  PortalFolderChooser chooser;
  std::optional<std::vector<FilePath>> chosen;
  chooser.chooseFolders(&parent, [&chosen](auto folders) { chosen = std::move(folders); });
  QFileDialog* dialog = nullptr;
  while (!dialog) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (QWidget* each : QApplication::topLevelWidgets()) {
      if (auto* found = qobject_cast<QFileDialog*>(each)) dialog = found;
    }
  }
  EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
  dialog->reject();
  while (!chosen) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(chosen->empty());
}

}  // namespace pelmora::host

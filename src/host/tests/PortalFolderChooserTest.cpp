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

namespace {

class PortalFolderChooserTest : public testing::Test {
 protected:
  PortalFolderChooserTest() { setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/none", 1); }

  char name[5] = "test";
  char* words[2] = {name, nullptr};
  int count = 1;
  QApplication application{count, words};
  QWidget parent;
  PortalFolderChooser chooser;
  std::optional<std::vector<FilePath>> chosen;
};

}  // namespace

TEST_F(PortalFolderChooserTest, usesTheToolkitsDialogWhereThereIsNoPortal) {
  parent.show();
  chooser.chooseFolders(&parent, [this](auto folders) { chosen = std::move(folders); });
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

TEST_F(PortalFolderChooserTest, opensNoDialogOverAWindowThatWasClosed) {
  chooser.chooseFolders(&parent, [this](auto folders) { chosen = std::move(folders); });
  while (!chosen) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(chosen->empty());
}

}  // namespace pelmora::host

#include "config/DialogFolderChooser.h"

#include "platform/fake/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QAbstractItemView>
#include <QCoreApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QWidget>

#include <optional>

namespace pelmora::config {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DialogFolderChooserTest : public testing::Test {
 protected:
  /// Asks, and gives the dialog that does.
  QFileDialog* ask() {
    chooser.chooseFolders(&window, [this](std::vector<FilePath> folders) {
      ++answers;
      chosen = std::move(folders);
    });
    return window.findChild<QFileDialog*>();
  }
  static void accept(QFileDialog& dialog) { QMetaObject::invokeMethod(&dialog, "accept"); }
  static void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

  platform::TemporaryFolder temporary;
  DialogFolderChooser chooser;
  QWidget window;
  int answers = 0;
  std::vector<FilePath> chosen;
};

}  // namespace

TEST_F(DialogFolderChooserTest, asksOverTheWindowAndDoesNotWait) {
  window.show();
  const QFileDialog* dialog = ask();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
  EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
  EXPECT_EQ(answers, 0);
}

TEST_F(DialogFolderChooserTest, givesTheFoldersThatWereChosen) {
  const FilePath one = temporary.mkdir("one");
  const FilePath two = temporary.mkdir("two");
  QFileDialog* dialog = ask();
  dialog->setDirectory(QString::fromStdString(temporary.path().bytes()));
  for (auto* list : dialog->findChildren<QAbstractItemView*>("listView")) {
    EXPECT_EQ(list->selectionMode(), QAbstractItemView::ExtendedSelection);
  }
  dialog->findChild<QLineEdit*>("fileNameEdit")->setText("\"one\" \"two\"");
  accept(*dialog);
  EXPECT_EQ(answers, 1);
  EXPECT_THAT(chosen, ElementsAre(one, two));
  settle();
  EXPECT_EQ(window.findChild<QFileDialog*>(), nullptr);
}

TEST_F(DialogFolderChooserTest, goesOnWhereTheLastFolderWasChosen) {
  (void)temporary.mkdir("one");
  QFileDialog* dialog = ask();
  dialog->setDirectory(QString::fromStdString(temporary.path().bytes()));
  dialog->findChild<QLineEdit*>("fileNameEdit")->setText("one");
  accept(*dialog);
  settle();
  EXPECT_EQ(ask()->directory().path().toStdString(), temporary.path().bytes());
}

TEST_F(DialogFolderChooserTest, givesNothingWhenCancelled) {
  ask()->reject();
  EXPECT_EQ(answers, 1);
  EXPECT_THAT(chosen, IsEmpty());
}

TEST(DialogFolderChooser, saysNothingOnceTheWindowIsGone) {
  DialogFolderChooser chooser;
  auto window = std::make_unique<QWidget>();
  int answers = 0;
  chooser.chooseFolders(window.get(), [&answers](const std::vector<FilePath>&) { ++answers; });
  window.reset();
  EXPECT_EQ(answers, 0);
}

}  // namespace pelmora::config

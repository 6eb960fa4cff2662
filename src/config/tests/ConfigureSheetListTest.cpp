#include "config/tests/ConfigureSheetFixture.h"

#include <gmock/gmock.h>
#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>

namespace pelmora::config {

namespace {

using testing::HasSubstr;

class ConfigureSheetListTest : public ConfigureSheetFixture {
 protected:
  /// All that the list holds, as it would be stored.
  [[nodiscard]] plist::Value rows() const {
    const auto& list = *sheet->sourceListViewController();
    return list.getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(false);
  }
  [[nodiscard]] plist::Value storedChance() const {
    return stored("Sources").get<plist::Array>()->at(0).get<plist::Dictionary>()->at("chance");
  }
  /// The field for the chance of the first source.
  [[nodiscard]] QLineEdit* openChance() const {
    QApplication::setActiveWindow(sheet->configWindow());
    SourceTable& table = *sheet->sourceListViewController()->sourceTable();
    const QModelIndex at = SourcesController::indexOf(*table.model(), 0, SourceColumn::chance);
    table.editCell(at);
    return qobject_cast<QLineEdit*>(table.indexWidget(at));
  }
  /// By their names, so many as have the focus in turn.
  [[nodiscard]] static std::vector<std::string> tabbed(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
      QWidget* const focus = QApplication::focusWidget();
      if (!focus) break;
      const auto* button = qobject_cast<QAbstractButton*>(focus);
      const bool isNamed = !focus->objectName().isEmpty() && !focus->objectName().startsWith("qt_");
      const QString name = isNamed ? focus->objectName() : focus->accessibleName();
      names.push_back((name.isEmpty() && button ? button->text().remove('&') : name).toStdString());
      QTest::keyClick(focus, Qt::Key_Tab);
    }
    return names;
  }
};

}  // namespace

TEST_F(ConfigureSheetListTest, loadsTheListWithoutAWalkAndUnloadsItAtItsEnd) {
  const FilePath folder = temporary.mkdir("a");
  temporary.write("a/1.jpg", "picture");
  storeSources({folder.bytes()});
  open();
  const auto list = view.sourceList();
  EXPECT_EQ(list->numLoaders(), 1);
  list->enumQueue().waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(list->dirItems().empty());
  EXPECT_EQ(list->sources()->entries().size(), 1U);
  ASSERT_EQ(sheet->sourceListViewController()->sources().size(), 1U);
  EXPECT_EQ(sheet->sourceListViewController()->sources()[0].url, folder);
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(list->numLoaders(), 0);
  EXPECT_TRUE(list->sources()->entries().empty());
}

TEST_F(ConfigureSheetListTest, laysEachOpeningsListOverTheEarlierOne) {
  open();
  const QDialog* const first = sheet->configWindow();
  auto* earlier = sheet->sourceListViewController()->view();
  click(QDialogButtonBox::Cancel);
  open();
  EXPECT_EQ(sheet->configWindow(), first);
  auto* later = sheet->sourceListViewController()->view();
  EXPECT_NE(earlier, later);
  auto& parent = outlet<QWidget>("sourceListViewParent");
  EXPECT_EQ(earlier->parentWidget(), &parent);
  EXPECT_EQ(later->parentWidget(), &parent);
  // The last child is on top.
  EXPECT_GT(parent.children().indexOf(later), parent.children().indexOf(earlier));
  EXPECT_TRUE(later->isVisible());
  EXPECT_FALSE(earlier->isVisible());
  for (const QSize size : {QSize(760, 720), QSize(900, 800)}) {
    sheet->configWindow()->resize(size);
    earlier->show();
    QApplication::processEvents();
    EXPECT_EQ(later->geometry(), parent.rect());
    EXPECT_EQ(earlier->geometry(), parent.rect());
    earlier->hide();
  }
}

TEST_F(ConfigureSheetListTest, showsTheStoredSourcesAgainAfterCancel) {
  storeSources({temporary.mkdir("a").bytes(), temporary.mkdir("b").bytes()});
  open();
  const plist::Value first = rows();
  sheet->sourceListViewController()->sourcesController().setDays({0}, 3);
  sheet->sourceListViewController()->sourcesController().removeObjects({1});
  EXPECT_NE(rows(), first);
  click(QDialogButtonBox::Cancel);
  open();
  EXPECT_EQ(rows(), first);
}

TEST_F(ConfigureSheetListTest, storesAgainWhatItWasGiven) {
  storeSources({temporary.mkdir("a").bytes()});
  const plist::Value given = stored("Sources");
  open();
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("Sources"), given);
}

TEST_F(ConfigureSheetListTest, hasUnloadedTheListWhenItSaysThatItHasEnded) {
  for (const auto button : {QDialogButtonBox::Ok, QDialogButtonBox::Cancel}) {
    open();
    EXPECT_EQ(view.sourceList()->numLoaders(), 1);
    int loaders = -1;
    sheet->sheetEnded = [&](ConfigureSheet::ReturnCode) {
      loaders = view.sourceList()->numLoaders();
    };
    click(button);
    EXPECT_EQ(loaders, 0);
  }
}

TEST_F(ConfigureSheetListTest, takesAChanceThatIsStillBeingTyped) {
  storeSources({temporary.mkdir("a").bytes()});
  open();
  openChance()->setText("12");
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(storedChance(), plist::Value(12.0));
  EXPECT_FALSE(sheet->configWindow()->isVisible());
}

TEST_F(ConfigureSheetListTest, staysOpenOverAChanceThatHadToBeCorrected) {
  storeSources({temporary.mkdir("a").bytes()});
  store("UsePolaroid", 1);
  open();
  outlet<QCheckBox>("polaroidCB").click();
  QLineEdit* const chance = openChance();
  chance->setText("250");
  click(QDialogButtonBox::Ok);
  EXPECT_TRUE(sheet->configWindow()->isVisible());
  EXPECT_EQ(chance->text(), "100");
  EXPECT_TRUE(chance->hasFocus());
  EXPECT_EQ(fakes.sound.beeps(), 1);
  EXPECT_EQ(stored("UsePolaroid"), plist::Value(1));
  EXPECT_EQ(view.sourceList()->numLoaders(), 1);
  click(QDialogButtonBox::Ok);
  EXPECT_FALSE(sheet->configWindow()->isVisible());
  EXPECT_EQ(storedChance(), plist::Value(100.0));
  EXPECT_EQ(fakes.sound.beeps(), 1);
}

TEST_F(ConfigureSheetListTest, isCancelledByTheFirstClickWhateverIsBeingTyped) {
  storeSources({temporary.mkdir("a").bytes()});
  open();
  openChance()->setText("250");
  QPushButton* const cancel = outlet<QDialogButtonBox>("buttons").button(QDialogButtonBox::Cancel);
  int ended = -1;
  sheet->sheetEnded = [&ended](ConfigureSheet::ReturnCode code) { ended = code; };
  QTest::mousePress(cancel, Qt::LeftButton);
  QApplication::processEvents();
  QTest::mouseRelease(cancel, Qt::LeftButton);
  QApplication::processEvents();
  EXPECT_EQ(ended, ConfigureSheet::kCancel);
  EXPECT_EQ(fakes.sound.beeps(), 0);
  EXPECT_EQ(storedChance(), plist::Value(100));
}

TEST_F(ConfigureSheetListTest, goesOnWithWhatIsBeingTypedWhenCancelIsLetGoBesideIt) {
  storeSources({temporary.mkdir("a").bytes()});
  open();
  QLineEdit* const chance = openChance();
  chance->setText("250");
  QPushButton* const cancel = outlet<QDialogButtonBox>("buttons").button(QDialogButtonBox::Cancel);
  QTest::mousePress(cancel, Qt::LeftButton);
  QApplication::processEvents();
  EXPECT_EQ(chance->text(), "250");
  QTest::mouseMove(cancel, QPoint(-50, -50));
  QTest::mouseRelease(cancel, Qt::LeftButton, {}, QPoint(-50, -50));
  QApplication::processEvents();
  EXPECT_TRUE(sheet->configWindow()->isVisible());
  EXPECT_TRUE(chance->hasFocus());
  EXPECT_EQ(chance->text(), "100");
  EXPECT_EQ(fakes.sound.beeps(), 1);
}

TEST_F(ConfigureSheetListTest, isTabbedThroughFromTheListToTheButtonsAtEveryOpening) {
  const std::vector<std::string> whole = {"sourceTable",
                                          "addButton",
                                          "removeButton",
                                          "changeButton",
                                          "Match",
                                          "Add row",
                                          "Add group",
                                          "Attribute",
                                          "Operator",
                                          "Text",
                                          "Add row",
                                          "Add group",
                                          "Remove",
                                          "numImagesStepper",
                                          "delayField",
                                          "polaroidCB",
                                          "showiTunesTrackCB",
                                          "iTunesTypePop",
                                          "OK",
                                          "Cancel"};
  storeSources({temporary.mkdir("a").bytes()});
  store("ShowiTunesTrack", 1);
  for (int opening = 0; opening < 3; ++opening) {
    open();
    QApplication::setActiveWindow(sheet->configWindow());
    sheet->sourceListViewController()->sourceTable()->selectRow(0);
    sheet->sourceListViewController()->sourceTable()->setFocus();
    EXPECT_EQ(tabbed(whole.size()), whole);
    EXPECT_TRUE(sheet->sourceListViewController()->sourceTable()->hasFocus());
    click(QDialogButtonBox::Cancel);
  }
}

TEST_F(ConfigureSheetListTest, beginsWithTheList) {
  open();
  QApplication::setActiveWindow(sheet->configWindow());
  EXPECT_TRUE(sheet->sourceListViewController()->sourceTable()->hasFocus());
}

TEST_F(ConfigureSheetListTest, goesToTheFilterByTheKeyOfItsLabel) {
  open();
  QApplication::setActiveWindow(sheet->configWindow());
  QTest::keyClick(sheet->configWindow(), Qt::Key_S, Qt::AltModifier);
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  EXPECT_EQ(QApplication::focusWidget()->accessibleName(), "Match");
}

TEST_F(ConfigureSheetListTest, namesStoredSourcesThatCannotBeFound) {
  storeSources({temporary.mkdir("a").bytes(), "/media/gone"});
  fakes.bookmarks.failToResolve(FilePath("/media/gone"));
  open();
  auto& notice = outlet<QLabel>("missingSourcesNotice");
  EXPECT_TRUE(notice.isVisible());
  EXPECT_THAT(notice.text().toStdString(), HasSubstr("/media/gone"));
  EXPECT_EQ(sheet->sourceListViewController()->sources().size(), 1U);
  click(QDialogButtonBox::Ok);
  EXPECT_EQ(stored("Sources").get<plist::Array>()->size(), 1U);
  open();
  EXPECT_FALSE(notice.isVisible());
}

}  // namespace pelmora::config

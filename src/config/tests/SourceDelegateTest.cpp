#include "config/SourceDelegate.h"

#include "config/tests/SourceListFixture.h"

#include <gmock/gmock.h>
#include <QComboBox>
#include <QImage>
#include <QPainter>

namespace pelmora::config {

namespace {

class SourceDelegateTest : public SourceListFixture {
 protected:
  ~SourceDelegateTest() override { QLocale::setDefault(QLocale::c()); }

  /// Types a chance into the first row, and ends with Return.
  QLineEdit* typeChance(const char* text) {
    QLineEdit* chance = field<QLineEdit>() ? field<QLineEdit>() : openChance(0);
    chance->selectAll();
    QTest::keyClicks(chance, QString::fromUtf8(text));
    QTest::keyClick(chance, Qt::Key_Return);
    settle();
    return field<QLineEdit>();
  }
  QComboBox* openScreens() {
    makeCurrent(0, SourceColumn::screens);
    press(Qt::Key_F2);
    return field<QComboBox>();
  }
  QImage painted(SourceColumn column, Qt::LayoutDirection direction = Qt::LeftToRight) {
    QImage image(200, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    option.direction = direction;
    table().itemDelegate()->paint(&painter, option, at(0, column));
    return image;
  }
};

}  // namespace

TEST_F(SourceDelegateTest, takesAChanceWithinItsBounds) {
  show(numbered(2));
  EXPECT_EQ(typeChance("55.5"), nullptr);
  EXPECT_EQ(entry(0).chance, 55.5);
  EXPECT_EQ(typeChance("0.001"), nullptr);
  EXPECT_EQ(entry(0).chance, 0.001);
  EXPECT_EQ(typeChance("100"), nullptr);
  EXPECT_EQ(entry(0).chance, 100);
  EXPECT_EQ(fakes.sound.beeps(), 0);
  EXPECT_EQ(changes, 3);
}

TEST_F(SourceDelegateTest, correctsAChanceBeyondItsBoundsAndGoesOn) {
  show(numbered(1));
  controller->sourcesController().setData(at(0, SourceColumn::chance), "40", Qt::EditRole);
  const std::pair<const char*, const char*> kCorrected[] = {
      {"0", "0.001"}, {"250", "100"}, {"abc", "0.001"}, {"-5", "0.001"}, {"", "0.001"}};
  int beeps = 0;
  for (const auto& [typed, corrected] : kCorrected) {
    QLineEdit* stillOpen = typed[0] == '\0' ? nullptr : typeChance(typed);
    if (typed[0] == '\0') {
      field<QLineEdit>()->clear();
      QTest::keyClick(field<QLineEdit>(), Qt::Key_Tab);
      stillOpen = field<QLineEdit>();
    }
    ASSERT_NE(stillOpen, nullptr) << typed;
    EXPECT_EQ(stillOpen->text(), QString(corrected)) << typed;
    EXPECT_EQ(stillOpen->selectedText(), QString(corrected)) << typed;
    EXPECT_EQ(fakes.sound.beeps(), ++beeps) << typed;
    EXPECT_EQ(entry(0).chance, 40) << typed;
  }
  QTest::keyClick(field<QLineEdit>(), Qt::Key_Return);
  settle();
  EXPECT_EQ(field<QLineEdit>(), nullptr);
  EXPECT_EQ(entry(0).chance, 0.001);
}

TEST_F(SourceDelegateTest, leavesTheChanceByEscape) {
  show(numbered(1));
  QLineEdit* chance = openChance(0);
  chance->setText("0");
  QTest::keyClick(chance, Qt::Key_Escape);
  settle();
  EXPECT_EQ(field<QLineEdit>(), nullptr);
  EXPECT_EQ(entry(0).chance, 100);
  EXPECT_EQ(fakes.sound.beeps(), 0);
}

TEST_F(SourceDelegateTest, beginsWithWhatIsTyped) {
  show(numbered(1));
  makeCurrent(0, SourceColumn::chance);
  press(Qt::Key_7);
  ASSERT_NE(field<QLineEdit>(), nullptr);
  EXPECT_EQ(field<QLineEdit>()->text(), "7");
}

TEST_F(SourceDelegateTest, readsADecimalCommaWhereTheLanguageHasOne) {
  show(numbered(1));
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(typeChance("0,5"), nullptr);
  EXPECT_EQ(entry(0).chance, 0.5);
  EXPECT_EQ(at(0, SourceColumn::chance).data().toString(), "0.5");
  EXPECT_EQ(typeChance("0.25"), nullptr);
  EXPECT_EQ(entry(0).chance, 0.25);
  QLocale::setDefault(QLocale::c());
  ASSERT_NE(typeChance("0,5"), nullptr);
  EXPECT_EQ(field<QLineEdit>()->text(), "0.001");
}

TEST_F(SourceDelegateTest, keepsTheFieldWhenTheUserGoesElsewhereWithAChanceBeyondItsBounds) {
  show(numbered(2));
  QLineEdit* chance = openChance(0);
  chance->setText("250");
  button(SourceListViewController::kAddSegment).setFocus();
  QCoreApplication::processEvents();
  ASSERT_EQ(field<QLineEdit>(), chance);
  EXPECT_TRUE(chance->hasFocus());
  EXPECT_EQ(chance->text(), "100");
  EXPECT_EQ(fakes.sound.beeps(), 1);
  button(SourceListViewController::kAddSegment).setFocus();
  settle();
  EXPECT_EQ(field<QLineEdit>(), nullptr);
  EXPECT_EQ(fakes.sound.beeps(), 1);
}

TEST_F(SourceDelegateTest, keepsTheFieldWhenAnotherRowIsClicked) {
  show(numbered(2));
  QLineEdit* chance = openChance(0);
  chance->setText("0");
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {},
                    table().visualRect(at(1, SourceColumn::folder)).center());
  QCoreApplication::processEvents();
  ASSERT_EQ(field<QLineEdit>(), chance);
  EXPECT_TRUE(chance->hasFocus());
  EXPECT_EQ(table().currentIndex().row(), 0);
  EXPECT_EQ(fakes.sound.beeps(), 1);
  EXPECT_EQ(entry(0).chance, 100);
}

TEST_F(SourceDelegateTest, staysOpenWhileAnotherWindowIsInFront) {
  QWidget other;
  show(numbered(1));
  QLineEdit* chance = openChance(0);
  chance->setText("250");
  other.show();
  QApplication::setActiveWindow(&other);
  settle();
  EXPECT_EQ(field<QLineEdit>(), chance);
  EXPECT_EQ(fakes.sound.beeps(), 0);
}

TEST_F(SourceDelegateTest, endsAnOpenFieldForTheSheet) {
  show(numbered(1));
  EXPECT_TRUE(controller->endEditing());
  openChance(0)->setText("250");
  EXPECT_FALSE(controller->endEditing());
  EXPECT_NE(field<QLineEdit>(), nullptr);
  EXPECT_EQ(entry(0).chance, 100);
  field<QLineEdit>()->setText("12");
  EXPECT_TRUE(controller->endEditing());
  settle();
  EXPECT_EQ(field<QLineEdit>(), nullptr);
  EXPECT_EQ(entry(0).chance, 12);
}

TEST_F(SourceDelegateTest, holdsTheBoundsAlsoWhereTheListEndsEditingItself) {
  show(numbered(2));
  openChance(0)->setText("250");
  makeCurrent(1, SourceColumn::folder);
  EXPECT_EQ(entry(0).chance, 100);
  openChance(0)->setText("0");
  makeCurrent(1, SourceColumn::folder);
  EXPECT_EQ(entry(0).chance, 0.001);
}

TEST_F(SourceDelegateTest, refusesNothingTypedOutsideTheList) {
  show(numbered(1));
  QLineEdit outside("0");
  EXPECT_TRUE(controller->controlTextShouldEndEditing(outside));
  EXPECT_EQ(outside.text(), "0");
  EXPECT_EQ(fakes.sound.beeps(), 0);
}

TEST_F(SourceDelegateTest, keepsWhatIsTypedWhileTheRestOfItsRowChanges) {
  show(numbered(1));
  openChance(0)->setText("12");
  controller->sourcesController().setEnabled({0}, false);
  controller->sourcesController().setDays({0}, 1);
  controller->setStatus(entry(0).url, {7, true});
  EXPECT_EQ(field<QLineEdit>()->text(), "12");
}

TEST_F(SourceDelegateTest, offersTheScreensAndTakesFreeLists) {
  show(numbered(1));
  QComboBox* screens = openScreens();
  ASSERT_NE(screens, nullptr);
  EXPECT_EQ(screens->currentText(), "All");
  EXPECT_EQ(screens->count(), 2);
  screens->lineEdit()->selectAll();
  QTest::keyClicks(screens, "1, 3");
  QTest::keyClick(screens, Qt::Key_Return);
  settle();
  EXPECT_EQ(field<QComboBox>(), nullptr);
  EXPECT_EQ(entry(0).screens, "1,3");
  EXPECT_EQ(openScreens()->currentText(), "1, 3");
  EXPECT_EQ(fakes.sound.beeps(), 0);
}

TEST_F(SourceDelegateTest, takesAScreenAsSoonAsItIsChosen) {
  show(numbered(1));
  QComboBox* screens = openScreens();
  screens->setCurrentIndex(1);
  Q_EMIT screens->activated(1);
  settle();
  EXPECT_EQ(field<QComboBox>(), nullptr);
  EXPECT_EQ(entry(0).screens, "1");
}

TEST_F(SourceDelegateTest, paintsTheDaysApart) {
  show(numbered(1));
  const QImage everyDay = painted(SourceColumn::days);
  controller->sourcesController().setDays({0}, 1);
  const QImage sunday = painted(SourceColumn::days);
  EXPECT_NE(everyDay, sunday);
  const QImage mirrored = painted(SourceColumn::days, Qt::RightToLeft);
  EXPECT_NE(mirrored, sunday);
  EXPECT_EQ(mirrored.mirrored(true, false), sunday);
}

TEST_F(SourceDelegateTest, marksAFolderThatIsGone) {
  show(numbered(1));
  const QImage there = painted(SourceColumn::folder);
  controller->setStatus(entry(0).url, {std::nullopt, true});
  EXPECT_NE(painted(SourceColumn::folder), there);
}

TEST_F(SourceDelegateTest, paintsWhatIsSwitchedOffFainter) {
  show(numbered(1));
  const QImage on = painted(SourceColumn::chance);
  controller->sourcesController().setEnabled({0}, false);
  EXPECT_NE(painted(SourceColumn::chance), on);
}

TEST_F(SourceDelegateTest, showsChoicesAtTheTrailingEdge) {
  const QRect cell(10, 0, 100, 20);
  EXPECT_EQ(SourceDelegate::choicesRect(cell, Qt::LeftToRight).right(), cell.right());
  EXPECT_EQ(SourceDelegate::choicesRect(cell, Qt::RightToLeft).left(), cell.left());
}

}  // namespace pelmora::config

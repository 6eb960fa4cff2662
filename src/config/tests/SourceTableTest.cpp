#include "config/SourceTable.h"

#include "config/DaysCellView.h"
#include "config/EnabledCellView.h"
#include "config/tests/SourceListFixture.h"

#include <gmock/gmock.h>
#include <QComboBox>
#include <QDialog>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QUrl>

namespace pelmora::config {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SourceTableTest : public SourceListFixture {
 protected:
  /// Of each kind.
  qsizetype numCells() {
    settle();
    qsizetype days = 0;
    qsizetype checkboxes = 0;
    for (QWidget* each : table().viewport()->findChildren<QWidget*>()) {
      days += dynamic_cast<DaysCellView*>(each) ? 1 : 0;
      checkboxes += dynamic_cast<EnabledCellView*>(each) ? 1 : 0;
    }
    EXPECT_EQ(days, checkboxes);
    return days;
  }
  int numRowsInSight() {
    const int first = table().rowAt(0);
    const int last = table().rowAt(table().viewport()->height() - 1);
    return (last < 0 ? table().model()->rowCount() - 1 : last) - first + 1;
  }
  QMenu* contextMenu() {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(&table(), &event);
    return controller->view()->findChild<QToolButton*>("changeButton")->menu();
  }
  static std::vector<std::string> enabledItems(const QMenu& menu) {
    std::vector<std::string> items;
    for (const QAction* item : menu.actions()) {
      if (item->isEnabled() && !item->isSeparator()) items.push_back(item->text().toStdString());
    }
    return items;
  }
  bool accepts(QMimeData& data, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
    QDragEnterEvent enter(QPoint(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table().viewport(), &enter);
    QDragMoveEvent move(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table().viewport(), &move);
    EXPECT_EQ(enter.isAccepted(), move.isAccepted());
    return enter.isAccepted();
  }
  Qt::DropAction drop(QMimeData& data, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
    QDropEvent event(QPointF(5, 5), actions, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(table().viewport(), &event);
    return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
  }
};

}  // namespace

TEST_F(SourceTableTest, hasWidgetsOnlyForTheRowsInSight) {
  show(numbered(5000));
  EXPECT_GT(numRowsInSight(), 5);
  EXPECT_LT(numRowsInSight(), 30);
  EXPECT_EQ(numCells(), numRowsInSight());
  QScrollBar* bar = table().verticalScrollBar();
  for (const int part : {1, 2, 3, 4}) {
    bar->setValue(bar->maximum() / 4 * part + part);
    EXPECT_EQ(numCells(), numRowsInSight());
    EXPECT_NE(table().cellAt(SourceColumn::days, table().rowAt(0)), nullptr);
  }
  EXPECT_EQ(table().cellAt(SourceColumn::days, 0), nullptr);
}

TEST_F(SourceTableTest, hasWidgetsForRowsThatComeIntoSight) {
  show(numbered(5000));
  const qsizetype before = numCells();
  controller->view()->resize(700, 500);
  EXPECT_EQ(numCells(), numRowsInSight());
  EXPECT_GT(numCells(), before);
  table().selectionModel()->select(
      QItemSelection(at(0, SourceColumn::enabled), at(4989, SourceColumn::screens)),
      QItemSelectionModel::Select);
  controller->removeSelectedFolders();
  EXPECT_EQ(numCells(), 10);
  controller->addFolders({temporary.mkdir("New")});
  EXPECT_EQ(numCells(), 11);
}

TEST_F(SourceTableTest, hasNoWidgetsBeforeItIsShown) {
  load();
  controller->setSources(entriesOf(numbered(50)));
  EXPECT_EQ(numCells(), 0);
}

TEST_F(SourceTableTest, showsInItsWidgetsWhatIsChangedElsewhere) {
  show(numbered(3));
  controller->sourcesController().setEnabled({1}, false);
  controller->sourcesController().setDays({1}, 1);
  auto* enabled = static_cast<EnabledCellView*>(table().cellAt(SourceColumn::enabled, 1));
  auto* days = static_cast<DaysCellView*>(table().cellAt(SourceColumn::days, 1));
  EXPECT_FALSE(enabled->cb().isChecked());
  EXPECT_TRUE(days->itemWithTag(0)->isChecked());
  EXPECT_FALSE(days->itemWithTag(1)->isChecked());
}

TEST_F(SourceTableTest, givesTheFolderTheRoomThatIsLeft) {
  show(numbered(1));
  const QHeaderView& header = *table().horizontalHeader();
  EXPECT_EQ(header.length(), table().viewport()->width());
  EXPECT_GT(header.sectionSize(static_cast<int>(SourceColumn::folder)), 200);
  const auto* days = static_cast<DaysCellView*>(table().cellAt(SourceColumn::days, 0));
  EXPECT_LE(days->minimumSizeHint().width(), days->width());
  EXPECT_LE(days->minimumSizeHint().height(), days->height());
}

TEST_F(SourceTableTest, switchesARowBySpace) {
  show(numbered(3));
  makeCurrent(1, SourceColumn::folder);
  press(Qt::Key_Space);
  EXPECT_FALSE(entry(1).enabled);
  makeCurrent(1, SourceColumn::chance);
  press(Qt::Key_Space);
  EXPECT_TRUE(entry(1).enabled);
  EXPECT_TRUE(entry(0).enabled);
  EXPECT_EQ(field<QLineEdit>(), nullptr);
}

TEST_F(SourceTableTest, removesTheSelectionByDelete) {
  show(numbered(3));
  table().selectRow(1);
  press(Qt::Key_Delete);
  EXPECT_THAT(urls(), ElementsAre(FilePath("/pictures/0"), FilePath("/pictures/2")));
  press(Qt::Key_Delete);
  EXPECT_EQ(urls().size(), 2U);
}

TEST_F(SourceTableTest, keepsReturnFromTheWindow) {
  QDialog window;
  show(numbered(2));
  controller->view()->setParent(&window);
  QPushButton ok("OK", &window);
  int clicks = 0;
  QObject::connect(&ok, &QPushButton::clicked, &window, [&clicks] { ++clicks; });
  ok.setDefault(true);
  window.show();
  controller->view()->show();
  QApplication::setActiveWindow(&window);
  table().setFocus();
  makeCurrent(0, SourceColumn::folder);
  press(Qt::Key_Return);
  QTest::keyClick(openChance(0), Qt::Key_Return);
  settle();
  makeCurrent(0, SourceColumn::screens);
  press(Qt::Key_Return);
  QTest::keyClick(field<QComboBox>(), Qt::Key_Return);
  settle();
  EXPECT_EQ(field<QComboBox>(), nullptr);
  EXPECT_EQ(clicks, 0);
  QTest::keyClick(&ok, Qt::Key_Return);
  EXPECT_EQ(clicks, 1);
  controller->view()->setParent(nullptr);
}

TEST_F(SourceTableTest, leavesTabToTheWindow) {
  show(numbered(3));
  makeCurrent(0, SourceColumn::folder);
  press(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &button(SourceListViewController::kAddSegment));
}

TEST_F(SourceTableTest, opensAFolderByReturnOrADoubleClick) {
  std::vector<FilePath> opened;
  show(numbered(3));
  controller->openFolder = [&opened](const FilePath& folder) { opened.push_back(folder); };
  makeCurrent(2, SourceColumn::folder);
  press(Qt::Key_Return);
  const QPoint place = table().visualRect(at(1, SourceColumn::folder)).center();
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, place);
  EXPECT_THAT(opened, ElementsAre(FilePath("/pictures/2"), FilePath("/pictures/1")));
}

TEST_F(SourceTableTest, opensTheDaysByKeys) {
  show(numbered(100));
  makeCurrent(90, SourceColumn::days);
  table().verticalScrollBar()->setValue(0);
  press(Qt::Key_Return);
  auto* cell = static_cast<DaysCellView*>(table().cellAt(SourceColumn::days, 90));
  ASSERT_NE(cell, nullptr);
  EXPECT_TRUE(cell->daysPop().menu()->isVisible());
  cell->daysPop().menu()->hide();
  makeCurrent(90, SourceColumn::folder);
  press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_TRUE(cell->daysPop().menu()->isVisible());
  cell->daysPop().menu()->hide();
}

TEST_F(SourceTableTest, opensTheChoicesForTheScreensByTheirArrow) {
  show(numbered(2));
  const QRect cell = table().visualRect(at(1, SourceColumn::screens));
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(field<QComboBox>(), nullptr);
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {},
                    QPoint(cell.right() - 3, cell.center().y()));
  QCoreApplication::processEvents();
  ASSERT_NE(field<QComboBox>(), nullptr);
  EXPECT_TRUE(field<QComboBox>()->view()->isVisible());
  field<QComboBox>()->hidePopup();
}

TEST_F(SourceTableTest, offersAMenuForWhatIsSelected) {
  std::vector<FilePath> opened;
  show(numbered(3));
  QMenu* menu = contextMenu();
  ASSERT_NE(menu, nullptr);
  EXPECT_THAT(enabledItems(*menu), IsEmpty());
  menu->close();
  settle();
  controller->openFolder = [&opened](const FilePath& folder) { opened.push_back(folder); };
  table().selectRow(1);
  menu = contextMenu();
  ASSERT_THAT(enabledItems(*menu),
              ElementsAre("O&n", "&Days", "&Chance", "&Screens", "&Open Folder", "&Remove"));
  menu->actions().at(menu->actions().size() - 2)->trigger();
  EXPECT_THAT(opened, ElementsAre(FilePath("/pictures/1")));
  menu->actions().back()->trigger();
  EXPECT_EQ(urls().size(), 2U);
  menu->close();
  settle();
  table().selectAll();
  menu = contextMenu();
  EXPECT_THAT(enabledItems(*menu), ElementsAre("O&n", "&Days", "&Chance", "&Screens", "&Remove"));
}

TEST_F(SourceTableTest, addsFoldersThatAreDroppedOnIt) {
  const FilePath folder = temporary.mkdir("caf\xe9");
  const FilePath file = temporary.write("file.jpg");
  show({});
  QMimeData data;
  data.setData("text/uri-list",
               QByteArray(("file://" + temporary.path().bytes() + "/caf%E9\r\nfile://" +
                           file.bytes() + "\r\nhttp://example.org/\r\n")
                              .c_str()));
  EXPECT_TRUE(accepts(data));
  // Never a move, after which the other program would delete the folder.
  EXPECT_EQ(drop(data), Qt::CopyAction);
  EXPECT_THAT(urls(), ElementsAre(folder));
  EXPECT_TRUE(accepts(data));
  EXPECT_EQ(drop(data), Qt::CopyAction);
  EXPECT_THAT(urls(), ElementsAre(folder));
}

TEST_F(SourceTableTest, wantsNothingDroppedButFolders) {
  show({});
  QMimeData file;
  file.setUrls({QUrl::fromLocalFile(QString::fromStdString(temporary.write("a.jpg").bytes()))});
  EXPECT_FALSE(accepts(file));
  QMimeData text;
  text.setText("/tmp");
  EXPECT_FALSE(accepts(text));
  QMimeData folder;
  folder.setUrls({QUrl::fromLocalFile(QString::fromStdString(temporary.path().bytes()))});
  EXPECT_FALSE(accepts(folder, Qt::MoveAction));
  EXPECT_TRUE(accepts(folder, Qt::LinkAction));
  EXPECT_THAT(urls(), IsEmpty());
}

TEST_F(SourceTableTest, saysWhatToDoWhileItIsEmpty) {
  show({});
  const QImage empty = table().viewport()->grab().toImage();
  QImage blank(empty.size(), empty.format());
  blank.fill(empty.pixelColor(0, 0));
  EXPECT_NE(empty, blank);
}

}  // namespace pelmora::config

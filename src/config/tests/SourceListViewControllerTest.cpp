#include "config/SourceListViewController.h"

#include "config/DaysCellView.h"
#include "config/EnabledCellView.h"
#include "config/tests/SourceListFixture.h"

#include <gmock/gmock.h>
#include <QAction>
#include <QMenu>
#include <QPushButton>

namespace pelmora::config {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SourceListViewControllerTest : public SourceListFixture {
 protected:
  DaysCellView& daysCell(int row) {
    return *static_cast<DaysCellView*>(table().cellAt(SourceColumn::days, row));
  }
  /// Opens the menu of a row, and clicks the item with that tag.
  void chooseDay(int row, int tag) {
    daysCell(row).openMenu();
    QMenu* menu = daysCell(row).daysPop().menu();
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(daysCell(row).itemWithTag(tag)).center());
    menu->hide();
  }
  std::vector<int> tickedDays(int row) {
    std::vector<int> days;
    for (int day = 0; day < 7; ++day) {
      if (daysCell(row).itemWithTag(day)->isChecked()) days.push_back(day);
    }
    return days;
  }
  std::string loadError() {
    const auto loaded = SourceListViewController::load(services, chooser);
    return loaded ? "" : loaded.error().message;
  }
};

}  // namespace

TEST_F(SourceListViewControllerTest, cannotBeMadeWithoutItsInterfaceFile) {
  services.resourceFolder = temporary.path();
  EXPECT_THAT(loadError(), HasSubstr("SourceListViewController.ui"));
}

TEST_F(SourceListViewControllerTest, cannotBeMadeOfAnInterfaceFileThatLacksItsParts) {
  services.resourceFolder = temporary.path();
  temporary.write("SourceListViewController.ui", "<ui version=\"4.0\"><wid");
  EXPECT_THAT(loadError(), HasSubstr("SourceListViewController.ui"));
  const std::string begin = "<ui version=\"4.0\"><widget class=\"QWidget\" name=\"list\">";
  const std::string end = "</widget></ui>";
  temporary.write("SourceListViewController.ui", begin + end);
  EXPECT_THAT(loadError(), HasSubstr("sourceTable"));
  temporary.write("SourceListViewController.ui",
                  begin + "<widget class=\"SourceTable\" name=\"sourceTable\"/>" + end);
  EXPECT_THAT(loadError(), HasSubstr("addButton"));
  temporary.write("SourceListViewController.ui",
                  begin +
                      "<widget class=\"SourceTable\" name=\"sourceTable\"/>"
                      "<widget class=\"QPushButton\" name=\"addButton\"/>"
                      "<widget class=\"QPushButton\" name=\"removeButton\"/>" +
                      end);
  EXPECT_THAT(loadError(), HasSubstr("changeButton"));
}

TEST_F(SourceListViewControllerTest, addsFoldersThatAreShownOnEveryDayAndScreen) {
  const FilePath folder = temporary.mkdir("Pictures");
  show({});
  QTest::mouseClick(&button(SourceListViewController::kAddSegment), Qt::LeftButton);
  EXPECT_THAT(chooser.parents, ElementsAre(controller->view()->window()));
  chooser.answer({folder});
  ASSERT_EQ(controller->sources().size(), 1U);
  EXPECT_TRUE(entry(0).enabled);
  EXPECT_EQ(entry(0).url, folder);
  EXPECT_EQ(entry(0).chance, 100);
  EXPECT_EQ(entry(0).days, 127U);
  EXPECT_EQ(entry(0).screens, "");
  EXPECT_EQ(changes, 1);
}

TEST_F(SourceListViewControllerTest, selectsWhatItAdds) {
  show(numbered(50));
  chooser.answer = nullptr;
  controller->addOrRemoveFolder(SourceListViewController::kAddSegment);
  chooser.answer({temporary.mkdir("a"), temporary.mkdir("b")});
  EXPECT_EQ(table().selectionModel()->selectedRows().size(), 2);
  EXPECT_EQ(table().currentIndex().row(), 50);
  EXPECT_TRUE(table().viewport()->rect().contains(table().visualRect(table().currentIndex())));
  EXPECT_TRUE(button(SourceListViewController::kRemoveSegment).isEnabled());
}

TEST_F(SourceListViewControllerTest, addsNoFolderTwice) {
  const FilePath folder = temporary.mkdir("Pictures");
  const FilePath other = temporary.mkdir("Other");
  const FilePath samePlace = temporary.link("Link", folder);
  show({folder});
  controller->addFolders({folder, samePlace, other, other});
  EXPECT_THAT(urls(), ElementsAre(folder, other));
  EXPECT_EQ(changes, 1);
  controller->addFolders({other});
  EXPECT_EQ(changes, 1);
}

TEST_F(SourceListViewControllerTest, takesAFolderOfWhichNothingIsKnownForANewOne) {
  const FilePath away = temporary.path() / "away";
  show({away});
  controller->addFolders({away});
  EXPECT_THAT(urls(), ElementsAre(away, away));
}

TEST_F(SourceListViewControllerTest, addsNothingWhenTheQuestionIsCancelled) {
  show({});
  controller->addNewFolder();
  chooser.answer({});
  EXPECT_THAT(urls(), IsEmpty());
  EXPECT_EQ(changes, 0);
}

TEST_F(SourceListViewControllerTest, isNotMissedByAQuestionThatOutlivesIt) {
  show({});
  controller->addNewFolder();
  controller.reset();
  chooser.answer({temporary.mkdir("Pictures")});
  EXPECT_EQ(changes, 0);
}

TEST_F(SourceListViewControllerTest, canRemoveWhileSomethingIsSelected) {
  show(numbered(3));
  QAbstractButton& remove = button(SourceListViewController::kRemoveSegment);
  EXPECT_TRUE(button(SourceListViewController::kAddSegment).isEnabled());
  EXPECT_FALSE(remove.isEnabled());
  table().selectRow(1);
  EXPECT_TRUE(remove.isEnabled());
  QTest::mouseClick(&remove, Qt::LeftButton);
  EXPECT_THAT(urls(), ElementsAre(FilePath("/pictures/0"), FilePath("/pictures/2")));
  EXPECT_FALSE(remove.isEnabled());
  EXPECT_EQ(changes, 1);
}

TEST_F(SourceListViewControllerTest, removesAllThatIsSelected) {
  show(numbered(5));
  table().selectAll();
  table().selectionModel()->select(at(2, SourceColumn::folder),
                                   QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
  controller->removeSelectedFolders();
  EXPECT_THAT(urls(), ElementsAre(FilePath("/pictures/2")));
}

TEST_F(SourceListViewControllerTest, doesNothingForOtherButtons) {
  show(numbered(2));
  table().selectAll();
  controller->addOrRemoveFolder(-1);
  controller->addOrRemoveFolder(2);
  EXPECT_EQ(urls().size(), 2U);
  EXPECT_THAT(chooser.parents, IsEmpty());
}

TEST_F(SourceListViewControllerTest, takesADayFromEveryDayAndGivesItBack) {
  show(numbered(2));
  chooseDay(1, DaysCellView::kEveryDayTag);
  EXPECT_EQ(entry(1).days, 127U);
  chooseDay(1, 3);
  EXPECT_EQ(entry(1).days, 127U - 8U);
  EXPECT_THAT(tickedDays(1), ElementsAre(0, 1, 2, 4, 5, 6));
  chooseDay(1, 3);
  EXPECT_EQ(entry(1).days, 127U);
  EXPECT_EQ(entry(0).days, 127U);
}

TEST_F(SourceListViewControllerTest, buildsUpDaysFromNone) {
  show(numbered(1));
  chooseDay(0, DaysCellView::kNoDaysTag);
  EXPECT_EQ(entry(0).days, 0U);
  EXPECT_THAT(tickedDays(0), IsEmpty());
  chooseDay(0, 0);
  chooseDay(0, 6);
  EXPECT_EQ(entry(0).days, 65U);
  EXPECT_THAT(tickedDays(0), ElementsAre(0, 6));
  EXPECT_EQ(changes, 3);
  controller->dayChosen(daysCell(0), DaysCellView::kTitleTag);
  EXPECT_EQ(entry(0).days, 65U);
  EXPECT_EQ(changes, 3);
}

TEST_F(SourceListViewControllerTest, givesARowEveryDayAtOnce) {
  show(numbered(2));
  controller->sourcesController().setDays({1}, 10);
  chooseDay(1, DaysCellView::kEveryDayTag);
  EXPECT_EQ(entry(1).days, 127U);
  EXPECT_THAT(tickedDays(1), ElementsAre(0, 1, 2, 3, 4, 5, 6));
}

TEST_F(SourceListViewControllerTest, leavesDaysThatItDoesNotKnowAlone) {
  show(numbered(1));
  controller->sourcesController().setDays({0}, 0x101);
  chooseDay(0, 1);
  EXPECT_EQ(entry(0).days, 0x103U);
}

TEST_F(SourceListViewControllerTest, switchesASourceByItsCheckbox) {
  show(numbered(2));
  auto* cell = static_cast<EnabledCellView*>(table().cellAt(SourceColumn::enabled, 1));
  EXPECT_TRUE(cell->cb().isChecked());
  QTest::mouseClick(&cell->cb(), Qt::LeftButton, {}, QPoint(8, cell->cb().height() / 2));
  EXPECT_FALSE(entry(1).enabled);
  EXPECT_TRUE(entry(0).enabled);
  EXPECT_EQ(changes, 1);
}

TEST_F(SourceListViewControllerTest, offersEveryScreenThereIsAtTheStart) {
  for (std::uint64_t number = 2; number <= 3; ++number) {
    fakes.displays.displays.push_back(
        platform::FakeDisplays::display(number, {{0, 0}, {800, 600}}));
  }
  load();
  fakes.displays.displays.pop_back();
  EXPECT_EQ(controller->screensMenuList(), QStringList({"All", "1", "2", "3"}));
}

TEST_F(SourceListViewControllerTest, storesFiveValuesOfASource) {
  const FilePath folder = temporary.mkdir("caf\xe9");
  std::vector<sources::SourceEntry> entries = entriesOf({folder});
  entries[0].enabled = false;
  entries[0].chance = 55.5;
  entries[0].days = 65;
  entries[0].screens = "1,3";
  load();
  controller->setSources(entries);
  const plist::Dictionary expected{{"bookmark", platform::FakeBookmarks::bookmarkOf(folder)},
                                   {"enabled", false},
                                   {"chance", 55.5},
                                   {"days", 65},
                                   {"screens", "1,3"}};
  for (const bool securityScoped : {false, true}) {
    EXPECT_EQ(plist::Value(controller->getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(
                  securityScoped)),
              plist::Value(plist::Array{expected}));
  }
  EXPECT_EQ(changes, 0);
}

TEST_F(SourceListViewControllerTest, storesAChanceAsANumberOfItsKind) {
  show({});
  controller->addFolders({temporary.mkdir("Pictures")});
  const auto storedChance = [this] {
    const auto stored = controller->getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(false);
    return stored.at(0).get<plist::Dictionary>()->at("chance");
  };
  EXPECT_EQ(storedChance(), plist::Value(100));
  for (const double typed : {55.5, 12.0}) {
    controller->sourcesController().setData(at(0, SourceColumn::chance), typed, Qt::EditRole);
    EXPECT_EQ(storedChance(), plist::Value(typed));
  }
}

TEST_F(SourceListViewControllerTest, leavesAFolderOutThatCannotBeFoundAgain) {
  load();
  controller->setSources(entriesOf(numbered(3)));
  fakes.bookmarks.failToMake(FilePath("/pictures/1"));
  EXPECT_EQ(controller->getSourcesForStoringInPrefsMakingSecurityScopedBookmarks(false).size(), 2U);
  EXPECT_THAT(fakes.log.lines(),
              ElementsAre("Could not create bookmark for url '/pictures/1': no bookmark for "
                          "/pictures/1"));
}

TEST_F(SourceListViewControllerTest, startsAnewWithOtherSources) {
  show(numbered(3));
  table().selectAll();
  controller->setSources(entriesOf(numbered(1)));
  settle();
  EXPECT_EQ(controller->sourcesController().rowCount(), 1);
  EXPECT_FALSE(button(SourceListViewController::kRemoveSegment).isEnabled());
  ASSERT_NE(table().cellAt(SourceColumn::days, 0), nullptr);
  EXPECT_EQ(changes, 0);
}

TEST_F(SourceListViewControllerTest, leavesNothingBehindThatWouldCallIt) {
  QWidget window;
  show(numbered(2));
  QWidget* view = controller->view();
  view->setParent(&window);
  window.show();
  auto* add = view->findChild<QPushButton*>("addButton");
  controller.reset();
  settle();
  EXPECT_FALSE(view->isEnabled());
  QTest::keyClick(view->findChild<QTableView*>(), Qt::Key_Delete);
  add->setEnabled(true);
  add->click();
  EXPECT_THAT(chooser.parents, IsEmpty());
}

TEST_F(SourceListViewControllerTest, survivesItsView) {
  show(numbered(2));
  delete controller->view();
  EXPECT_EQ(controller->view(), nullptr);
  EXPECT_EQ(controller->sourceTable(), nullptr);
  EXPECT_TRUE(controller->endEditing());
  controller->addNewFolder();
  controller->removeSelectedFolders();
  EXPECT_EQ(controller->sources().size(), 2U);
}

}  // namespace pelmora::config

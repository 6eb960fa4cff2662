#include "config/SourceMenu.h"

#include "config/tests/SourceListFixture.h"

#include <gmock/gmock.h>
#include <QAction>
#include <QToolButton>

namespace pelmora::config {

namespace {

using testing::ElementsAre;

class SourceMenuTest : public SourceListFixture {
 protected:
  /// Opens the menu of the selected rows by its button.
  QMenu& open() {
    changeButton().click();
    return *changeButton().menu();
  }
  QToolButton& changeButton() {
    return *controller->view()->findChild<QToolButton*>("changeButton");
  }
  static QAction* item(const QMenu& menu, const QString& text) {
    for (QAction* each : menu.actions()) {
      if (each->text().remove('&') == text) return each;
    }
    ADD_FAILURE() << "there is no " << text.toStdString();
    return nullptr;
  }
  static QMenu& submenu(const QMenu& menu, const QString& text) {
    return *item(menu, text)->menu();
  }
  void choose(const QString& of, const QString& text) {
    QMenu& menu = open();
    item(submenu(menu, of), text)->trigger();
    menu.close();
    settle();
  }
  static std::vector<std::string> ticked(const QMenu& menu) {
    std::vector<std::string> items;
    for (const QAction* each : menu.actions()) {
      if (each->isChecked()) items.push_back(each->text().toStdString());
    }
    return items;
  }
  template <typename Value>
  std::vector<Value> each(Value sources::SourceEntry::*value) {
    std::vector<Value> values;
    for (const sources::SourceEntry& entry : controller->sources()) values.push_back(entry.*value);
    return values;
  }
};

}  // namespace

TEST_F(SourceMenuTest, isThereWhileSomethingIsSelected) {
  show(numbered(2));
  EXPECT_FALSE(changeButton().isEnabled());
  table().selectRow(0);
  EXPECT_TRUE(changeButton().isEnabled());
  table().clearSelection();
  EXPECT_FALSE(changeButton().isEnabled());
}

TEST_F(SourceMenuTest, switchesAllThatIsSelected) {
  show(numbered(3));
  controller->sourcesController().setEnabled({1}, false);
  table().selectAll();
  changes = 0;
  QAction* on = item(open(), "On");
  EXPECT_FALSE(on->isChecked());
  on->trigger();
  EXPECT_THAT(each(&sources::SourceEntry::enabled), ElementsAre(true, true, true));
  EXPECT_EQ(changes, 1);
  on = item(open(), "On");
  EXPECT_TRUE(on->isChecked());
  on->trigger();
  EXPECT_THAT(each(&sources::SourceEntry::enabled), ElementsAre(false, false, false));
}

TEST_F(SourceMenuTest, choosesTheDaysOfAllThatIsSelected) {
  show(numbered(3));
  controller->sourcesController().setDays({0}, 0b11);
  controller->sourcesController().setDays({1}, 0b10);
  table().selectAll();
  EXPECT_THAT(ticked(submenu(open(), "Days")), ElementsAre("Monday"));
  choose("Days", "Sunday");
  EXPECT_THAT(each(&sources::SourceEntry::days), ElementsAre(0b11, 0b11, 127));
  choose("Days", "Monday");
  EXPECT_THAT(each(&sources::SourceEntry::days), ElementsAre(0b01, 0b01, 125));
  choose("Days", "No Days");
  EXPECT_THAT(each(&sources::SourceEntry::days), ElementsAre(0, 0, 0));
  choose("Days", "Every Day");
  EXPECT_THAT(each(&sources::SourceEntry::days), ElementsAre(127, 127, 127));
}

TEST_F(SourceMenuTest, leavesOthersAlone) {
  show(numbered(2));
  table().selectRow(1);
  choose("Days", "No Days");
  choose("Chance", "25");
  choose("Screens", "1");
  EXPECT_THAT(each(&sources::SourceEntry::days), ElementsAre(127, 0));
  EXPECT_THAT(each(&sources::SourceEntry::chance), ElementsAre(100, 25));
  EXPECT_THAT(each(&sources::SourceEntry::screens), ElementsAre("", "1"));
  choose("Screens", "All");
  EXPECT_THAT(each(&sources::SourceEntry::screens), ElementsAre("", ""));
}

TEST_F(SourceMenuTest, opensTheFieldOfASingleSource) {
  show(numbered(2));
  table().selectAll();
  EXPECT_FALSE(item(submenu(open(), "Chance"), "Other…")->isEnabled());
  table().selectRow(1);
  choose("Chance", "Other…");
  ASSERT_NE(field<QLineEdit>(), nullptr);
  EXPECT_EQ(table().currentIndex().row(), 1);
  field<QLineEdit>()->setText("12");
  ASSERT_TRUE(controller->endEditing());
  EXPECT_EQ(entry(1).chance, 12);
}

TEST_F(SourceMenuTest, waitsForAnEditThatMayNotEndYet) {
  show(numbered(2));
  table().selectRow(0);
  openChance(0)->setText("0");
  changeButton().click();
  EXPECT_FALSE(item(*changeButton().menu(), "On")->isEnabled());
  EXPECT_EQ(field<QLineEdit>()->text(), "0.001");
}

TEST_F(SourceMenuTest, goesWithItsList) {
  show(numbered(2));
  QWidget window;
  controller->view()->setParent(&window);
  window.show();
  table().selectAll();
  const QPointer<QMenu> menu = &open();
  ASSERT_TRUE(menu);
  controller.reset();
  EXPECT_FALSE(menu);
}

}  // namespace pelmora::config

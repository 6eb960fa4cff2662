#include "config/DaysCellView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QAction>
#include <QLocale>
#include <QMenu>
#include <QTest>

namespace pelmora::config {

namespace {

using testing::ElementsAre;

struct Item {
  std::string title;
  int tag = 0;
  bool operator==(const Item&) const = default;
};

class DaysCellViewTest : public testing::Test {
 protected:
  ~DaysCellViewTest() override { QLocale::setDefault(QLocale::c()); }

  std::vector<Item> items() {
    std::vector<Item> items;
    for (const QAction* item : cell.daysPop().menu()->actions()) {
      items.push_back({item->text().toStdString(), item->data().toInt()});
    }
    return items;
  }

  DaysCellView cell;
};

}  // namespace

TEST_F(DaysCellViewTest, listsEveryDayNoDaysAndTheWeek) {
  cell.fill({}, 127);
  EXPECT_THAT(items(), ElementsAre(Item{"Days", -1}, Item{"Every Day", 10}, Item{"No Days", 11},
                                   Item{"Sunday", 0}, Item{"Monday", 1}, Item{"Tuesday", 2},
                                   Item{"Wednesday", 3}, Item{"Thursday", 4}, Item{"Friday", 5},
                                   Item{"Saturday", 6}));
  cell.fill({}, 127);
  EXPECT_EQ(items().size(), 10U);
}

TEST_F(DaysCellViewTest, namesTheDaysInTheUsersLanguage) {
  QLocale::setDefault(QLocale(QLocale::German));
  cell.fill({}, 127);
  EXPECT_EQ(cell.itemWithTag(0)->text(), "Sonntag");
  EXPECT_EQ(cell.itemWithTag(6)->text(), "Samstag");
}

TEST_F(DaysCellViewTest, ticksTheDaysOfAMask) {
  cell.fill({}, 65);
  EXPECT_TRUE(cell.itemWithTag(0)->isChecked());
  EXPECT_FALSE(cell.itemWithTag(1)->isChecked());
  EXPECT_TRUE(cell.itemWithTag(6)->isChecked());
  cell.showDays(2);
  EXPECT_FALSE(cell.itemWithTag(0)->isChecked());
  EXPECT_TRUE(cell.itemWithTag(1)->isChecked());
  EXPECT_FALSE(cell.itemWithTag(DaysCellView::kEveryDayTag)->isCheckable());
}

TEST_F(DaysCellViewTest, keepsItsTitleAndTellsTheDaysBesideIt) {
  cell.fill({}, 65);
  EXPECT_EQ(cell.daysPop().text(), "Days");
  EXPECT_EQ(cell.daysPop().toolTip(), "Sun, Sat");
  EXPECT_EQ(cell.daysPop().accessibleDescription(), "Sun, Sat");
  cell.showDays(127);
  EXPECT_EQ(cell.daysPop().text(), "Days");
  EXPECT_EQ(cell.daysPop().toolTip(), "Every Day");
}

TEST_F(DaysCellViewTest, opensAMenuWithoutItsTitle) {
  cell.fill({}, 0);
  cell.show();
  cell.openMenu();
  EXPECT_TRUE(cell.daysPop().menu()->isVisible());
  EXPECT_FALSE(cell.itemWithTag(DaysCellView::kTitleTag)->isVisible());
  cell.daysPop().menu()->hide();
}

TEST_F(DaysCellViewTest, tellsWhatWasChosen) {
  std::vector<int> tags;
  cell.chosen = [&tags](int tag) { tags.push_back(tag); };
  cell.fill({}, 0);
  cell.itemWithTag(4)->trigger();
  cell.itemWithTag(DaysCellView::kNoDaysTag)->trigger();
  EXPECT_THAT(tags, ElementsAre(4, 11));
  EXPECT_EQ(cell.itemWithTag(7), nullptr);
}

}  // namespace pelmora::config

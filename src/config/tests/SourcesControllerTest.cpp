#include "config/SourcesController.h"

#include "platform/fake/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace pelmora::config {

namespace {

using testing::ElementsAre;

class SourcesControllerTest : public testing::Test {
 protected:
  SourcesControllerTest() {
    model.setContent({entry("/a"), entry("/b"), entry("/c"), entry("/d")});
    model.sourcesChanged = [this] { ++changes; };
  }

  static sources::SourceEntry entry(const char* path) {
    sources::SourceEntry entry;
    entry.url = FilePath(path);
    return entry;
  }
  QVariant value(int row, SourceColumn column, int role = Qt::DisplayRole) {
    return SourcesController::indexOf(model, row, column).data(role);
  }
  std::string text(int row, SourceColumn column, int role = Qt::DisplayRole) {
    return value(row, column, role).toString().toStdString();
  }
  bool type(int row, SourceColumn column, const char* typed) {
    return model.setData(SourcesController::indexOf(model, row, column), QString(typed),
                         Qt::EditRole);
  }
  std::vector<std::string> urls() {
    std::vector<std::string> urls;
    for (const sources::SourceEntry& each : model.content()) urls.push_back(each.url.bytes());
    return urls;
  }

  platform::RecordingLog log;
  SourcesController model{log};
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
  int changes = 0;
};

}  // namespace

TEST_F(SourcesControllerTest, hasARowForEachSource) {
  EXPECT_EQ(model.rowCount(), 4);
  EXPECT_EQ(model.columnCount(), kNumSourceColumns);
  EXPECT_EQ(text(1, SourceColumn::folder), "/b");
  EXPECT_EQ(text(1, SourceColumn::pictures), "");
  EXPECT_EQ(text(1, SourceColumn::chance), "100");
  EXPECT_EQ(text(1, SourceColumn::screens), "All");
  EXPECT_EQ(value(1, SourceColumn::enabled, Qt::CheckStateRole).toInt(), Qt::Checked);
  EXPECT_EQ(value(1, SourceColumn::days, SourcesController::kDaysRole).toULongLong(), 127U);
}

TEST_F(SourcesControllerTest, hasATitleAndAHelpForEachColumn) {
  for (int column = 0; column < kNumSourceColumns; ++column) {
    EXPECT_FALSE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty());
    EXPECT_FALSE(model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().isEmpty());
  }
  EXPECT_FALSE(model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
  EXPECT_FALSE(model.headerData(kNumSourceColumns, Qt::Horizontal, Qt::DisplayRole).isValid());
}

TEST_F(SourcesControllerTest, removesRowsInWhateverOrderTheyAreNamed) {
  model.removeObjects({3, 0, 1, 1, 9, -1});
  EXPECT_THAT(urls(), ElementsAre("/c"));
  EXPECT_EQ(changes, 1);
  model.removeObjects({});
  model.removeObjects({5});
  EXPECT_EQ(changes, 1);
}

TEST_F(SourcesControllerTest, keepsTheOrderInWhichSourcesAreAdded) {
  model.addObjects({entry("/x"), entry("/e")});
  model.addObjects({});
  EXPECT_THAT(urls(), ElementsAre("/a", "/b", "/c", "/d", "/x", "/e"));
  EXPECT_EQ(changes, 1);
}

TEST_F(SourcesControllerTest, readsAndShowsChancesAsPlainNumbers) {
  EXPECT_TRUE(type(0, SourceColumn::chance, "0.5"));
  EXPECT_EQ(model.content()[0].chance, 0.5);
  EXPECT_EQ(text(0, SourceColumn::chance), "0.5");
  EXPECT_TRUE(type(0, SourceColumn::chance, "2.5x"));
  EXPECT_EQ(model.content()[0].chance, 2.5);
  EXPECT_TRUE(type(0, SourceColumn::chance, "abc"));
  EXPECT_EQ(model.content()[0].chance, 0);
  EXPECT_EQ(changes, 3);
}

TEST_F(SourcesControllerTest, readsAndShowsScreensAsLists) {
  EXPECT_TRUE(type(0, SourceColumn::screens, "1, 3"));
  EXPECT_EQ(model.content()[0].screens, "1,3");
  EXPECT_EQ(text(0, SourceColumn::screens), "1, 3");
  EXPECT_EQ(text(0, SourceColumn::screens, Qt::ToolTipRole), "1, 3");
  EXPECT_TRUE(type(0, SourceColumn::screens, "All"));
  EXPECT_EQ(model.content()[0].screens, "");
  EXPECT_EQ(changes, 2);
}

TEST_F(SourcesControllerTest, switchesSources) {
  const QModelIndex box = SourcesController::indexOf(model, 2, SourceColumn::enabled);
  EXPECT_TRUE(model.setData(box, Qt::Unchecked, Qt::CheckStateRole));
  EXPECT_FALSE(model.content()[2].enabled);
  EXPECT_FALSE(value(2, SourceColumn::chance, SourcesController::kIsEnabledRole).toBool());
  EXPECT_EQ(text(2, SourceColumn::enabled, Qt::AccessibleTextRole), "Off");
  EXPECT_EQ(changes, 1);
}

TEST_F(SourcesControllerTest, takesNothingWhereNothingCanBeTyped) {
  EXPECT_FALSE(type(0, SourceColumn::folder, "/x"));
  EXPECT_FALSE(type(0, SourceColumn::pictures, "3"));
  EXPECT_FALSE(model.setData({}, "x", Qt::EditRole));
  model.setDays({17}, 1);
  model.setEnabled({-1}, false);
  EXPECT_EQ(changes, 0);
}

TEST_F(SourcesControllerTest, tellsTheDaysInWords) {
  EXPECT_EQ(text(0, SourceColumn::days, Qt::ToolTipRole), "Every Day");
  model.setDays({0}, 0);
  EXPECT_EQ(text(0, SourceColumn::days, Qt::AccessibleTextRole), "No Days");
  EXPECT_EQ(changes, 1);
}

TEST_F(SourcesControllerTest, showsHowManyPicturesThereAre) {
  QSignalSpy spy(&model, &QAbstractItemModel::dataChanged);
  model.setStatus(FilePath("/b"), {42, false});
  EXPECT_EQ(text(1, SourceColumn::pictures), "42");
  EXPECT_EQ(text(0, SourceColumn::pictures), "");
  EXPECT_EQ(spy.count(), 1);
  model.setStatus(FilePath("/b"), {42, false});
  EXPECT_EQ(spy.count(), 1);
  EXPECT_TRUE(value(1, SourceColumn::pictures, Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
  EXPECT_EQ(changes, 0);
  model.setContent({entry("/b")});
  EXPECT_EQ(text(0, SourceColumn::pictures), "");
}

TEST_F(SourcesControllerTest, tellsThatAFolderIsGone) {
  EXPECT_EQ(text(1, SourceColumn::folder, Qt::ToolTipRole), "/b");
  EXPECT_EQ(text(1, SourceColumn::folder, Qt::AccessibleDescriptionRole), "");
  model.setStatus(FilePath("/b"), {std::nullopt, true});
  EXPECT_EQ(text(1, SourceColumn::folder, Qt::ToolTipRole), "/b\nThis folder cannot be found.");
  EXPECT_EQ(text(1, SourceColumn::folder, Qt::AccessibleDescriptionRole),
            "This folder cannot be found.");
  EXPECT_TRUE(value(1, SourceColumn::folder, SourcesController::kIsGoneRole).toBool());
  EXPECT_FALSE(value(0, SourceColumn::folder, SourcesController::kIsGoneRole).toBool());
  model.setStatus(FilePath("/b"), {});
  EXPECT_FALSE(value(1, SourceColumn::folder, SourcesController::kIsGoneRole).toBool());
}

TEST_F(SourcesControllerTest, keepsPathsThatAreNoText) {
  model.setContent({entry("/caf\xe9")});
  EXPECT_EQ(text(0, SourceColumn::folder), "/caf\xef\xbf\xbd");
  EXPECT_EQ(model.content()[0].url.bytes(), "/caf\xe9");
  model.setStatus(FilePath("/caf\xe9"), {1, false});
  EXPECT_EQ(text(0, SourceColumn::pictures), "1");
}

}  // namespace pelmora::config

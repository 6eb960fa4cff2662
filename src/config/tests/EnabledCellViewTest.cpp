#include "config/EnabledCellView.h"

#include <gtest/gtest.h>
#include <QTest>

namespace pelmora::config {

TEST(EnabledCellView, holdsACheckboxInItsMiddle) {
  EnabledCellView cell;
  cell.resize(60, 30);
  cell.show();
  EXPECT_NEAR(cell.cb().geometry().center().x(), 30, 2);
  EXPECT_NEAR(cell.cb().geometry().center().y(), 15, 2);
  EXPECT_FALSE(cell.cb().accessibleName().isEmpty());
  QTest::mouseClick(&cell.cb(), Qt::LeftButton, {}, QPoint(8, cell.cb().height() / 2));
  EXPECT_TRUE(cell.cb().isChecked());
}

TEST(EnabledCellView, leavesTheKeyboardToItsList) {
  EnabledCellView cell;
  EXPECT_EQ(cell.cb().focusPolicy(), Qt::NoFocus);
  EXPECT_FALSE(cell.sourceDict().isValid());
}

}  // namespace pelmora::config

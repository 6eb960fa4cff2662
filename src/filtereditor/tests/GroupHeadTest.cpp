#include "filtereditor/GroupHead.h"

#include <gtest/gtest.h>
#include <QComboBox>
#include <QCoreApplication>
#include <QWheelEvent>

namespace pelmora::filtereditor {
namespace {

class GroupHeadTest : public testing::Test {
 protected:
  [[nodiscard]] QComboBox* choice() const { return head.findChild<QComboBox*>(); }

  bool isRefused = false;
  std::vector<Match> chosen;
  GroupHead head{1,
                 Match::any,
                 {},
                 [this](LineWidget* line, Match match) {
                   EXPECT_EQ(line, &head);
                   chosen.push_back(match);
                   return !isRefused;
                 },
                 nullptr};
};

TEST_F(GroupHeadTest, offersAllAnyAndNone) {
  EXPECT_EQ(choice()->currentText(), "Any of the following");
  EXPECT_EQ(choice()->accessibleName(), "Match");
  for (const Match match : {Match::all, Match::none, Match::any}) {
    choice()->setCurrentIndex(static_cast<int>(match));
  }
  EXPECT_EQ(chosen, (std::vector<Match>{Match::all, Match::none, Match::any}));
}

TEST_F(GroupHeadTest, goesBackToTheChoiceBeforeWhereAnotherIsRefused) {
  choice()->setCurrentIndex(0);
  isRefused = true;
  choice()->setCurrentIndex(2);
  EXPECT_EQ(choice()->currentIndex(), 0);
  EXPECT_EQ(chosen.size(), 2U);
}

TEST_F(GroupHeadTest, showsAChoiceAndTellsNobody) {
  head.setMatch(Match::none);
  EXPECT_EQ(choice()->currentText(), "None of the following");
  EXPECT_TRUE(chosen.empty());
  isRefused = true;
  choice()->setCurrentIndex(0);
  EXPECT_EQ(choice()->currentText(), "None of the following");
}

TEST_F(GroupHeadTest, leavesTheWheelToWhatItIsIn) {
  QWheelEvent turn(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, -120), Qt::NoButton,
                   Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(choice(), &turn);
  EXPECT_EQ(choice()->currentText(), "Any of the following");
  EXPECT_FALSE(turn.isAccepted());
}

}  // namespace
}  // namespace pelmora::filtereditor

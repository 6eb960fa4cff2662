#include "platform/predicate/PredicateEmptiness.h"

#include "platform/fake/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PredicateEmptiness : public testing::Test {
 protected:
  bool isEmpty(const Predicate& predicate) { return predicate::isEmpty(predicate, _log); }
  std::vector<std::string> lines() { return _log.lines(); }

 private:
  RecordingLog _log;
};

Predicate comparison(Operator type, Expression right) {
  return Comparison{KeyPath{"kMDItemFSName"}, type, std::move(right)};
}

Predicate text(const char* text) { return comparison(Operator::contains, Constant(text)); }

Predicate compound(CompoundType type, std::vector<Predicate> parts) {
  return Compound{type, std::move(parts)};
}

constexpr Operator kOffered[] = {Operator::equal, Operator::notEqual, Operator::beginsWith,
                                 Operator::endsWith, Operator::contains};
constexpr CompoundType kTypes[] = {CompoundType::negation, CompoundType::conjunction,
                                   CompoundType::disjunction};

}  // namespace

TEST_F(PredicateEmptiness, throwsForOperatorsWithoutAMenuItem) {
  for (const unsigned number : {0, 1, 2, 3, 6, 7, 10, 11, 100}) {
    try {
      (void)isEmpty(comparison(static_cast<Operator>(number), Constant("")));
      ADD_FAILURE() << number;
    } catch (const PredicateException& exception) {
      EXPECT_EQ(exception.name(), "NSComparisonPredicate(Walker)");
      EXPECT_EQ(exception.reason(),
                "predicateOperatorType " + std::to_string(number) +
                    " not handled, because there wasn't originally a menu item to choose it.");
    }
  }
  EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(PredicateEmptiness, isThatOfATextOnTheRight) {
  for (const Operator type : kOffered) {
    EXPECT_TRUE(isEmpty(comparison(type, Constant(""))));
    EXPECT_FALSE(isEmpty(comparison(type, Constant("a"))));
    EXPECT_FALSE(isEmpty(comparison(type, Constant(" "))));
  }
  EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(PredicateEmptiness, logsTheClassOfWhatElseIsConstant) {
  EXPECT_TRUE(isEmpty(comparison(Operator::equal, Constant(1))));
  EXPECT_TRUE(isEmpty(comparison(Operator::notEqual, Constant(1.5))));
  EXPECT_TRUE(isEmpty(comparison(Operator::beginsWith, Constant(true))));
  EXPECT_TRUE(isEmpty(comparison(Operator::endsWith, Constant(ReferenceTime{1}))));
  EXPECT_TRUE(isEmpty(comparison(Operator::contains, Constant(Array{"a"}))));
  EXPECT_TRUE(isEmpty(comparison(Operator::equal, Constant())));
  EXPECT_THAT(lines(), ElementsAre("I need to handle constantValue of class NSNumber.",
                                   "I need to handle constantValue of class NSNumber.",
                                   "I need to handle constantValue of class NSNumber.",
                                   "I need to handle constantValue of class NSDate.",
                                   "I need to handle constantValue of class NSArray.",
                                   "I need to handle constantValue of class NSNull."));
}

TEST_F(PredicateEmptiness, logsTheTypeOfOtherExpressions) {
  EXPECT_TRUE(isEmpty(comparison(Operator::equal, KeyPath{"a"})));
  EXPECT_TRUE(isEmpty(comparison(Operator::notEqual, EvaluatedObject{})));
  EXPECT_TRUE(isEmpty(comparison(Operator::contains, UnknownExpression{14})));
  EXPECT_TRUE(isEmpty(comparison(Operator::equal, Aggregate{Array{1}})));
  EXPECT_THAT(
      lines(),
      ElementsAre("I need to handle expressionType 3.", "I need to handle expressionType 1.",
                  "I need to handle expressionType 14.", "I need to handle expressionType 14."));
}

TEST_F(PredicateEmptiness, isSilentlyThatOfAnyOtherOperator) {
  for (const unsigned number : {12u, 98u, 101u, 2000u, 4294967295u}) {
    EXPECT_TRUE(isEmpty(comparison(static_cast<Operator>(number), Constant("a"))));
  }
  EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(PredicateEmptiness, doesNotLookAtTheLeft) {
  EXPECT_TRUE(isEmpty(Comparison{Constant("a"), Operator::equal, Constant("")}));
  EXPECT_FALSE(isEmpty(Comparison{UnknownExpression{4}, Operator::equal, Constant("a")}));
  EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(PredicateEmptiness, isThatOfAllPartsWhateverCombinesThem) {
  for (const CompoundType type : kTypes) {
    EXPECT_TRUE(isEmpty(compound(type, {})));
    EXPECT_TRUE(isEmpty(compound(type, {text("")})));
    EXPECT_TRUE(isEmpty(compound(type, {text(""), compound(type, {text("")})})));
    EXPECT_FALSE(isEmpty(compound(type, {text("a")})));
    EXPECT_FALSE(isEmpty(compound(type, {text(""), compound(type, {text(""), text("a")})})));
  }
}

TEST_F(PredicateEmptiness, endsAtTheFirstPartThatIsNot) {
  const Predicate number = comparison(Operator::equal, Constant(1));
  EXPECT_FALSE(isEmpty(compound(CompoundType::conjunction, {number, text("a"), number, Fixed{}})));
  EXPECT_THAT(lines(), ElementsAre("I need to handle constantValue of class NSNumber."));
}

TEST_F(PredicateEmptiness, throwsForWhatHoldsAlwaysOrNever) {
  for (const bool value : {true, false}) {
    try {
      (void)isEmpty(compound(CompoundType::disjunction, {text(""), Fixed{value}}));
      ADD_FAILURE();
    } catch (const PredicateException& exception) {
      EXPECT_EQ(exception.name(), "NSPredicate(Walker)");
      EXPECT_EQ(exception.reason(), "NSPredicate base class should never handle isEmpty.");
      EXPECT_STREQ(exception.what(), exception.reason().c_str());
    }
  }
}

}  // namespace pelmora::platform::predicate

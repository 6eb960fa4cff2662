#include "platform/predicate/Predicate.h"

#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

/// That many compounds, the innermost without any in it.
Predicate nested(int depth) {
  Predicate predicate = Compound{};
  for (int i = 1; i < depth; ++i) predicate = Compound{CompoundType::negation, {predicate}};
  return predicate;
}

}  // namespace

TEST(Predicate, tellsConstantsOfDifferentTypesApart) {
  EXPECT_EQ(Constant(1), Constant(std::int64_t{1}));
  EXPECT_NE(Constant(1), Constant(1.0));
  EXPECT_NE(Constant(1), Constant(true));
  EXPECT_NE(Constant(1.0), Constant(ReferenceTime{1}));
  EXPECT_NE(Constant(""), Constant());
  EXPECT_EQ(Constant(Array{1, "a"}), Constant(Array{1, "a"}));
}

TEST(Predicate, comparesTreesByAllThatIsInThem) {
  const Comparison comparison{KeyPath{"a"}, Operator::contains, Constant("b"), Modifier::any, 3};
  EXPECT_EQ(Predicate(comparison), Predicate(comparison));
  Comparison other = comparison;
  other.options = 1;
  EXPECT_NE(Predicate(comparison), Predicate(other));
  EXPECT_NE(Predicate(Fixed{true}), Predicate(Fixed{false}));
  EXPECT_NE(Predicate(Compound{CompoundType::conjunction, {comparison}}),
            Predicate(Compound{CompoundType::disjunction, {comparison}}));
  EXPECT_NE(Predicate(Compound{CompoundType::conjunction, {comparison}}), Predicate(comparison));
}

TEST(Predicate, knowsThePlatformsNumbersOfExpressions) {
  EXPECT_EQ(expressionType(Constant("a")), 0u);
  EXPECT_EQ(expressionType(EvaluatedObject{}), 1u);
  EXPECT_EQ(expressionType(KeyPath{"a"}), 3u);
  EXPECT_EQ(expressionType(UnknownExpression{14}), 14u);
  EXPECT_EQ(expressionType(Aggregate{Array{1}}), 14u);
}

TEST(Predicate, knowsThePlatformsNumbersOfOperators) {
  EXPECT_EQ(static_cast<int>(Operator::notEqual), 5);
  EXPECT_EQ(static_cast<int>(Operator::beginsWith), 8);
  EXPECT_EQ(static_cast<int>(Operator::contains), 99);
  EXPECT_EQ(static_cast<int>(Operator::between), 100);
}

TEST(Predicate, isWithinItsLimitsUpToTheLastLevel) {
  EXPECT_TRUE(isWithinLimits(nested(kMaxDepth)));
  EXPECT_FALSE(isWithinLimits(nested(kMaxDepth + 1)));
}

TEST(Predicate, countsTheLevelsOfArrays) {
  Constant array = Array{};
  for (int i = 2; i < kMaxDepth; ++i) array = Array{array};
  EXPECT_TRUE(isWithinLimits(Comparison{KeyPath{"a"}, Operator::in, array}));
  EXPECT_FALSE(isWithinLimits(Comparison{KeyPath{"a"}, Operator::in, Array{array}}));
  EXPECT_FALSE(isWithinLimits(Comparison{Array{array}, Operator::in, KeyPath{"a"}}));
}

TEST(Predicate, isWithinItsLimitsUpToTheLastNode) {
  Compound compound;
  compound.subpredicates.resize(kMaxNodes - 1);
  EXPECT_TRUE(isWithinLimits(compound));
  compound.subpredicates.emplace_back();
  EXPECT_FALSE(isWithinLimits(compound));
}

}  // namespace pelmora::platform::predicate

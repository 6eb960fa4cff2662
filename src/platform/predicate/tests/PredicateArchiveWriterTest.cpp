#include "platform/predicate/PredicateArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmora::platform::predicate {

namespace {

using plist::Dictionary;
using plist::Uid;
using plist::Value;

/// The objects of an archive.
plist::Array objectsOf(const Predicate& predicate) {
  const Result<plist::Bytes> bytes = writePredicateArchive(predicate);
  if (!bytes) return {};
  const Result<Value> root = plist::read(*bytes);
  return *root->get<Dictionary>()->at("$objects").get<plist::Array>();
}

/// The first object of a class, without that.
Dictionary instanceOf(const Predicate& predicate, const std::string& name) {
  const plist::Array objects = objectsOf(predicate);
  for (const Value& object : objects) {
    const auto* fields = object.get<Dictionary>();
    if (!fields || !fields->contains("$class")) continue;
    const Value& entry = objects.at(fields->at("$class").get<Uid>()->index);
    if (entry.get<Dictionary>()->at("$classname") != Value(name)) continue;
    Dictionary plain = *fields;
    plain.erase("$class");
    return plain;
  }
  return {{"there is no", name}};
}

std::string problem(const Predicate& predicate) {
  const Result<plist::Bytes> bytes = writePredicateArchive(predicate);
  return bytes ? "none" : bytes.error().message;
}

Predicate compare(Operator type, unsigned options = 0) {
  return Comparison{KeyPath{"a"}, type, Constant("b"), Modifier::any, options};
}

Predicate withValue(Constant value) {
  return Comparison{KeyPath{"a"}, Operator::equal, std::move(value)};
}

}  // namespace

TEST(PredicateArchiveWriter, writesTheThreePartsOfAComparison) {
  const plist::Array objects = objectsOf(compare(Operator::equal));
  const auto* root = objects.at(1).get<Dictionary>();
  ASSERT_TRUE(root);
  for (const char* const field : {"NSLeftExpression", "NSRightExpression", "NSPredicateOperator"}) {
    EXPECT_TRUE(root->contains(field)) << field;
  }
  EXPECT_EQ(
      instanceOf(compare(Operator::equal), "NSConstantValueExpression").at("NSExpressionType"),
      Value(0));
}

TEST(PredicateArchiveWriter, writesOperatorsInTheirClasses) {
  const Dictionary common = {{"NSModifier", 2}};
  const auto expected = [&](int type, Dictionary more) {
    more.merge(Dictionary(common));
    more.emplace("NSOperatorType", type);
    return more;
  };
  EXPECT_EQ(instanceOf(compare(Operator::lessThan, 1), "NSComparisonPredicateOperator"),
            expected(0, {{"NSOptions", 1}}));
  EXPECT_EQ(instanceOf(compare(Operator::equal), "NSEqualityPredicateOperator"),
            expected(4, {{"NSOptions", 0}, {"NSNegate", 0}}));
  EXPECT_EQ(instanceOf(compare(Operator::notEqual), "NSEqualityPredicateOperator"),
            expected(5, {{"NSOptions", 0}, {"NSNegate", 1}}));
  EXPECT_EQ(instanceOf(compare(Operator::matches, 3), "NSMatchingPredicateOperator"),
            expected(6, {{"NSFlags", 3}}));
  EXPECT_EQ(instanceOf(compare(Operator::like, 2), "NSLikePredicateOperator"),
            expected(7, {{"NSFlags", 2}}));
  EXPECT_EQ(instanceOf(compare(Operator::beginsWith), "NSSubstringPredicateOperator"),
            expected(8, {{"NSFlags", 0}, {"NSPosition", 0}}));
  EXPECT_EQ(instanceOf(compare(Operator::endsWith), "NSSubstringPredicateOperator"),
            expected(9, {{"NSFlags", 0}, {"NSPosition", 1}}));
  EXPECT_EQ(instanceOf(compare(Operator::in), "NSInPredicateOperator"),
            expected(10, {{"NSFlags", 0}}));
  EXPECT_EQ(instanceOf(compare(Operator::contains, 3), "NSInPredicateOperator"),
            expected(99, {{"NSFlags", 3}}));
  EXPECT_EQ(instanceOf(compare(Operator::between), "NSBetweenPredicateOperator"),
            expected(100, {{"NSOptions", 0}}));
}

TEST(PredicateArchiveWriter, writesAKeyPathAsACallOnTheFile) {
  const Predicate predicate = Comparison{KeyPath{"a.b"}, Operator::equal, KeyPath{"a.b"}};
  EXPECT_EQ(instanceOf(predicate, "NSKeyPathExpression").at("NSExpressionType"), Value(3));
  EXPECT_EQ(instanceOf(predicate, "NSKeyPathSpecifierExpression").at("NSExpressionType"),
            Value(10));
  EXPECT_EQ(instanceOf(predicate, "NSSelfExpression"), (Dictionary{{"NSExpressionType", 1}}));
  const plist::Array objects = objectsOf(predicate);
  EXPECT_THAT(objects, testing::Contains(Value("valueForKeyPath:")).Times(1));
  EXPECT_THAT(objects, testing::Contains(Value("a.b")).Times(1));
  EXPECT_THAT(objectsOf(compare(Operator::equal)), testing::Contains(Value("valueForKey:")));
}

TEST(PredicateArchiveWriter, writesCompoundsInTheirOrder) {
  const Predicate predicate = Compound{CompoundType::disjunction, {Fixed{true}, Fixed{false}}};
  EXPECT_EQ(instanceOf(predicate, "NSCompoundPredicate").at("NSCompoundPredicateType"), Value(2));
  EXPECT_EQ(instanceOf(predicate, "NSArray").at("NS.objects").get<plist::Array>()->size(), 2u);
  EXPECT_EQ(instanceOf(predicate, "NSTruePredicate"), Dictionary());
  EXPECT_EQ(instanceOf(predicate, "NSFalsePredicate"), Dictionary());
}

TEST(PredicateArchiveWriter, refusesWhatNoArchiveSays) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(problem(compare(Operator::customSelector)),
            "the predicate has an operator that no archive holds");
  EXPECT_EQ(problem(compare(static_cast<Operator>(2000))),
            "the predicate has an operator that no archive holds");
  EXPECT_EQ(problem(compare(Operator::equal, 4)), "the predicate has unknown options");
  EXPECT_EQ(problem(Comparison{UnknownExpression{14}, Operator::equal, Constant(1)}),
            "the predicate has an expression that is not known");
  EXPECT_EQ(problem(Comparison{KeyPath{""}, Operator::equal, Constant(1)}),
            "a key path of the predicate has no name");
  EXPECT_EQ(problem(withValue(infinity)), "a number of the predicate is not finite");
  EXPECT_EQ(problem(withValue(Array{std::nan("")})), "a number of the predicate is not finite");
  EXPECT_EQ(problem(withValue(ReferenceTime{infinity})), "a number of the predicate is not finite");
  EXPECT_EQ(problem(withValue("\xFF")), "a text of the predicate is not UTF-8");
  EXPECT_EQ(problem(Compound{CompoundType::negation, {}}), "a negation is of one predicate");
  EXPECT_EQ(problem(Compound{CompoundType::conjunction,
                             {Fixed{}, Compound{CompoundType::negation, {Fixed{}, Fixed{}}}}}),
            "a negation is of one predicate");
}

TEST(PredicateArchiveWriter, refusesWhatIsBeyondTheLimits) {
  Compound large;
  large.subpredicates.resize(kMaxNodes);
  EXPECT_EQ(problem(large), "the predicate is too deep or too large");
  Predicate deep;
  for (int i = 0; i < kMaxDepth; ++i) deep = Compound{CompoundType::negation, {deep}};
  EXPECT_EQ(problem(deep), "the predicate is too deep or too large");
}

}  // namespace pelmora::platform::predicate

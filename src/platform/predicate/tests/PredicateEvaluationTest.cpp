#include "platform/predicate/PredicateEvaluation.h"

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace pelmora::platform::predicate {

namespace {

const MetadataMap& file() {
  static const MetadataMap kFile({{"name", {"Beach at Élan.JPG"}},
                                  {"words", {"beach", "Summer", "2024"}},
                                  {"same", {"x", "x"}},
                                  {"nothing", {}},
                                  {"width", {4032}},
                                  {"aperture", {1.8}},
                                  {"big", {std::int64_t{9007199254740993}}},
                                  {"flash", {true}},
                                  {"date", {ReferenceTime{700000000}}},
                                  {"list", {Constant(Array{"a", 1})}},
                                  {"nan", {std::nan("")}}});
  return kFile;
}

bool holds(const Predicate& predicate) { return matches(predicate, file()); }

bool holds(std::string_view text) {
  const Result<Predicate> predicate = parsePredicate(text);
  EXPECT_TRUE(predicate) << predicate.error().message;
  return predicate && matches(*predicate, file());
}

}  // namespace

TEST(PredicateEvaluation, comparesTexts) {
  EXPECT_TRUE(holds("name CONTAINS[cd] 'elan.jpg'"));
  EXPECT_FALSE(holds("name CONTAINS 'elan.jpg'"));
  EXPECT_TRUE(holds("name BEGINSWITH 'Beach'"));
  EXPECT_TRUE(holds("name ENDSWITH[c] '.jpg'"));
  EXPECT_TRUE(holds("name LIKE[c] '*at*.jp?'"));
  EXPECT_TRUE(holds("name MATCHES '[A-Z][a-z]+ at .*'"));
  EXPECT_FALSE(holds("name MATCHES '('"));
  EXPECT_TRUE(holds("name ==[cd] 'BEACH AT ELAN.jpg'"));
  EXPECT_TRUE(holds("name < 'C'"));
}

TEST(PredicateEvaluation, comparesNumbersWholeOrNot) {
  EXPECT_TRUE(holds("width == 4032"));
  EXPECT_TRUE(holds("width == 4032.0"));
  EXPECT_TRUE(holds("width > 4031.5"));
  EXPECT_TRUE(holds("4031.5 < width"));
  EXPECT_TRUE(holds("aperture < 2"));
  EXPECT_TRUE(holds("aperture != 2"));
  EXPECT_TRUE(holds("aperture >= 1.8"));
  EXPECT_FALSE(holds("width <= 4031"));
}

TEST(PredicateEvaluation, comparesNumbersExactly) {
  EXPECT_FALSE(holds("big == 9007199254740992.0"));
  EXPECT_TRUE(holds("big > 9007199254740992.0"));
  EXPECT_TRUE(holds("big < 1e300"));
  EXPECT_TRUE(holds("big > -1e300"));
  EXPECT_TRUE(holds("-1 > -1.5"));
  EXPECT_TRUE(holds("9223372036854775807 < 9223372036854775808.0"));
}

TEST(PredicateEvaluation, takesABooleanForANumber) {
  EXPECT_TRUE(holds("flash == TRUE"));
  EXPECT_TRUE(holds("flash == 1"));
  EXPECT_TRUE(holds("flash != 0.5"));
}

TEST(PredicateEvaluation, comparesDates) {
  EXPECT_TRUE(holds("date == CAST(700000000, 'NSDate')"));
  EXPECT_TRUE(holds("date < CAST(700000000.5, 'NSDate')"));
  EXPECT_FALSE(holds("date > CAST(700000000.5, 'NSDate')"));
}

TEST(PredicateEvaluation, takesValuesOfDifferentKindsForUnrelated) {
  for (const char* const right : {"'4032'", "CAST(4032, 'NSDate')", "{4032}"}) {
    for (const char* const comparison : {"==", "!=", "<", ">=", "CONTAINS", "LIKE"}) {
      EXPECT_FALSE(holds(std::string("width ") + comparison + " " + right))
          << comparison << " " << right;
    }
  }
  EXPECT_FALSE(holds("width CONTAINS 4"));
  EXPECT_FALSE(holds(Comparison{KeyPath{"name"}, Operator::between, Constant("x")}));
  EXPECT_FALSE(holds("nan == nan"));
  EXPECT_FALSE(holds("nan != 1"));
}

TEST(PredicateEvaluation, looksForElements) {
  EXPECT_TRUE(holds("width IN {1, 4032.0}"));
  EXPECT_FALSE(holds("width IN {1, '4032'}"));
  EXPECT_FALSE(holds("width IN {}"));
  EXPECT_TRUE(holds("words IN[c] {'SUMMER'}"));
  EXPECT_FALSE(holds("words IN {'SUMMER'}"));
  EXPECT_TRUE(holds("{1, 2} CONTAINS 2"));
  EXPECT_TRUE(holds("{NULL} == {NULL}"));
}

TEST(PredicateEvaluation, looksForPartsOfTexts) {
  EXPECT_TRUE(holds("'Beach' IN name"));
  EXPECT_TRUE(holds("'each' IN words"));
  EXPECT_FALSE(holds("name IN 'Beach'"));
}

TEST(PredicateEvaluation, looksBetweenTwoValues) {
  EXPECT_TRUE(holds("width BETWEEN {4032, 5000}"));
  EXPECT_TRUE(holds("width BETWEEN {1.5, 4032}"));
  EXPECT_FALSE(holds("width BETWEEN {4033, 5000}"));
  EXPECT_FALSE(holds("width BETWEEN {1}"));
  EXPECT_FALSE(holds("width BETWEEN {1, 2, 5000}"));
  EXPECT_FALSE(holds("width BETWEEN {1, 'z'}"));
  EXPECT_TRUE(holds("words BETWEEN[c] {'S', 'T'}"));
}

TEST(PredicateEvaluation, comparesArrays) {
  EXPECT_TRUE(holds("list == {'a', 1.0}"));
  EXPECT_TRUE(holds("list ==[c] {'A', 1}"));
  EXPECT_TRUE(holds("list != {'a'}"));
  EXPECT_FALSE(holds("list < {'b'}"));
}

TEST(PredicateEvaluation, asksForAnyOfSeveralValues) {
  EXPECT_TRUE(holds("words == 'Summer'"));
  EXPECT_TRUE(holds("ANY words == 'Summer'"));
  EXPECT_FALSE(holds("words == 'Winter'"));
  EXPECT_TRUE(holds("words != 'Summer'"));
  EXPECT_FALSE(holds("NONE words == 'Summer'"));
  EXPECT_TRUE(holds("name CONTAINS[c] words"));
}

TEST(PredicateEvaluation, asksForAllOfSeveralValues) {
  EXPECT_FALSE(holds("ALL words == 'Summer'"));
  EXPECT_TRUE(holds("ALL same == 'x'"));
  EXPECT_TRUE(holds("ALL words MATCHES '\\\\w+'"));
  EXPECT_FALSE(holds("ALL same != 'x'"));
}

TEST(PredicateEvaluation, isFalseForWhatIsMissingButForNotEqual) {
  for (const char* const path : {"missing", "nothing", "name.length"}) {
    const std::string name = path;
    EXPECT_FALSE(holds(name + " == 'x'"));
    EXPECT_FALSE(holds(name + " < 1"));
    EXPECT_FALSE(holds(name + " CONTAINS ''"));
    EXPECT_FALSE(holds("ALL " + name + " == 'x'"));
    EXPECT_FALSE(holds(name + " == other"));
    EXPECT_TRUE(holds(name + " != 'x'"));
    EXPECT_TRUE(holds("'x' != " + name));
    EXPECT_TRUE(holds("NOT " + name + " == 'x'"));
  }
}

TEST(PredicateEvaluation, asksWithNullWhetherAnAttributeIsThere) {
  EXPECT_TRUE(holds("missing == NULL"));
  EXPECT_FALSE(holds("missing != NULL"));
  EXPECT_FALSE(holds("name == NULL"));
  EXPECT_TRUE(holds("name != NULL"));
  EXPECT_TRUE(holds("NULL == nothing"));
  EXPECT_FALSE(holds("missing < NULL"));
}

TEST(PredicateEvaluation, isFalseForWhatIsNotKnown) {
  const Constant one(1);
  EXPECT_FALSE(holds("SELF == 1"));
  EXPECT_FALSE(holds("SELF != 1"));
  EXPECT_FALSE(holds(Comparison{UnknownExpression{14}, Operator::notEqual, one}));
  EXPECT_FALSE(holds(Comparison{one, Operator::notEqual, UnknownExpression{14}}));
  EXPECT_FALSE(holds(Comparison{one, Operator::customSelector, one}));
  EXPECT_FALSE(holds(Comparison{one, static_cast<Operator>(2000), one}));
  EXPECT_FALSE(holds(Comparison{Constant("a"), Operator::customSelector, Constant("a")}));
  EXPECT_FALSE(holds(Comparison{KeyPath{"missing"}, Operator::customSelector, Constant()}));
}

TEST(PredicateEvaluation, takesValuesInBracesForAnArray) {
  const Expression width = KeyPath{"width"};
  EXPECT_TRUE(holds(Comparison{width, Operator::in, Aggregate{Array{1, 4032}}}));
  EXPECT_TRUE(holds(Comparison{width, Operator::between, Aggregate{Array{1, 4032}}}));
  EXPECT_FALSE(holds(Comparison{width, Operator::in, Aggregate{Array{1}}}));
  EXPECT_TRUE(holds(Comparison{Aggregate{Array{4032}}, Operator::contains, width}));
}

TEST(PredicateEvaluation, combines) {
  EXPECT_TRUE(holds("TRUEPREDICATE"));
  EXPECT_FALSE(holds("FALSEPREDICATE"));
  EXPECT_TRUE(holds("width > 1 AND NOT (flash == FALSE OR aperture > 2)"));
  EXPECT_FALSE(holds("width > 1 AND FALSEPREDICATE"));
  EXPECT_TRUE(holds("FALSEPREDICATE OR width > 1"));
  EXPECT_TRUE(holds(Compound{CompoundType::conjunction, {}}));
  EXPECT_FALSE(holds(Compound{CompoundType::disjunction, {}}));
  EXPECT_FALSE(holds(Compound{CompoundType::negation, {Fixed{false}, Fixed{true}}}));
}

}  // namespace pelmora::platform::predicate

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmora::platform::predicate {

namespace {

Predicate is(const char* path) { return Comparison{KeyPath{path}, Operator::equal, Constant(1)}; }

Predicate compound(CompoundType type, std::vector<Predicate> parts) {
  return Compound{type, std::move(parts)};
}

Predicate withValue(Constant value) {
  return Comparison{KeyPath{"a"}, Operator::equal, std::move(value)};
}

void expectSame(const Predicate& predicate) {
  const Result<Predicate> again = parsePredicate(textOf(predicate));
  ASSERT_TRUE(again) << textOf(predicate) << ": " << again.error().message;
  EXPECT_EQ(*again, predicate) << textOf(predicate);
}

constexpr auto kNot = CompoundType::negation;
constexpr auto kAnd = CompoundType::conjunction;
constexpr auto kOr = CompoundType::disjunction;

}  // namespace

TEST(PredicateTextWriter, writesComparisons) {
  EXPECT_EQ(textOf(Comparison{KeyPath{"kMDItemFSName"}, Operator::contains, Constant("beach"),
                              Modifier::direct, kAllOptions}),
            "kMDItemFSName CONTAINS[cd] \"beach\"");
  EXPECT_EQ(textOf(Comparison{KeyPath{"a"}, Operator::notEqual, KeyPath{"b.c"}, Modifier::all,
                              kDiacriticInsensitive}),
            "ALL a !=[d] b.c");
  EXPECT_EQ(
      textOf(Comparison{EvaluatedObject{}, Operator::in, Constant(Array{1, "x"}), Modifier::any}),
      "ANY SELF IN {1, \"x\"}");
}

TEST(PredicateTextWriter, writesValues) {
  const auto text = [](Constant value) { return textOf(withValue(std::move(value))).substr(5); };
  EXPECT_EQ(text(1), "1");
  EXPECT_EQ(text(1.0), "1.0");
  EXPECT_EQ(text(0.1), "0.1");
  EXPECT_EQ(text(true), "TRUE");
  EXPECT_EQ(text(false), "FALSE");
  EXPECT_EQ(text({}), "NULL");
  EXPECT_EQ(text(ReferenceTime{12.5}), "CAST(12.5, \"NSDate\")");
  EXPECT_EQ(text(Array{}), "{}");
  EXPECT_EQ(text("a\"b\\c'd\n\x1B\x7F é"), "\"a\\\"b\\\\c'd\\n\\u001b\\u007f é\"");
}

TEST(PredicateTextWriter, putsRowsInCompoundsInParentheses) {
  EXPECT_EQ(textOf(compound(kOr, {is("a"), compound(kAnd, {is("b"), is("c")})})),
            "a == 1 OR (b == 1 AND c == 1)");
  EXPECT_EQ(textOf(compound(kNot, {compound(kOr, {is("a"), is("b")})})), "NOT (a == 1 OR b == 1)");
  EXPECT_EQ(textOf(compound(kNot, {is("a")})), "NOT a == 1");
}

TEST(PredicateTextWriter, escapesNamesThatAreReserved) {
  EXPECT_EQ(textOf(is("and")), "#and == 1");
  EXPECT_EQ(textOf(is("SELF.x")), "#SELF.x == 1");
  EXPECT_EQ(textOf(is("a.null.b.In")), "a.#null.b.#In == 1");
  EXPECT_EQ(textOf(is("android.order")), "android.order == 1");
}

TEST(PredicateTextWriter, escapesEveryNameThatIsAWordOfTheFormatToAnyReader) {
  for (const char* const word : {"AND",
                                 "OR",
                                 "NOT",
                                 "ANY",
                                 "SOME",
                                 "ALL",
                                 "NONE",
                                 "IN",
                                 "LIKE",
                                 "MATCHES",
                                 "CONTAINS",
                                 "BEGINSWITH",
                                 "ENDSWITH",
                                 "BETWEEN",
                                 "TRUE",
                                 "YES",
                                 "FALSE",
                                 "NO",
                                 "NULL",
                                 "NIL",
                                 "SELF",
                                 "CAST",
                                 "SUBQUERY",
                                 "FIRST",
                                 "LAST",
                                 "SIZE",
                                 "ANYKEY",
                                 "FETCH",
                                 "CI",
                                 "CASEINSENSITIVE",
                                 "TRUEPREDICATE",
                                 "FALSEPREDICATE",
                                 "size",
                                 "First",
                                 "ci"}) {
    const std::string name = word;
    EXPECT_EQ(textOf(is(word)), "#" + name + " == 1");
    expectSame(is(word));
    expectSame(is((name + ".a").c_str()));
    expectSame(is(("a." + name).c_str()));
  }
}

TEST(PredicateTextWriter, writesWhatReadsBackTheSame) {
  for (const auto& value :
       {Constant(), Constant(true), Constant(std::int64_t{INT64_MIN}),
        Constant(std::int64_t{INT64_MAX}), Constant(1e300), Constant(-0.5), Constant(5e-324),
        Constant(9223372036854775808.0), Constant(1e16), Constant(ReferenceTime{718283.123456789}),
        Constant(ReferenceTime{1e20}), Constant(std::string("\0\t\r\n'\"\\é📷", 13)),
        Constant(Array{Array{Array{}}, "x", 1.0})}) {
    expectSame(withValue(value));
  }
  for (const char* const path : {"a", "in", "Self.x", "self", "a.and", "null", "TRUE.a"}) {
    expectSame(is(path));
  }
  expectSame(compound(kAnd, {compound(kAnd, {is("a"), is("b")}), compound(kNot, {is("c")}),
                             compound(kNot, {compound(kNot, {Fixed{false}})}), Fixed{true}}));
}

TEST(PredicateTextWriter, writesEveryOperatorSoThatItReadsBackTheSame) {
  for (unsigned number = 0; number <= 100; ++number) {
    if (number > 10 && number < 99) continue;
    const auto type = static_cast<Operator>(number);
    const Constant value = type == Operator::between ? Constant(Array{"b", "c"}) : Constant("b");
    for (unsigned options = 0; options <= kAllOptions; ++options) {
      for (const Modifier modifier : {Modifier::direct, Modifier::all, Modifier::any}) {
        expectSame(Comparison{KeyPath{"a"}, type, value, modifier, options});
      }
    }
  }
}

TEST(PredicateTextWriter, writesAPredicateAsDeepAsOneMayBeSoThatItReadsBackTheSame) {
  Predicate predicate = is("a");
  for (int i = 2; i < kMaxDepth; ++i) {
    predicate = i % 2 ? compound(kNot, {predicate}) : compound(kOr, {predicate, is("b")});
  }
  ASSERT_TRUE(isWithinLimits(predicate));
  expectSame(predicate);
}

TEST(PredicateTextWriter, writesCompoundsOfFewerThanTwoAsWhatTheyMean) {
  EXPECT_EQ(textOf(compound(kAnd, {})), "TRUEPREDICATE");
  EXPECT_EQ(textOf(compound(kOr, {})), "FALSEPREDICATE");
  EXPECT_EQ(textOf(compound(kNot, {})), "TRUEPREDICATE");
  EXPECT_EQ(textOf(compound(kOr, {is("a")})), "a == 1");
  EXPECT_EQ(textOf(compound(kOr, {is("c"), compound(kAnd, {compound(kOr, {is("a"), is("b")})})})),
            "c == 1 OR (a == 1 OR b == 1)");
  EXPECT_EQ(textOf(compound(kNot, {is("a"), is("b")})), "NOT (a == 1 OR b == 1)");
}

TEST(PredicateTextWriter, writesWhatTheFormatCannotSaySoThatItIsNotRead) {
  const Predicate unsayable[] = {
      withValue(std::numeric_limits<double>::infinity()),
      withValue(std::nan("")),
      withValue(ReferenceTime{-std::numeric_limits<double>::infinity()}),
      is("a b"),
      is(""),
      Comparison{KeyPath{"a"}, Operator::equal, UnknownExpression{14}},
      Comparison{KeyPath{"a"}, Operator::customSelector, Constant(1)},
      Comparison{KeyPath{"a"}, static_cast<Operator>(2000), Constant(1)}};
  for (const Predicate& predicate : unsayable) {
    EXPECT_FALSE(parsePredicate(textOf(predicate))) << textOf(predicate);
  }
  EXPECT_EQ(textOf(unsayable[5]), "a == <expression of type 14>");
}

}  // namespace pelmora::platform::predicate

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

/// What was read, or a constant that tells why nothing was.
Predicate parsed(std::string_view text) {
  Result<Predicate> predicate = parsePredicate(text);
  if (predicate) return std::move(*predicate);
  ADD_FAILURE() << text << ": " << predicate.error().message;
  return {};
}

std::string problem(std::string_view text) {
  const Result<Predicate> predicate = parsePredicate(text);
  return predicate ? "none" : predicate.error().message;
}

Predicate compare(const char* path, Operator type, Constant value, unsigned options = 0,
                  Modifier modifier = Modifier::direct) {
  return Comparison{KeyPath{path}, type, std::move(value), modifier, options};
}

Predicate is(const char* path) { return compare(path, Operator::equal, 1); }

Predicate allOf(std::vector<Predicate> parts) {
  return Compound{CompoundType::conjunction, std::move(parts)};
}
Predicate anyOf(std::vector<Predicate> parts) {
  return Compound{CompoundType::disjunction, std::move(parts)};
}
Predicate negated(Predicate part) { return Compound{CompoundType::negation, {std::move(part)}}; }

/// The value on the right of a comparison.
Predicate withValue(Constant value) { return compare("a", Operator::equal, std::move(value)); }

}  // namespace

TEST(PredicateParser, readsEveryOperator) {
  EXPECT_EQ(parsed("a < 1"), compare("a", Operator::lessThan, 1));
  EXPECT_EQ(parsed("a <= 1"), compare("a", Operator::lessThanOrEqual, 1));
  EXPECT_EQ(parsed("a =< 1"), compare("a", Operator::lessThanOrEqual, 1));
  EXPECT_EQ(parsed("a > 1"), compare("a", Operator::greaterThan, 1));
  EXPECT_EQ(parsed("a >= 1"), compare("a", Operator::greaterThanOrEqual, 1));
  EXPECT_EQ(parsed("a => 1"), compare("a", Operator::greaterThanOrEqual, 1));
  EXPECT_EQ(parsed("a == 1"), compare("a", Operator::equal, 1));
  EXPECT_EQ(parsed("a=1"), compare("a", Operator::equal, 1));
  EXPECT_EQ(parsed("a != 1"), compare("a", Operator::notEqual, 1));
  EXPECT_EQ(parsed("a<>1"), compare("a", Operator::notEqual, 1));
  EXPECT_EQ(parsed("a BEGINSWITH 'x'"), compare("a", Operator::beginsWith, "x"));
  EXPECT_EQ(parsed("a ENDSWITH 'x'"), compare("a", Operator::endsWith, "x"));
  EXPECT_EQ(parsed("a CONTAINS 'x'"), compare("a", Operator::contains, "x"));
  EXPECT_EQ(parsed("a LIKE 'x*'"), compare("a", Operator::like, "x*"));
  EXPECT_EQ(parsed("a MATCHES 'x.*'"), compare("a", Operator::matches, "x.*"));
  EXPECT_EQ(parsed("a IN {1, 2}"), compare("a", Operator::in, Array{1, 2}));
  EXPECT_EQ(parsed("a BETWEEN {1, 2}"), compare("a", Operator::between, Array{1, 2}));
}

TEST(PredicateParser, readsItsWordsInAnyCase) {
  EXPECT_EQ(parsed("kMDItemFSName contains[cd] \"beach\""),
            compare("kMDItemFSName", Operator::contains, "beach", kAllOptions));
  EXPECT_EQ(parsed("not a == 1 And b == 1 oR TruePredicate"),
            anyOf({allOf({negated(is("a")), is("b")}), Fixed{true}}));
}

TEST(PredicateParser, readsOptions) {
  EXPECT_EQ(parsed("a LIKE[c] 'x'"), compare("a", Operator::like, "x", kCaseInsensitive));
  EXPECT_EQ(parsed("a ==[d] 'x'"), compare("a", Operator::equal, "x", kDiacriticInsensitive));
  EXPECT_EQ(parsed("a MATCHES [ DC ] 'x'"), compare("a", Operator::matches, "x", kAllOptions));
}

TEST(PredicateParser, readsModifiers) {
  const auto with = [](Modifier modifier) {
    return compare("a", Operator::equal, "x", 0, modifier);
  };
  EXPECT_EQ(parsed("ANY a == 'x'"), with(Modifier::any));
  EXPECT_EQ(parsed("SOME a == 'x'"), with(Modifier::any));
  EXPECT_EQ(parsed("ALL a == 'x'"), with(Modifier::all));
  EXPECT_EQ(parsed("NONE a == 'x'"), negated(with(Modifier::any)));
}

TEST(PredicateParser, readsEveryKindOfValue) {
  EXPECT_EQ(parsed("a == \"it's\""), withValue("it's"));
  EXPECT_EQ(parsed(R"(a == 'it\'s')"), withValue("it's"));
  EXPECT_EQ(parsed("a == -12"), withValue(-12));
  EXPECT_EQ(parsed("a == 0x10"), withValue(16));
  EXPECT_EQ(parsed("a == 1.5e3"), withValue(1500.0));
  EXPECT_EQ(parsed("a == TRUE"), withValue(true));
  EXPECT_EQ(parsed("a == yes"), withValue(true));
  EXPECT_EQ(parsed("a == False"), withValue(false));
  EXPECT_EQ(parsed("a == NO"), withValue(false));
  EXPECT_EQ(parsed("a == NULL"), withValue({}));
  EXPECT_EQ(parsed("a == nil"), withValue({}));
  EXPECT_EQ(parsed("a == CAST(12.5, \"NSDate\")"), withValue(ReferenceTime{12.5}));
  EXPECT_EQ(parsed("a == cast( -3 , 'NSDate' )"), withValue(ReferenceTime{-3}));
  EXPECT_EQ(parsed("a == {}"), withValue(Array{}));
  EXPECT_EQ(parsed("a == {1, {'b', NULL}, TRUE}"),
            withValue(Array{1, Array{"b", Constant()}, true}));
}

TEST(PredicateParser, bindsNotBeforeAndBeforeOr) {
  const Predicate expected =
      anyOf({is("a"), allOf({negated(is("b")), is("c")}), allOf({is("d"), is("e")})});
  EXPECT_EQ(parsed("a = 1 OR NOT b = 1 AND c = 1 OR d = 1 AND e = 1"), expected);
  EXPECT_EQ(parsed("a=1||!b=1&&c=1||d=1&&e=1"), expected);
}

TEST(PredicateParser, makesOneCompoundOfARow) {
  EXPECT_EQ(parsed("a=1 AND b=1 AND c=1"), allOf({is("a"), is("b"), is("c")}));
  EXPECT_EQ(parsed("a=1 OR b=1 OR c=1"), anyOf({is("a"), is("b"), is("c")}));
}

TEST(PredicateParser, keepsWhatParenthesesSetApart) {
  EXPECT_EQ(parsed("(a=1 AND b=1) AND c=1"), allOf({allOf({is("a"), is("b")}), is("c")}));
  EXPECT_EQ(parsed("a=1 AND (b=1 OR c=1)"), allOf({is("a"), anyOf({is("b"), is("c")})}));
  EXPECT_EQ(parsed("NOT (a=1 OR b=1)"), negated(anyOf({is("a"), is("b")})));
  EXPECT_EQ(parsed("(((a=1)))"), is("a"));
  EXPECT_EQ(parsed("NOT NOT !a=1"), negated(negated(negated(is("a")))));
}

TEST(PredicateParser, readsWhatHoldsAlwaysOrNever) {
  EXPECT_EQ(parsed("TRUEPREDICATE"), Predicate(Fixed{true}));
  EXPECT_EQ(parsed(" FALSEPREDICATE "), Predicate(Fixed{false}));
}

TEST(PredicateParser, takesValuesOnTheLeftToo) {
  EXPECT_EQ(parsed("'x' IN kMDItemKeywords"),
            Predicate(Comparison{Constant("x"), Operator::in, KeyPath{"kMDItemKeywords"}}));
  EXPECT_EQ(parsed("SELF == a.b"),
            Predicate(Comparison{EvaluatedObject{}, Operator::equal, KeyPath{"a.b"}}));
}

TEST(PredicateParser, takesReservedWordsForNamesWhereTheyAreEscaped) {
  EXPECT_EQ(parsed("#and == 1"), is("and"));
  EXPECT_EQ(parsed("in.x == 1"), is("in.x"));
  EXPECT_EQ(parsed("self.x == 1"), is("x"));
  EXPECT_EQ(parsed("#self.x == 1"), is("self.x"));
  EXPECT_EQ(parsed("android == 1"), is("android"));
  EXPECT_TRUE(isReservedWord("Contains"));
  EXPECT_FALSE(isReservedWord("kMDItemFSName"));
  EXPECT_FALSE(isReservedWord(""));
}

TEST(PredicateParser, tellsWhatIsMissingAndWhere) {
  EXPECT_EQ(problem("kMDItemFSName contains[cd] "),
            "expected a value after 'contains[cd]' at character 28");
  EXPECT_EQ(problem("kMDItemKey contains[cd] AND"),
            "expected a value after 'contains[cd]' at character 25");
  EXPECT_EQ(problem("é"), "'é' means nothing at character 1");
  EXPECT_EQ(problem(""), "expected a predicate at character 1");
  EXPECT_EQ(problem("a"), "expected an operator after 'a' at character 2");
  EXPECT_EQ(problem("a ~"), "'~' means nothing at character 3");
  EXPECT_EQ(problem("a foo 1"), "expected an operator after 'a' at character 3");
  EXPECT_EQ(problem("'éé' foo"), "expected an operator after ''éé'' at character 6");
  EXPECT_EQ(problem("a == 1 b"), "expected AND, OR or the end after '1' at character 8");
  EXPECT_EQ(problem("(a == 1"), "expected AND, OR or ')' after '1' at character 8");
  EXPECT_EQ(problem("a == 1)"), "expected AND, OR or the end after '1' at character 7");
  EXPECT_EQ(problem("a == 1 AND"), "expected a predicate after 'AND' at character 11");
  EXPECT_EQ(problem("NOT"), "expected a predicate after 'NOT' at character 4");
  EXPECT_EQ(problem("ANY"), "expected a comparison after 'ANY' at character 4");
  EXPECT_EQ(problem("ANY (a == 1)"), "expected a comparison after 'ANY' at character 5");
  EXPECT_EQ(problem("ALL NOT a == 1"), "expected a comparison after 'ALL' at character 5");
}

TEST(PredicateParser, tellsWhatIsWrongInOptionsAndValues) {
  EXPECT_EQ(problem("a LIKE[x] 'b'"), "expected c, d or cd after '[' at character 8");
  EXPECT_EQ(problem("a LIKE[] 'b'"), "expected c, d or cd after '[' at character 8");
  EXPECT_EQ(problem("a LIKE[c 'b'"), "expected ']' after 'c' at character 10");
  EXPECT_EQ(problem("a IN {1, }"), "expected a value after ',' at character 10");
  EXPECT_EQ(problem("a IN {1 2}"), "expected ',' or '}' after '1' at character 9");
  EXPECT_EQ(problem("a IN {b}"), "expected a value after '{' at character 7");
  EXPECT_EQ(problem("a == CAST 1"), "expected '(' after 'CAST' at character 11");
  EXPECT_EQ(problem("a == CAST('x', 'NSDate')"),
            "expected the seconds of a date after '(' at character 11");
  EXPECT_EQ(problem("a == CAST(1)"), "expected ',' after '1' at character 12");
  EXPECT_EQ(problem("a == CAST(1, 'NSData')"), "expected \"NSDate\" after ',' at character 14");
  EXPECT_EQ(problem("a == CAST(1, 'NSDate'"), "expected ')' after ''NSDate'' at character 22");
  EXPECT_EQ(problem("a == 'b"), "expected the end of the text that begins at character 6");
  EXPECT_EQ(problem("a == 'b\xFF'"), "the text is not UTF-8 at character 8");
}

TEST(PredicateParser, wantsBracesBehindBetween) {
  EXPECT_EQ(problem("a BETWEEN 1 AND 2"),
            "expected two values in braces after 'BETWEEN' at character 11");
  EXPECT_EQ(problem("a BETWEEN[c] 'b'"),
            "expected two values in braces after 'BETWEEN[c]' at character 14");
  EXPECT_EQ(problem("a BETWEEN"), "expected two values in braces after 'BETWEEN' at character 10");
  EXPECT_EQ(problem("a BETWEEN NULL"),
            "expected two values in braces after 'BETWEEN' at character 11");
  EXPECT_EQ(parsed("a BETWEEN b"),
            Predicate(Comparison{KeyPath{"a"}, Operator::between, KeyPath{"b"}}));
}

TEST(PredicateParser, tellsInOneShortLine) {
  EXPECT_EQ(problem("a == 'x\ny' b"),
            "expected AND, OR or the end after ''x\\x0Ay'' at character 12");
  EXPECT_EQ(problem("a == '" + std::string(100, 'x') + "' b"),
            "expected AND, OR or the end after ''" + std::string(39, 'x') + "…' at character 109");
}

TEST(PredicateParser, endsAtABoundedDepth) {
  const auto inParentheses = [](std::size_t depth) {
    return std::string(depth, '(') + "a=1" + std::string(depth, ')');
  };
  EXPECT_EQ(problem(inParentheses(127)), "none");
  EXPECT_EQ(problem(inParentheses(128)), "nested too deeply at character 129");
  EXPECT_EQ(problem(inParentheses(100'000)), "nested too deeply at character 129");
  EXPECT_EQ(problem(std::string(62, '!') + "a=1"), "none");
  EXPECT_EQ(problem(std::string(63, '!') + "a=1"), "the predicate is too deep or too large");
  EXPECT_EQ(problem("a=" + std::string(100'000, '{')), "nested too deeply at character 131");
}

TEST(PredicateParser, endsAtABoundedCount) {
  std::string row = "a=1";
  for (int i = 0; i < 4000; ++i) row += " OR a=1";
  EXPECT_EQ(problem(row), "the predicate is too deep or too large");
}

}  // namespace pelmora::platform::predicate

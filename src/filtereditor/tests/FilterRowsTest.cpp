#include "filtereditor/FilterRows.h"

#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <random>

namespace pelmora::filtereditor {
namespace {

using namespace platform::predicate;

Predicate parse(const std::string& text) { return parsePredicate(text).value(); }

bool roundTrips(const std::string& text) {
  const std::optional<Group> group = fromPredicate(parse(text));
  return group && toPredicate(*group) == parse(text);
}

/// Predicates of what rows show, and now and then of something else.
class RandomFilters {
 public:
  explicit RandomFilters(unsigned seed) : _random(seed) {}

  Predicate filter(int depth) {
    if (depth == 0 || below(3) == 0) return comparison();
    Compound compound;
    const int kind = below(20);
    compound.type = kind < 8 ? CompoundType::conjunction : CompoundType::disjunction;
    for (int i = below(4); i > 0; --i) compound.subpredicates.push_back(filter(depth - 1));
    if (kind < 14) return compound;
    return Compound{.type = CompoundType::negation, .subpredicates = {compound}};
  }
  int odd = 0;  // how many comparisons were made that no row shows

 private:
  int below(int end) { return std::uniform_int_distribution<>(0, end - 1)(_random); }

  Predicate comparison() {
    constexpr std::array kTypes = {Operator::equal, Operator::notEqual, Operator::beginsWith,
                                   Operator::endsWith, Operator::contains};
    constexpr std::array kTexts = {"", "a", "Été", "東京", "\"quoted\"", "two\nlines"};
    constexpr std::array kAttributes = {"kMDItemFSName", "kMDItemPixelWidth", "not.a.known.one"};
    Comparison made{.left = KeyPath{kAttributes.at(static_cast<std::size_t>(below(3)))},
                    .type = kTypes.at(static_cast<std::size_t>(below(5))),
                    .right = Constant(kTexts.at(static_cast<std::size_t>(below(6)))),
                    .options = static_cast<unsigned>(below(4))};
    if (below(40) == 0) makeOdd(made);
    return made;
  }
  void makeOdd(Comparison& made) {
    ++odd;
    switch (below(4)) {
      case 0:
        made.type = Operator::lessThan;
        return;
      case 1:
        made.right = Constant(5);
        return;
      case 2:
        made.modifier = Modifier::any;
        return;
      default:
        made.right = KeyPath{"kMDItemCity"};
    }
  }

  std::mt19937 _random;
};

TEST(FilterRows, areTheComparisonsOfAConjunction) {
  const auto group =
      fromPredicate(parse("kMDItemFSName CONTAINS[cd] 'beach' AND kMDItemCity == 'Oslo'"));
  ASSERT_TRUE(group);
  EXPECT_EQ(group->match, Match::all);
  ASSERT_EQ(group->items.size(), 2U);
  EXPECT_EQ(std::get<Row>(group->items[0].content), (Row{.text = "beach"}));
  EXPECT_EQ(
      std::get<Row>(group->items[1].content),
      (Row{.attribute = "kMDItemCity", .type = Operator::equal, .text = "Oslo", .options = 0}));
}

TEST(FilterRows, areNewWithANameThatContainsNothing) {
  EXPECT_EQ(toPredicate(Group{.match = Match::all, .items = {Row{}}, .form = Form::bare}),
            parse("kMDItemFSName CONTAINS[cd] ''"));
}

TEST(FilterRows, ofOneComparisonAreAnAllOfOneRowThatIsWrittenBackAsItWas) {
  const auto group = fromPredicate(parse("kMDItemCity == 'Oslo'"));
  ASSERT_TRUE(group);
  EXPECT_EQ(group->match, Match::all);
  EXPECT_EQ(group->items.size(), 1U);
  EXPECT_EQ(toPredicate(*group), parse("kMDItemCity == 'Oslo'"));
}

TEST(FilterRows, ofACompoundOfOneAreWrittenBackAsThat) {
  const Predicate compound = Compound{.type = CompoundType::conjunction,
                                      .subpredicates = {parse("kMDItemCity == 'Oslo'")}};
  EXPECT_EQ(toPredicate(fromPredicate(compound).value()), compound);
}

TEST(FilterRows, haveGroupsInGroups) {
  const auto group = fromPredicate(
      parse("kMDItemCity == 'a' OR (kMDItemCity == 'b' AND NOT (kMDItemCity == 'c' OR kMDItemCity "
            "== 'd'))"));
  ASSERT_TRUE(group);
  EXPECT_EQ(group->match, Match::any);
  const auto& all = std::get<Group>(group->items.at(1).content);
  EXPECT_EQ(all.match, Match::all);
  const auto& none = std::get<Group>(all.items.at(1).content);
  EXPECT_EQ(none.match, Match::none);
  EXPECT_EQ(none.items.size(), 2U);
}

TEST(FilterRows, haveTheFiveOperatorsAndKeepTheirOptions) {
  for (const char* type : {"==", "!=", "CONTAINS", "BEGINSWITH", "ENDSWITH"}) {
    for (const char* options : {"", "[c]", "[d]", "[cd]"}) {
      EXPECT_TRUE(roundTrips("kMDItemCity " + (type + (options + std::string(" 'Oslo'")))))
          << type << options;
    }
  }
}

TEST(FilterRows, takeAnyAttribute) {
  EXPECT_TRUE(roundTrips("kMDItemPixelWidth == '5'"));
  EXPECT_TRUE(roundTrips("my.own.attribute == '5'"));
}

TEST(FilterRows, doNotShowWhatTheyCouldNotWriteBack) {
  for (const char* text :
       {"kMDItemCity < 'a'",
        "kMDItemCity LIKE 'a*'",
        "kMDItemCity MATCHES 'a'",
        "kMDItemCity IN {'a'}",
        "'a' IN kMDItemCity",
        "kMDItemStarRating BETWEEN {1, 2}",
        "kMDItemStarRating == 5",
        "kMDItemCity == NULL",
        "kMDItemFlashOnOff == TRUE",
        "kMDItemCity == {'a'}",
        "kMDItemCity == kMDItemCountry",
        "'a' == kMDItemCity",
        "SELF CONTAINS 'a'",
        "ANY kMDItemKeywords == 'a'",
        "ALL kMDItemKeywords == 'a'",
        "TRUEPREDICATE",
        "FALSEPREDICATE",
        "NOT kMDItemCity == 'a'",
        "NOT (kMDItemCity == 'a' AND kMDItemCity == 'b')",
        "kMDItemCity == 'a' AND (kMDItemCity == 'b' OR kMDItemStarRating > 3)"}) {
    EXPECT_FALSE(fromPredicate(parse(text))) << text;
  }
}

TEST(FilterRows, doNotShowWhatNoFieldCanHold) {
  const auto comparison = [](std::string attribute, std::string text) {
    return Comparison{.left = KeyPath{std::move(attribute)}, .right = Constant(std::move(text))};
  };
  EXPECT_TRUE(fromPredicate(comparison("a", std::string(kLongestText, 'x'))));
  EXPECT_FALSE(fromPredicate(comparison("a", std::string(kLongestText + 1, 'x'))));
  EXPECT_FALSE(fromPredicate(comparison(std::string(kLongestText + 1, 'x'), "a")));
  EXPECT_FALSE(fromPredicate(comparison("a", "\xFF")));
  EXPECT_FALSE(fromPredicate(comparison("", "a")));
}

TEST(FilterRows, doNotShowNegationsOfNothingOrOfSeveral) {
  EXPECT_FALSE(fromPredicate(Compound{.type = CompoundType::negation, .subpredicates = {}}));
  const Predicate any = parse("kMDItemCity == 'a' OR kMDItemCity == 'b'");
  EXPECT_FALSE(
      fromPredicate(Compound{.type = CompoundType::negation, .subpredicates = {any, any}}));
}

TEST(FilterRows, doNotShowWhatIsBeyondTheLimits) {
  Predicate deep = Comparison{.left = KeyPath{"a"}, .right = Constant("b")};
  for (int i = 0; i < 1000; ++i) {
    deep = Compound{.type = CompoundType::conjunction, .subpredicates = {deep, deep}};
    if (!isWithinLimits(deep)) break;
  }
  EXPECT_FALSE(fromPredicate(deep));
}

TEST(FilterRows, keepANegationThatWasMadeHereFromBeingLookedThrough) {
  const Predicate none = parse("NOT (kMDItemCity == 'a' OR kMDItemCity == 'b')");
  Group group = fromPredicate(none).value();
  EXPECT_EQ(toPredicate(group), none) << "what was not made here stays as it is";
  group.form = Form::guarded;
  const Predicate guarded = Compound{.type = CompoundType::conjunction, .subpredicates = {none}};
  EXPECT_EQ(toPredicate(group), guarded);
  const Group again = fromPredicate(guarded).value();
  EXPECT_EQ(again.match, Match::none);
  EXPECT_EQ(again.items.size(), 2U);
  EXPECT_EQ(toPredicate(again), guarded);
}

TEST(FilterRows, makeAPlainCompoundWhereTheFormDoesNotFit) {
  const Predicate one = parse("kMDItemFSName CONTAINS[cd] ''");
  const auto compound = [](CompoundType type, std::vector<Predicate> members) {
    return Predicate(Compound{.type = type, .subpredicates = std::move(members)});
  };
  EXPECT_EQ(toPredicate({.match = Match::any, .items = {Row{}}, .form = Form::bare}),
            compound(CompoundType::disjunction, {one}));
  EXPECT_EQ(toPredicate({.match = Match::all, .items = {}, .form = Form::bare}),
            compound(CompoundType::conjunction, {}));
  EXPECT_EQ(toPredicate({.match = Match::all, .items = {Row{}, Row{}}, .form = Form::bare}),
            compound(CompoundType::conjunction, {one, one}));
  EXPECT_EQ(toPredicate({.match = Match::any, .items = {Row{}}, .form = Form::guarded}),
            compound(CompoundType::disjunction, {one}));
}

TEST(FilterRows, roundTripExactlyWheneverTheyCanBeShown) {
  int shown = 0;
  int kept = 0;
  for (unsigned seed = 0; seed < 600; ++seed) {
    RandomFilters random(seed);
    const Predicate filter = random.filter(4);
    const std::optional<Group> group = fromPredicate(filter);
    if (random.odd == 0) {
      EXPECT_TRUE(group || textOf(filter).find("NOT") != std::string::npos) << textOf(filter);
    } else {
      EXPECT_FALSE(group) << textOf(filter);
    }
    ++(group ? shown : kept);
    if (group) {
      ASSERT_EQ(toPredicate(*group), filter) << textOf(filter);
    }
  }
  EXPECT_GT(shown, 300);
  EXPECT_GT(kept, 30);
}

TEST(FilterRows, canBeArchived) {
  for (const Match match : {Match::all, Match::any, Match::none}) {
    const Predicate made = toPredicate({.match = match, .items = {Row{}, Group{}}, .form = {}});
    const auto bytes = writePredicateArchive(made);
    ASSERT_TRUE(bytes.ok());
    EXPECT_EQ(readPredicateArchive(bytes.value()).value(), made);
  }
}

}  // namespace
}  // namespace pelmora::filtereditor

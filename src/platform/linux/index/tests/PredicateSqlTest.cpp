#include "platform/linux/index/PredicateSql.h"

#include "platform/metadata/AttributeTable.h"
#include "platform/predicate/PredicateText.h"

#include <gmock/gmock.h>

namespace pelmora::platform {
namespace {

using Parameter = SqlCondition::Parameter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

SqlCondition conditionOf(const std::string& text) {
  return sqlCondition(predicate::parsePredicate(text).value());
}

std::string sqlOf(const std::string& text) { return conditionOf(text).sql; }

TEST(PredicateSql, putsNoValueIntoTheText) {
  const SqlCondition condition = conditionOf("kMDItemCity == 'x\\'); DROP TABLE files; --'");
  EXPECT_EQ(condition.sql, "ifnull(kMDItemCity IS ?5, 0)");
  EXPECT_THAT(condition.parameters,
              ElementsAre(Parameter(std::string("x'); DROP TABLE files; --"))));
  EXPECT_THAT(sqlOf("'kMDItem); --' == kMDItemCity AND nosuch == 3"), Not(HasSubstr("--")));
}

TEST(PredicateSql, comparesTextsAsTheyAreOrFolded) {
  EXPECT_EQ(sqlOf("kMDItemCity CONTAINS 'a'"), "ifnull(instr(kMDItemCity, ?5), 0)");
  const SqlCondition folded = conditionOf("kMDItemCity CONTAINS[cd] 'Zürich'");
  EXPECT_EQ(folded.sql, "ifnull(instr(kMDItemCity_folded, ?5), 0)");
  EXPECT_THAT(folded.parameters, ElementsAre(Parameter(std::string("zurich"))));
  EXPECT_EQ(sqlOf("kMDItemFSName BEGINSWITH[cd] 'ab'"), "(substr(folded, 1, ?5) IS ?6)");
  EXPECT_EQ(sqlOf("kMDItemFSName ENDSWITH[cd] ''"), "(folded IS NOT NULL)");
}

TEST(PredicateSql, looksForPatternsInFoldedTexts) {
  EXPECT_EQ(sqlOf("kMDItemCity LIKE 'A*'"), "holds(?5, kMDItemCity)");
  EXPECT_EQ(sqlOf("kMDItemCity LIKE[c] 'A*'"), "holds(?5, kMDItemCity)");
  const SqlCondition folded = conditionOf("kMDItemCity LIKE[cd] 'É*＊'");
  EXPECT_EQ(folded.sql, "holds(?5, kMDItemCity_folded)");
  ASSERT_EQ(folded.calls.size(), 1U);
  EXPECT_EQ(predicate::textOf(folded.calls.front()->predicate), "kMDItemCity LIKE \"e*\\\\*\"");
}

TEST(PredicateSql, findsOneOfSeveralTexts) {
  const SqlCondition condition = conditionOf("ANY kMDItemKeywords ==[cd] 'Été'");
  EXPECT_EQ(condition.sql, "ifnull(instr(kMDItemKeywords_folded, ?5), 0)");
  EXPECT_THAT(condition.parameters, ElementsAre(Parameter(std::string("\x1F"
                                                                      "ete\x1F"))));
  EXPECT_EQ(sqlOf("kMDItemKeywords CONTAINS 'a\\u001Fb'"), "0");
}

TEST(PredicateSql, comparesNumbersAndDates) {
  const SqlCondition condition = conditionOf("kMDItemPixelWidth >= 100.5");
  EXPECT_EQ(condition.sql, "ifnull(kMDItemPixelWidth >= ?5, 0)");
  EXPECT_THAT(condition.parameters, ElementsAre(Parameter(100.5)));
  EXPECT_EQ(sqlOf("kMDItemContentCreationDate < CAST(5, 'NSDate')"),
            "ifnull(kMDItemContentCreationDate < ?5, 0)");
  EXPECT_EQ(sqlOf("kMDItemPixelWidth != NULL"), "(kMDItemPixelWidth IS NOT NULL)");
}

TEST(PredicateSql, callsForWhatSqlDoesNotSay) {
  const std::size_t city = metadata::attributeNamed("kMDItemCity").value();
  const std::size_t country = metadata::attributeNamed("kMDItemCountry").value();
  for (const char* text :
       {"kMDItemCity LIKE '*a'", "kMDItemCity MATCHES[cd] 'a.*'", "kMDItemCity IN {'a', 'b'}",
        "kMDItemCity CONTAINS[c] 'a'", "'a' == kMDItemCity", "kMDItemCity == 3",
        "kMDItemCity BETWEEN {'a', 'b'}", "kMDItemCity < CAST(5, 'NSDate')"}) {
    const SqlCondition condition = conditionOf(text);
    EXPECT_EQ(condition.sql, "holds(?5, kMDItemCity)") << text;
    ASSERT_EQ(condition.calls.size(), 1u);
    EXPECT_THAT(condition.calls[0]->attributes, ElementsAre(city));
    EXPECT_THAT(condition.parameters, ElementsAre(Parameter(condition.calls[0].get())));
  }
  EXPECT_EQ(sqlOf("kMDItemCity IN[cd] {'a', 'b'}"), "holds(?5, kMDItemCity_folded)");
  EXPECT_EQ(sqlOf("ALL kMDItemKeywords ==[cd] 'a'"), "holds(?5, kMDItemKeywords_folded)");
  const SqlCondition both = conditionOf("kMDItemCity == kMDItemCountry");
  EXPECT_EQ(both.sql, "holds(?5, kMDItemCity, kMDItemCountry)");
  EXPECT_THAT(both.calls.at(0)->attributes, ElementsAre(city, country));
}

TEST(PredicateSql, bindsNoTextThatSqliteMayRefuse) {
  const auto sqlWith = [](const char* begin, std::size_t length) {
    return sqlOf(begin + (" '" + std::string(length, 'x') + "'"));
  };
  for (const char* begin : {"kMDItemCity ==", "kMDItemCity CONTAINS", "kMDItemCity BEGINSWITH"}) {
    EXPECT_THAT(sqlWith(begin, 100'000), "holds(?5, kMDItemCity)") << begin;
  }
  EXPECT_THAT(sqlWith("kMDItemCity ==[cd]", 100'000), "holds(?5, kMDItemCity)");
  EXPECT_THAT(sqlWith("kMDItemKeywords CONTAINS[cd]", 100'000), "holds(?5, kMDItemKeywords)");
  EXPECT_THAT(sqlWith("kMDItemCity ==", 65'536), "ifnull(kMDItemCity IS ?5, 0)");
}

TEST(PredicateSql, knowsBeforehandWhatIsTheSameForEveryFile) {
  EXPECT_EQ(sqlOf("nosuch == 3"), "0");
  EXPECT_EQ(sqlOf("nosuch != 3 AND 1 < 2"), "(1 AND 1)");
  EXPECT_EQ(sqlOf("TRUEPREDICATE OR FALSEPREDICATE"), "(1 OR 0)");
  EXPECT_EQ(sqlCondition(predicate::Compound{predicate::CompoundType::disjunction, {}}).sql, "(0)");
}

TEST(PredicateSql, takesValuesInBracesForAnArray) {
  const predicate::Comparison comparison{predicate::KeyPath{"kMDItemCity"}, predicate::Operator::in,
                                         predicate::Aggregate{predicate::Array{"A", "B"}},
                                         predicate::Modifier::direct, predicate::kAllOptions};
  const SqlCondition condition = sqlCondition(comparison);
  EXPECT_EQ(condition.sql, "holds(?5, kMDItemCity_folded)");
  ASSERT_EQ(condition.calls.size(), 1U);
  EXPECT_EQ(predicate::textOf(condition.calls.front()->predicate), "kMDItemCity IN {\"a\", \"b\"}");
}

TEST(PredicateSql, tellsWhetherItAsksForThePath) {
  EXPECT_TRUE(conditionOf("kMDItemPath CONTAINS 'a'").asksForPath);
  EXPECT_TRUE(conditionOf("kMDItemPath LIKE 'a'").asksForPath);
  EXPECT_FALSE(conditionOf("kMDItemFSName CONTAINS 'a'").asksForPath);
}

TEST(PredicateSql, makesOneCallOfAll) {
  const auto predicate =
      predicate::parsePredicate("kMDItemCity == 'a' OR NOT kMDItemPixelWidth > 3").value();
  const SqlCondition condition = sqlConditionByOneCall(predicate);
  EXPECT_EQ(condition.sql, "holds(?5, kMDItemCity, kMDItemPixelWidth)");
  EXPECT_EQ(condition.calls.at(0)->predicate, predicate);
  EXPECT_THAT(sqlConditionByOneCall(predicate::Fixed{true}).calls, IsEmpty());
}

}  // namespace
}  // namespace pelmora::platform

#include "filtereditor/FilterLines.h"

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

namespace pelmora::filtereditor {
namespace {

using namespace platform::predicate;

FilterLines linesOf(const char* text) {
  return FilterLines(fromPredicate(parsePredicate(text).value()).value());
}

Predicate predicateOf(const FilterLines& lines) { return toPredicate(lines.group()); }

/// A line each, set in: "all", "any", "none", or the text of a row in quotes.
std::string sketch(const FilterLines& lines) {
  std::string result;
  for (const Line& line : lines.lines()) {
    result += std::string(static_cast<std::size_t>(line.depth), ' ');
    if (const auto* row = std::get_if<Row>(&line.content)) {
      result += "'" + row->text + "'\n";
    } else {
      constexpr std::array kNames = {"all\n", "any\n", "none\n"};
      result += kNames.at(static_cast<std::size_t>(std::get<Match>(line.content)));
    }
  }
  return result;
}

constexpr const char* kNested =
    "a == '1' AND (b == '2' OR NOT (c == '3' OR d == '4')) AND e == '5'";

TEST(FilterLines, standBelowEachOtherAndGiveTheGroupBack) {
  const FilterLines lines = linesOf(kNested);
  EXPECT_EQ(sketch(lines), "all\n '1'\n any\n  '2'\n  none\n   '3'\n   '4'\n '5'\n");
  EXPECT_EQ(predicateOf(lines), parsePredicate(kNested).value());
}

TEST(FilterLines, areAtFirstAnAllOfNothing) {
  FilterLines lines;
  EXPECT_EQ(sketch(lines), "all\n");
  EXPECT_EQ(predicateOf(lines), Predicate(Compound{}));
  EXPECT_EQ(lines.appendRow(), 1U);
  EXPECT_EQ(textOf(predicateOf(lines)), "kMDItemFSName CONTAINS[cd] \"\"");
}

TEST(FilterLines, areInsertedBehindARowAndAsTheFirstOfAGroup) {
  FilterLines lines = linesOf("a == '1' AND (b == '2' OR c == '3')");
  EXPECT_EQ(lines.insertRow(1), 2U);
  EXPECT_EQ(sketch(lines), "all\n '1'\n ''\n any\n  '2'\n  '3'\n");
  EXPECT_EQ(lines.insertRow(3), 4U);
  EXPECT_EQ(lines.insertRow(0), 1U);
  EXPECT_EQ(sketch(lines), "all\n ''\n '1'\n ''\n any\n  ''\n  '2'\n  '3'\n");
  EXPECT_EQ(lines.appendRow(), 8U);
  EXPECT_EQ(lines.lines().back().depth, 1);
}

TEST(FilterLines, areInsertedAsAGroupOfTheOtherKindWithARowInIt) {
  FilterLines lines = linesOf("a == '1' AND b == '2'");
  EXPECT_EQ(lines.insertGroup(1), 2U);
  EXPECT_EQ(sketch(lines), "all\n '1'\n any\n  ''\n '2'\n");
  EXPECT_EQ(lines.insertGroup(3), 4U);
  EXPECT_EQ(sketch(lines), "all\n '1'\n any\n  ''\n  all\n   ''\n '2'\n");
  EXPECT_EQ(lines.insertGroup(0), 1U);
  EXPECT_EQ(sketch(lines), "all\n any\n  ''\n '1'\n any\n  ''\n  all\n   ''\n '2'\n");
}

TEST(FilterLines, goWithTheirMembers) {
  FilterLines lines = linesOf(kNested);
  const auto range = lines.remove(2);
  EXPECT_EQ(range.first, 2U);
  EXPECT_EQ(range.count, 5U);
  EXPECT_EQ(sketch(lines), "all\n '1'\n '5'\n");
}

TEST(FilterLines, goWithTheGroupsThatAreLeftEmpty) {
  FilterLines lines = linesOf("a == '1' AND (b == '2' OR c == '3')");
  lines.setMatch(2, Match::none);
  lines.insertGroup(2);
  EXPECT_EQ(sketch(lines), "all\n '1'\n none\n  all\n   ''\n  '2'\n  '3'\n");
  auto range = lines.remove(4);
  EXPECT_EQ(range.first, 3U);
  EXPECT_EQ(range.count, 2U);
  lines.remove(3);
  range = lines.remove(3);
  EXPECT_EQ(range.first, 2U);
  EXPECT_EQ(range.count, 2U);
  EXPECT_EQ(sketch(lines), "all\n '1'\n");
}

TEST(FilterLines, leaveAnEmptyGroupBesideThemAlone) {
  Group group;
  group.items = {Group{}, Row{}};
  FilterLines lines(group);
  EXPECT_EQ(sketch(lines), "all\n all\n ''\n");
  lines.remove(2);
  EXPECT_EQ(sketch(lines), "all\n all\n");
}

TEST(FilterLines, areAnAllOfNothingWhenTheLastIsGone) {
  for (const char* text : {"a == '1' OR b == '2'", "NOT (a == '1' OR b == '2')"}) {
    FilterLines lines = linesOf(text);
    lines.remove(1);
    lines.remove(1);
    EXPECT_EQ(predicateOf(lines), Predicate(Compound{})) << text;
    EXPECT_EQ(lines.remove(0).count, 0U) << "the outermost stays";
  }
}

TEST(FilterLines, takeWhatIsSaidOfThem) {
  FilterLines lines = linesOf("a == '1' AND b == '2'");
  Row row = std::get<Row>(lines.lines()[2].content);
  row.text = "3";
  lines.setRow(2, row);
  EXPECT_TRUE(lines.setMatch(0, Match::any));
  EXPECT_EQ(predicateOf(lines), parsePredicate("a == '1' OR b == '3'").value());
}

TEST(FilterLines, guardAnOutermostNoneOnceSomethingIsChanged) {
  const Predicate none = parsePredicate("NOT (a == '1' OR b == '2')").value();
  const Predicate guarded = Compound{.type = CompoundType::conjunction, .subpredicates = {none}};
  FilterLines chosen = linesOf("a == '1' AND b == '2'");
  chosen.setMatch(0, Match::none);
  EXPECT_EQ(predicateOf(chosen), guarded);

  FilterLines typed = linesOf("NOT (a == '1' OR b == '2')");
  EXPECT_EQ(predicateOf(typed), none);
  typed.setRow(1, std::get<Row>(typed.lines()[1].content));
  EXPECT_EQ(predicateOf(typed), guarded);
  typed.setMatch(0, Match::all);
  EXPECT_EQ(predicateOf(typed), parsePredicate("a == '1' AND b == '2'").value());
}

TEST(FilterLines, areRefusedBeyondTheDepthOfPredicates) {
  FilterLines lines;
  std::size_t at = lines.appendRow().value();
  int groups = 0;
  while (const auto head = lines.insertGroup(at)) {
    at = *head + 1;
    ++groups;
  }
  EXPECT_GT(groups, 50);
  EXPECT_TRUE(isWithinLimits(predicateOf(lines)));
  const std::string before = sketch(lines);
  EXPECT_FALSE(lines.setMatch(at - 1, Match::none)) << "a negation is one deeper";
  EXPECT_FALSE(lines.insertGroup(at));
  EXPECT_EQ(sketch(lines), before);
  EXPECT_TRUE(lines.insertRow(at));
}

TEST(FilterLines, areRefusedBeyondTheNumberOfPartsOfPredicates) {
  Group group;
  group.items.assign((kMaxNodes - 1) / 3 - 1, Row{});
  FilterLines lines(group);
  EXPECT_TRUE(lines.appendRow());
  EXPECT_FALSE(lines.appendRow());
  EXPECT_FALSE(lines.insertGroup(0));
  EXPECT_TRUE(isWithinLimits(predicateOf(lines)));
  lines.remove(1);
  EXPECT_TRUE(lines.appendRow());
}

}  // namespace
}  // namespace pelmora::filtereditor

#include "cache/TextTable.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmora::cache {

namespace {

using Numbers = std::vector<std::uint32_t>;

Numbers add(TextTable& table, const std::vector<std::string_view>& texts) {
  Numbers numbers;
  table.add(texts, numbers);
  return numbers;
}

}  // namespace

TEST(TextTable, numbersTextsByFirstSight) {
  TextTable table;
  EXPECT_EQ(add(table, {"b", "a", "b", "", "ab", "a"}), (Numbers{0, 1, 0, 2, 3, 1}));
  EXPECT_EQ(add(table, {"ab", "c"}), (Numbers{3, 4}));
  EXPECT_EQ(table.texts(), (std::vector<std::string_view>{"b", "a", "", "ab", "c"}));
}

TEST(TextTable, tellsTextsOfEveryLengthApart) {
  std::vector<std::string> texts;
  for (std::size_t length = 0; length < 40; ++length) {
    texts.emplace_back(length, '\0');
    texts.emplace_back(length, 'x');
    if (length > 0) texts.push_back(std::string(length - 1, 'x') + 'y');
  }
  TextTable table;
  const Numbers numbers = add(table, {texts.begin(), texts.end()});
  // The two empty ones are the same.
  EXPECT_EQ(table.texts().size(), texts.size() - 1);
  for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(table.texts()[numbers[i]], texts[i]);
}

TEST(TextTable, keepsItsNumbersWhenItGrows) {
  std::vector<std::string> texts;
  for (int i = 0; i < 20'000; ++i) texts.push_back("IMG_" + std::to_string(i) + ".JPG");
  const std::vector<std::string_view> views(texts.begin(), texts.end());
  TextTable table;
  const Numbers first = add(table, views);
  for (std::uint32_t i = 0; i < first.size(); ++i) ASSERT_EQ(first[i], i);
  EXPECT_EQ(add(table, views), first);
  table.freeze();
  EXPECT_EQ(table.texts(), views);
}

}  // namespace pelmora::cache

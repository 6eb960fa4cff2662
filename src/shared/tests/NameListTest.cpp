#include "shared/NameList.h"

#include <gtest/gtest.h>

namespace pelmora {

TEST(NameList, holdsNoNames) {
  const SharedNames list = makeNameList({});
  EXPECT_TRUE(list->empty());
  EXPECT_EQ(list->begin(), list->end());
}

TEST(NameList, givesBackEveryNameByIndexAndInOrder) {
  std::vector<std::string> names;
  for (int i = 0; i < 1000; ++i) names.push_back("IMG_" + std::to_string(i * 37) + ".jpg");
  names.emplace_back(255, 'x');
  names.emplace_back("");
  names.emplace_back("caf\xE9\n\"'");
  const SharedNames list = makeNameList(names);
  ASSERT_EQ(list->size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ((*list)[i], names[i]);
  std::size_t i = 0;
  for (const std::string_view name : *list) EXPECT_EQ(name, names[i++]);
  EXPECT_EQ(i, names.size());
}

TEST(NameList, refusesNamesLongerThanAFileSystemHas) {
  NameListBuilder builder;
  EXPECT_FALSE(builder.append(std::string(256, 'x')));
  EXPECT_TRUE(builder.append("a"));
  EXPECT_EQ(builder.finish()->size(), 1U);
}

TEST(NameList, costsLittleBeyondTheNamesThemselves) {
  std::vector<std::string> names(1600, "IMG_1234.jpg");
  EXPECT_LE(makeNameList(names)->heapBytes(), 1600U * (12 + 1) + 100 * 4);
}

TEST(NameList, isEqualWhenItsNamesAre) {
  EXPECT_EQ(*makeNameList({"a", "b"}), *makeNameList({"a", "b"}));
  EXPECT_FALSE(*makeNameList({"ab"}) == *makeNameList({"a", "b"}));
  EXPECT_TRUE(makeNameList({"a", "b"})->contains("b"));
  EXPECT_FALSE(makeNameList({"a", "b"})->contains("c"));
}

}  // namespace pelmora

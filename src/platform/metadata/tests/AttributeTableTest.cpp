#include "platform/metadata/AttributeTable.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace pelmora::platform::metadata {

TEST(AttributeTable, findsEachRowByItsName) {
  for (std::size_t i = 0; i < attributeTable().size(); ++i) {
    EXPECT_EQ(attributeNamed(attributeTable()[i].name), i);
  }
  EXPECT_EQ(attributeNamed("kMDItemNothing"), std::nullopt);
  EXPECT_EQ(attributeNamed(""), std::nullopt);
}

TEST(AttributeTable, hasNoNameTwiceAndAllOfThePlatform) {
  std::set<std::string_view> names;
  for (const Attribute& attribute : attributeTable()) {
    EXPECT_TRUE(names.insert(attribute.name).second) << attribute.name;
    EXPECT_TRUE(attribute.name.starts_with("kMDItem")) << attribute.name;
  }
}

TEST(AttributeTable, saysWhereEachIsReadFrom) {
  for (const Attribute& attribute : attributeTable()) {
    EXPECT_FALSE(attribute.readFrom.empty()) << attribute.name;
    int depth = 0;
    for (const char each : attribute.readFrom) {
      if (each == '(') ++depth;
      if (each == ')') --depth;
      EXPECT_TRUE(depth == 0 || depth == 1) << attribute.name;
    }
    EXPECT_EQ(depth, 0) << attribute.name;
  }
}

TEST(AttributeTable, hasPositionsThatFitAByte) {
  EXPECT_LE(attributeTable().size(), std::numeric_limits<std::uint8_t>::max());
}

}  // namespace pelmora::platform::metadata

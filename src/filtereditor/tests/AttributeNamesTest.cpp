#include "filtereditor/AttributeNames.h"

#include "filtereditor/FilterRows.h"
#include "platform/metadata/AttributeTable.h"

#include <gtest/gtest.h>

#include <set>

namespace pelmora::filtereditor {

namespace metadata = platform::metadata;

TEST(AttributeNames, areOfAllAttributesThatAreTexts) {
  std::set<std::string_view> texts;
  for (const metadata::Attribute& attribute : metadata::attributeTable()) {
    if (attribute.type == metadata::ValueType::text) texts.insert(attribute.name);
  }
  std::set<std::string_view> named;
  for (const AttributeName& name : attributeNames()) named.insert(name.attribute);
  EXPECT_EQ(named, texts);
  EXPECT_EQ(attributeNames().size(), texts.size());
}

TEST(AttributeNames, areToldApart) {
  std::set<QString> names;
  for (const AttributeName& name : attributeNames()) names.insert(name.translated());
  EXPECT_EQ(names.size(), attributeNames().size());
  EXPECT_FALSE(names.contains(QString()));
}

TEST(AttributeNames, beginWithWhatANewRowHas) {
  EXPECT_EQ(attributeNames().front().attribute, Row{}.attribute);
  EXPECT_EQ(attributeNames().front().translated(), QStringLiteral("File name"));
}

}  // namespace pelmora::filtereditor

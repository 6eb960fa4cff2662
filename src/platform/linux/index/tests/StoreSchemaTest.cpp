#include "platform/linux/index/StoreSchema.h"

#include <gtest/gtest.h>

namespace pelmora::platform {
namespace {

using metadata::Attribute;
using metadata::attributeNamed;
using metadata::attributeTable;
using metadata::ValueType;
using predicate::Constant;

using Values = std::vector<Constant>;

TEST(StoreSchema, hasColumnsForWhatTheTableHas) {
  for (const Attribute& attribute : attributeTable()) {
    EXPECT_TRUE(!attribute.hasSeveral || attribute.type == ValueType::text)
        << attribute.name << ": only texts are stored as several values";
  }
  SqliteDatabase database(":memory:");
  for (const std::string& statement : schemaStatements()) database.run(statement);
  for (const StoredColumn& column : storedColumns()) {
    database.run("SELECT " + nameOf(column) + " FROM files");
    EXPECT_EQ(expressionOf(column.attribute, column.form), nameOf(column));
  }
  EXPECT_GT(schemaVersion(), 0);
}

TEST(StoreSchema, derivesNamesAndPaths) {
  const std::size_t name = attributeNamed("kMDItemDisplayName").value();
  EXPECT_TRUE(isName(name));
  EXPECT_EQ(expressionOf(name, TextForm::raw), "name");
  EXPECT_EQ(expressionOf(name, TextForm::folded), "folded");
  const std::size_t path = attributeNamed("kMDItemPath").value();
  EXPECT_TRUE(isPath(path));
  EXPECT_EQ(expressionOf(path, TextForm::folded), "CAST(?4 || folded AS BLOB)");
  for (const StoredColumn& column : storedColumns()) {
    EXPECT_FALSE(isName(column.attribute) || isPath(column.attribute));
  }
}

TEST(StoreSchema, joinsSeveralTextsAndSplitsThem) {
  const std::size_t keywords = attributeNamed("kMDItemKeywords").value();
  for (const Values& values : {Values{"a"}, Values{""}, Values{"", ""}, Values{"a", "", "Été"}}) {
    const std::string joined = joinedTexts(values, TextForm::raw);
    EXPECT_EQ(valuesIn(std::string_view(joined), keywords), values);
  }
  EXPECT_EQ(joinedTexts({}, TextForm::raw), "");
  EXPECT_EQ(joinedTexts(Values{"Été", "b"}, TextForm::folded),
            "\x1F"
            "ete\x1F"
            "b\x1F");
}

TEST(StoreSchema, keepsWhatStandsBetweenValuesOutOfThem) {
  EXPECT_EQ(joinedTexts(Values{"a\x1F"
                               "b"},
                        TextForm::raw),
            "\x1F"
            "ab\x1F");
}

TEST(StoreSchema, takesNothingThatWasNotStored) {
  const std::size_t keywords = attributeNamed("kMDItemKeywords").value();
  const std::size_t city = attributeNamed("kMDItemCity").value();
  const std::size_t width = attributeNamed("kMDItemPixelWidth").value();
  const std::size_t date = attributeNamed("kMDItemContentCreationDate").value();
  EXPECT_EQ(valuesIn(std::string_view("x"), city), Values{"x"});
  EXPECT_EQ(valuesIn(2.5, date), Values{ReferenceTime{2.5}});
  for (const char* damaged : {"", "a", "\x1F",
                              "\x1F"
                              "a",
                              "a\x1F"}) {
    EXPECT_EQ(valuesIn(std::string_view(damaged), keywords), Values{}) << damaged;
  }
  EXPECT_EQ(valuesIn(std::int64_t{1}, city), Values{});
  EXPECT_EQ(valuesIn(std::string_view("1"), width), Values{});
  EXPECT_EQ(valuesIn(1.0, width), Values{});
  EXPECT_EQ(valuesIn(std::int64_t{1}, date), Values{});
  EXPECT_EQ(valuesIn(SqlValue(), date), Values{});
}

}  // namespace
}  // namespace pelmora::platform

#include "platform/metadata/FileMetadata.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace pelmora::platform::metadata {

using predicate::Constant;

namespace {

std::vector<Constant> valuesOf(const FileMetadata& metadata, std::string_view attribute) {
  const auto values = metadata.values(attribute);
  return {values.begin(), values.end()};
}

}  // namespace

TEST(FileMetadata, givesBackWhatWasSet) {
  FileMetadata metadata;
  metadata.set("kMDItemKeywords", {"lake", "mountain"});
  metadata.set("kMDItemISOSpeed", {200});
  metadata.set("kMDItemFNumber", {2.8});
  metadata.set("kMDItemContentCreationDate", {ReferenceTime{5}});
  EXPECT_EQ(valuesOf(metadata, "kMDItemKeywords"), (std::vector<Constant>{"lake", "mountain"}));
  EXPECT_EQ(valuesOf(metadata, "kMDItemISOSpeed"), (std::vector<Constant>{200}));
  EXPECT_EQ(valuesOf(metadata, "kMDItemFNumber"), (std::vector<Constant>{2.8}));
  EXPECT_EQ(valuesOf(metadata, "kMDItemContentCreationDate"),
            (std::vector<Constant>{ReferenceTime{5}}));
  EXPECT_EQ(metadata.all().size(), 4U);
}

TEST(FileMetadata, hasNoValuesOfWhatIsMissingOrUnknown) {
  FileMetadata metadata;
  metadata.set("kMDItemNothing", {"x"});
  metadata.set(attributeTable().size(), {"x"});
  EXPECT_TRUE(metadata.all().empty());
  EXPECT_TRUE(metadata.values("kMDItemNothing").empty());
  EXPECT_TRUE(metadata.values("kMDItemTitle").empty());
}

TEST(FileMetadata, leavesOutValuesOfAnotherType) {
  FileMetadata metadata;
  metadata.set("kMDItemKeywords", {1, "lake", 2.5, Constant()});
  metadata.set("kMDItemISOSpeed", {"200", 200.0, true});
  metadata.set("kMDItemFNumber", {8, std::numeric_limits<double>::quiet_NaN()});
  metadata.set("kMDItemContentCreationDate",
               {ReferenceTime{std::numeric_limits<double>::infinity()}});
  EXPECT_EQ(valuesOf(metadata, "kMDItemKeywords"), (std::vector<Constant>{"lake"}));
  EXPECT_EQ(metadata.all().size(), 1U);
}

TEST(FileMetadata, keepsNoMoreValuesThanAnAttributeMayHave) {
  FileMetadata metadata;
  metadata.set("kMDItemTitle", {"first", "second"});
  metadata.set("kMDItemKeywords", std::vector<Constant>(kMaxValues + 1, "lake"));
  EXPECT_EQ(valuesOf(metadata, "kMDItemTitle"), (std::vector<Constant>{"first"}));
  EXPECT_EQ(metadata.values("kMDItemKeywords").size(), kMaxValues);
}

TEST(FileMetadata, forgetsAnAttributeThatIsSetToNothing) {
  FileMetadata metadata;
  metadata.set("kMDItemTitle", {"first"});
  metadata.set("kMDItemTitle", {});
  EXPECT_EQ(metadata, FileMetadata());
}

}  // namespace pelmora::platform::metadata
